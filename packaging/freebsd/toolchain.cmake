# Builds for FreeBSD/amd64 on another system:
#     cmake -S . -B build/freebsd --toolchain packaging/freebsd/toolchain.cmake
# packaging/freebsd/cross-build does that with all that goes along with it. CROSS_PREFIX is where the
# headers of nlohmann-json and GoogleTest's libraries for that system are; HOST_BUILD is a build of the
# same sources for this system, whose programs do what has to be done while building.
set(CMAKE_SYSTEM_NAME FreeBSD)
set(CMAKE_SYSTEM_VERSION 14.0)
set(CMAKE_SYSTEM_PROCESSOR amd64)
set(CMAKE_CXX_COMPILER ${CMAKE_CURRENT_LIST_DIR}/c++)

# The driver follows the level of optimization with settings of its own that no other compiler makes:
# assertions off with it, the undefined behavior sanitizer on without it. Its C++ library's headers are
# annotated in part, which it would say of each of them.
set(CMAKE_CXX_FLAGS_INIT "-O2 -fPIC -UNDEBUG -g0 -fno-sanitize=undefined -Wno-nullability-completeness")
# No path of this machine stays in what is built.
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

# Tests cannot be run here, and so not be listed while they are built.
set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)
