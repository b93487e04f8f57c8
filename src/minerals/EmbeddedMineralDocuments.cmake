# The mineral data becomes constant text inside brinecast_core, as the reaction documents do.
set(BRINECAST_MINERAL_DOCUMENTS ${CMAKE_CURRENT_LIST_DIR}/data/minerals.json)
set(BRINECAST_MINERAL_DOCUMENTS_SOURCE ${CMAKE_CURRENT_BINARY_DIR}/generated/minerals/EmbeddedMineralDocuments.cpp)
add_custom_command(
  OUTPUT ${BRINECAST_MINERAL_DOCUMENTS_SOURCE}
  COMMAND ${CMAKE_COMMAND}
          -DOUTPUT=${BRINECAST_MINERAL_DOCUMENTS_SOURCE}
          -DHEADER=minerals/EmbeddedMineralDocuments.h
          -DFUNCTION=korvane::Brinecast::embeddedMineralDocuments
          -DINPUTS=${BRINECAST_MINERAL_DOCUMENTS}
          -P ${PROJECT_SOURCE_DIR}/cmake/EmbedText.cmake
  DEPENDS ${BRINECAST_MINERAL_DOCUMENTS} ${PROJECT_SOURCE_DIR}/cmake/EmbedText.cmake
  COMMENT "Embedding the mineral data"
  VERBATIM)
target_sources(brinecast_core PRIVATE ${BRINECAST_MINERAL_DOCUMENTS_SOURCE})
