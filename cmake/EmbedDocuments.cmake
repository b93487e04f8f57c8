# embed_documents(TARGET <t> NAME <generated/.../X.cpp> HEADER <include> FUNCTION <qualified::name>
#                 COMMENT <text> INPUTS <json>...)
# Compiles data files into <t> as constant text: a source generated in the build tree by
# EmbedText.cmake whenever one of the inputs changes, so the library reads nothing from disk.
function(embed_documents)
  cmake_parse_arguments(EMBED "" "TARGET;NAME;HEADER;FUNCTION;COMMENT" "INPUTS" ${ARGN})
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${EMBED_NAME})
  string(REPLACE ";" "|" inputList "${EMBED_INPUTS}")
  add_custom_command(
    OUTPUT ${source}
    COMMAND ${CMAKE_COMMAND}
            -DOUTPUT=${source}
            -DHEADER=${EMBED_HEADER}
            -DFUNCTION=${EMBED_FUNCTION}
            -DINPUTS=${inputList}
            -P ${PROJECT_SOURCE_DIR}/cmake/EmbedText.cmake
    DEPENDS ${EMBED_INPUTS} ${PROJECT_SOURCE_DIR}/cmake/EmbedText.cmake
    COMMENT "${EMBED_COMMENT}"
    VERBATIM)
  target_sources(${EMBED_TARGET} PRIVATE ${source})
endfunction()
