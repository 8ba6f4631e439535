# What Debian asks of every package, done to the staged files of each before they are packed: pages are
# compressed, and copyright and changelog stand in the package's folder of documents.
foreach(component cli rehearsal)
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr)
  file(GLOB pages ${root}/share/man/man*/*.[1-8])
  foreach(page ${pages})
    execute_process(COMMAND gzip -9n ${page} COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
  string(TOUPPER ${component} upper)
  set(documents ${root}/share/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  file(COPY ${CMAKE_CURRENT_LIST_DIR}/copyright ${CMAKE_CURRENT_LIST_DIR}/changelog
    DESTINATION ${documents} NO_SOURCE_PERMISSIONS)
  execute_process(COMMAND gzip -9n ${documents}/changelog COMMAND_ERROR_IS_FATAL ANY)
endforeach()
