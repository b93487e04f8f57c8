# The two reaction documents become constant text inside brinecast_core.
include(${PROJECT_SOURCE_DIR}/cmake/EmbedDocuments.cmake)
embed_documents(TARGET brinecast_core
  NAME generated/database/EmbeddedReactionDocuments.cpp
  HEADER database/EmbeddedReactionDocuments.h
  FUNCTION korvane::Brinecast::embeddedReactionDocuments
  COMMENT "Embedding the reaction documents"
  INPUTS ${CMAKE_CURRENT_LIST_DIR}/data/reactions-1.json ${CMAKE_CURRENT_LIST_DIR}/data/reactions-2.json)
