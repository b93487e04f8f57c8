# Dependencies of a cross build (Windows from Debian): header-only RapidJSON and CLI11 come from
# the build host's Debian packages, GoogleTest is built for the target from Debian's sources.
# Only the two header directories are staged for the target; the host's /usr/include, with its
# glibc and libstdc++ headers, never enters the target's include path.
set(BRINECAST_HOST_INCLUDE_DIR /usr/include CACHE PATH
    "Where the build host's Debian packages put the RapidJSON and CLI11 headers")
set(BRINECAST_GOOGLETEST_SOURCE_DIR /usr/src/googletest CACHE PATH
    "GoogleTest sources to build for the target (Debian package googletest)")

set(stage ${PROJECT_BINARY_DIR}/host-headers)
foreach(headers rapidjson CLI)
  if(NOT EXISTS ${BRINECAST_HOST_INCLUDE_DIR}/${headers})
    message(FATAL_ERROR "${BRINECAST_HOST_INCLUDE_DIR}/${headers} is missing: install rapidjson-dev and "
                        "libcli11-dev (scripts/install-deps.sh windows)")
  endif()
  file(MAKE_DIRECTORY ${stage})
  file(CREATE_LINK ${BRINECAST_HOST_INCLUDE_DIR}/${headers} ${stage}/${headers} SYMBOLIC)
endforeach()

set(RAPIDJSON_INCLUDE_DIRS ${stage})
add_library(CLI11::CLI11 INTERFACE IMPORTED GLOBAL)
set_target_properties(CLI11::CLI11 PROPERTIES INTERFACE_SYSTEM_INCLUDE_DIRECTORIES ${stage}
                                              INTERFACE_INCLUDE_DIRECTORIES ${stage})

if(BRINECAST_BUILD_TESTS)
  if(NOT EXISTS ${BRINECAST_GOOGLETEST_SOURCE_DIR}/CMakeLists.txt)
    message(FATAL_ERROR "GoogleTest sources not found in ${BRINECAST_GOOGLETEST_SOURCE_DIR}: install "
                        "googletest (scripts/install-deps.sh windows)")
  endif()
  # GoogleTest's own code is not ours to hold to our warning flags.
  get_directory_property(ownOptions COMPILE_OPTIONS)
  set_directory_properties(PROPERTIES COMPILE_OPTIONS "")
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
  add_subdirectory(${BRINECAST_GOOGLETEST_SOURCE_DIR} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  set_directory_properties(PROPERTIES COMPILE_OPTIONS "${ownOptions}")
endif()
