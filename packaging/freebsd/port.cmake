# The skeleton of a FreeBSD port, complete except for distinfo, in packaging/freebsd of the build directory.
foreach(file Makefile.in pkg-descr pkg-plist)
  string(REPLACE ".in" "" name ${file})
  configure_file(${CMAKE_CURRENT_LIST_DIR}/${file} freebsd/${name} @ONLY)
endforeach()
