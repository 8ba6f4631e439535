# Everything in a package carries the time of the commit, so that building it again gives the same bytes. In
# sources without history, such as an unpacked archive, that is the time of the files.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND git -C ${CPACK_SOURCE_DIRECTORY} log -1 --format=%ct
    OUTPUT_VARIABLE time OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(NOT time)
    file(TIMESTAMP ${CPACK_SOURCE_DIRECTORY}/CMakeLists.txt time "%s" UTC)
  endif()
  set(ENV{SOURCE_DATE_EPOCH} ${time})
endif()
