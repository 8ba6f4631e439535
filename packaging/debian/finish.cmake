# Prepares the staged files of each package according to Debian policy: compresses the manual pages, and
# copies copyright and changelog to the package's documentation directory.
foreach(component cli rehearsal)
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr)
  file(GLOB pages ${root}/share/man/man*/*.[1-8])
  foreach(page ${pages})
    execute_process(COMMAND gzip -9n ${page} COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
  string(TOUPPER ${component} upper)
  set(documents ${root}/share/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  file(COPY ${CMAKE_CURRENT_LIST_DIR}/copyright ${CPACK_DEBIAN_CHANGELOG}
    DESTINATION ${documents} NO_SOURCE_PERMISSIONS)
  execute_process(COMMAND gzip -9n ${documents}/changelog COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY}/${component} -exec
    touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} + COMMAND_ERROR_IS_FATAL ANY)
endforeach()
