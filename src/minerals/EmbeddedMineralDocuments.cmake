# The mineral data becomes constant text inside brinecast_core, as the reaction documents do.
include(${PROJECT_SOURCE_DIR}/cmake/EmbedDocuments.cmake)
embed_documents(TARGET brinecast_core
  NAME generated/minerals/EmbeddedMineralDocuments.cpp
  HEADER minerals/EmbeddedMineralDocuments.h
  FUNCTION korvane::Brinecast::embeddedMineralDocuments
  COMMENT "Embedding the mineral data"
  INPUTS ${CMAKE_CURRENT_LIST_DIR}/data/minerals.json)
