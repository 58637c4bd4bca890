# kivra_product_folder(<program target>)
# Keeps the files that the program needs beside it: the string files and the pattern files go to
# KIVRA_PRODUCT_DIR with every build of the target in which one of them has changed. The README in
# patterns/ makes sure that the folder is there even without a pattern.
function(kivra_product_folder program)
  file(GLOB files CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
    ${PROJECT_SOURCE_DIR}/resources/strings/*.txt
    ${PROJECT_SOURCE_DIR}/patterns/*.kvpat
    ${PROJECT_SOURCE_DIR}/patterns/README.txt)
  set(copies)
  foreach(file IN LISTS files)
    set(source ${PROJECT_SOURCE_DIR}/${file})
    set(copy ${KIVRA_PRODUCT_DIR}/${file})
    get_filename_component(folder ${copy} DIRECTORY)
    add_custom_command(OUTPUT ${copy}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
      COMMAND ${CMAKE_COMMAND} -E copy ${source} ${copy}
      DEPENDS ${source}
      COMMENT "Copying ${file} to the product folder"
      VERBATIM)
    list(APPEND copies ${copy})
  endforeach()
  add_custom_target(${program}_product_files DEPENDS ${copies})
  add_dependencies(${program} ${program}_product_files)
endfunction()
