# The two reaction documents become constant text inside brinecast_core: a source file generated
# in the build tree from src/database/data/*.json whenever one of them changes.
set(BRINECAST_REACTION_DOCUMENTS
  ${CMAKE_CURRENT_LIST_DIR}/data/reactions-1.json
  ${CMAKE_CURRENT_LIST_DIR}/data/reactions-2.json)
set(BRINECAST_REACTION_DOCUMENTS_SOURCE
  ${CMAKE_CURRENT_BINARY_DIR}/generated/database/EmbeddedReactionDocuments.cpp)
string(REPLACE ";" "|" _documentList "${BRINECAST_REACTION_DOCUMENTS}")
add_custom_command(
  OUTPUT ${BRINECAST_REACTION_DOCUMENTS_SOURCE}
  COMMAND ${CMAKE_COMMAND}
          -DOUTPUT=${BRINECAST_REACTION_DOCUMENTS_SOURCE}
          -DHEADER=database/EmbeddedReactionDocuments.h
          -DFUNCTION=korvane::Brinecast::embeddedReactionDocuments
          -DINPUTS=${_documentList}
          -P ${PROJECT_SOURCE_DIR}/cmake/EmbedText.cmake
  DEPENDS ${BRINECAST_REACTION_DOCUMENTS} ${PROJECT_SOURCE_DIR}/cmake/EmbedText.cmake
  COMMENT "Embedding the reaction documents"
  VERBATIM)
target_sources(brinecast_core PRIVATE ${BRINECAST_REACTION_DOCUMENTS_SOURCE})
