# Install rules and the package files that find_package(kifo) reads.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(_targets kifo_kit)
foreach(_optional kifo_ui kifo_testing)
  if(TARGET ${_optional})
    list(APPEND _targets ${_optional})
  endif()
endforeach()
install(TARGETS ${_targets} EXPORT kifoTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION include/kifo)
install(EXPORT kifoTargets NAMESPACE kifo:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kifo)

configure_package_config_file(cmake/kifoConfig.cmake.in ${PROJECT_BINARY_DIR}/kifoConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kifo)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kifoConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kifoConfig.cmake ${PROJECT_BINARY_DIR}/kifoConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kifo)
