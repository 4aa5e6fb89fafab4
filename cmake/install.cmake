# Installation: the public headers (include/tl_gis only), library, tool, Config files, CMake
# package and pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS tl_gis EXPORT tl_gisTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS tlgis RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(DIRECTORY ${CMAKE_SOURCE_DIR}/include/tl_gis/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tl_gis
  FILES_MATCHING PATTERN "*.h")
install(DIRECTORY ${CMAKE_SOURCE_DIR}/Config/ DESTINATION ${CMAKE_INSTALL_DATADIR}/tl_gis/Config)

install(EXPORT tl_gisTargets NAMESPACE tl_gis:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/tl_gis)
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/tl_gisConfig.cmake.in
  ${CMAKE_BINARY_DIR}/tl_gisConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/tl_gis)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/tl_gisConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/tl_gisConfig.cmake ${CMAKE_BINARY_DIR}/tl_gisConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/tl_gis)

configure_file(${CMAKE_SOURCE_DIR}/cmake/tl_gis.pc.in ${CMAKE_BINARY_DIR}/tl_gis.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/tl_gis.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
