# The Pitzer species, reactions, minerals and virial parameters become constant text inside
# brinecast_core, as the reaction documents do.
embed_documents(TARGET brinecast_core
  NAME generated/activity/pitzer/EmbeddedPitzerDocuments.cpp
  HEADER activity/pitzer/EmbeddedPitzerDocuments.h
  FUNCTION korvane::Brinecast::embeddedPitzerDocuments
  COMMENT "Embedding the Pitzer data"
  INPUTS ${CMAKE_CURRENT_LIST_DIR}/data/pitzer.json)
