# What `cmake --install` gives a host program: libbrinecast.so with its public headers, a CMake
# package (find_package(Brinecast) -> Brinecast::brinecast) and a pkg-config file, both telling
# where the installed reference engine is, since `Input.dllPath` must name an engine directory.
include(CMakePackageConfigHelpers)

set(BRINECAST_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Brinecast)
set(BRINECAST_ENGINE_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/brinecast/engines/reference)

set_target_properties(brinecast PROPERTIES EXPORT_NAME brinecast)
install(TARGETS brinecast EXPORT BrinecastTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/korvane
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h")
install(EXPORT BrinecastTargets NAMESPACE Brinecast:: DESTINATION ${BRINECAST_CMAKE_DIR})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/BrinecastConfig.cmake.in
  ${PROJECT_BINARY_DIR}/BrinecastConfig.cmake
  INSTALL_DESTINATION ${BRINECAST_CMAKE_DIR}
  PATH_VARS BRINECAST_ENGINE_INSTALL_DIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/BrinecastConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/BrinecastConfig.cmake
              ${PROJECT_BINARY_DIR}/BrinecastConfigVersion.cmake
        DESTINATION ${BRINECAST_CMAKE_DIR})

# Relocatable: the prefix is found from where the .pc file lies.
file(RELATIVE_PATH BRINECAST_PC_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" BRINECAST_PC_PREFIX "${BRINECAST_PC_PREFIX}")
configure_file(${PROJECT_SOURCE_DIR}/cmake/brinecast.pc.in ${PROJECT_BINARY_DIR}/brinecast.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/brinecast.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
