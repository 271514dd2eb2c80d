# tandrel_texts(OUTPUT HEADER TYPE FUNCTION ROOT FILE...): a source with the texts of the files, which are named by their
# paths below the directory ROOT, or, where that is "", by their names alone.
function(tandrel_texts output header type function root)
  string(REPLACE ";" " " texts "${ARGN}")
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DTEXTS=${texts} -DROOT=${root} -DOUTPUT=${output} -DHEADER=${header} -DTYPE=${type}
            -DFUNCTION=${function} -P ${CMAKE_SOURCE_DIR}/cmake/WriteTexts.cmake
    DEPENDS ${ARGN} ${CMAKE_SOURCE_DIR}/cmake/WriteTexts.cmake
    VERBATIM)
endfunction()
