# Builds for FreeBSD/amd64 on another system:
#     cmake -S . -B build/freebsd --toolchain packaging/freebsd/toolchain.cmake
# Called by packaging/freebsd/cross-build. CROSS_PREFIX has the headers of nlohmann-json and GoogleTest's libraries
# for FreeBSD; HOST_BUILD is a build of the same sources for this system, whose programs run during the build.
set(CMAKE_SYSTEM_NAME FreeBSD)
set(CMAKE_SYSTEM_VERSION 14.0)
set(CMAKE_SYSTEM_PROCESSOR amd64)
set(CMAKE_CXX_COMPILER ${CMAKE_CURRENT_LIST_DIR}/c++)

# Depending on the optimization level, the driver disables assertions or enables the undefined behavior
# sanitizer, unlike other compilers. The headers of its C++ library are only partly annotated for nullability,
# which would cause a warning for each.
set(CMAKE_CXX_FLAGS_INIT "-O2 -fPIC -UNDEBUG -g0 -fno-sanitize=undefined -Wno-nullability-completeness")
# No path of this machine remains in the programs.
string(APPEND CMAKE_CXX_FLAGS_INIT " -ffile-prefix-map=${CROSS_PREFIX}/include=/usr/local/include")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-pie -s")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-s")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-s")

set(CMAKE_FIND_ROOT_PATH ${CROSS_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CROSS_PREFIX)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run-host ${HOST_BUILD})

# Tests cannot run here, so they cannot be listed during the build.
set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)
