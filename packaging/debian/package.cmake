# The Debian packages, built by cpack in a build that is configured for /usr:
#     cmake --preset debian && (cd build/debian && cpack)
# writes them to build/debian/packages, with umask 022 the same bytes each time. cpack finds the dependencies
# with the programs of dpkg-dev and file.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME cli)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in changelog @ONLY)
set(CPACK_DEBIAN_CHANGELOG ${CMAKE_CURRENT_BINARY_DIR}/changelog)
set(CPACK_SOURCE_DIRECTORY ${CMAKE_SOURCE_DIR})
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_LIST_DIR}/time.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/finish.cmake)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL cli rehearsal)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# There is no mail address for these packages.
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "the cli developers <maintainers@localhost>")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The two closed libraries are supplied with the adapters, not packaged. The dependencies are determined with
# the simulator's libraries of the same names, which add none.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/lib)

set(CPACK_DEBIAN_CLI_PACKAGE_NAME cli)
set(CPACK_DEBIAN_CLI_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_CLI_PACKAGE_RECOMMENDS rlwrap)
set(CPACK_DEBIAN_CLI_PACKAGE_SUGGESTS "bash-completion, cli-rehearsal")
set(CPACK_DEBIAN_CLI_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/postrm ${CMAKE_CURRENT_LIST_DIR}/prerm)
set(CPACK_COMPONENT_CLI_DESCRIPTION "command-line interface for SATA RAID host adapters
Lists and changes controllers, drives, extents, logical drives, enclosures,
batteries, buzzers, background activities and events of SATA RAID host
adapters, one command from the shell or many at a prompt, and saves and
restores configurations. cli-status reports whether everything is healthy, for
people, scripts and monitoring systems; cli-wait waits until activities such as
a rebuild have ended; cli-patrol starts media patrol on all drives; cli-try
shows on a copy of the adapters what a command would do; cli-backup keeps
backups of the configuration, and cli-restore restores a controller from one.
It needs the adapters' own libraries libzvq5plugin.so and libzverrlog.so, which
are not part of this package.")

set(CPACK_DEBIAN_REHEARSAL_PACKAGE_NAME cli-rehearsal)
set(CPACK_DEBIAN_REHEARSAL_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_REHEARSAL_PACKAGE_SUGGESTS cli)
set(CPACK_COMPONENT_REHEARSAL_DESCRIPTION "simulator of SATA RAID host adapters
The commands of cli on simulated adapters, so that a recovery can be
rehearsed before a drive is touched, and q5sim, a fault injection tool that
fails and replaces simulated drives. It never replaces the real adapters'
library.")

include(CPack)
