# Everything in a package carries the time of the commit, so that packing it again gives the same bytes. Sources
# without history, which come from an archive, have that time as their own.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND git -C ${CPACK_SOURCE_DIRECTORY} log -1 --format=%ct
    OUTPUT_VARIABLE time OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(NOT time)
    file(TIMESTAMP ${CPACK_SOURCE_DIRECTORY}/CMakeLists.txt time "%s" UTC)
  endif()
  set(ENV{SOURCE_DATE_EPOCH} ${time})
endif()
