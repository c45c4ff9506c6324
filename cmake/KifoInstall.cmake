# Install rules and the package files that find_package(kifo) reads.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(_targets kifo_kit)
if(KIFO_WITH_UI)
  list(APPEND _targets kifo_gui kifo_ui)
endif()
if(KIFO_WITH_QUICK)
  list(APPEND _targets kifo_quick)
endif()
install(TARGETS ${_targets} EXPORT kifoTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION include/kifo)
install(EXPORT kifoTargets NAMESPACE kifo:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kifo)
# Asked for as a component, because its local server needs a library that the SDK does not.
if(TARGET kifo_testing)
  set(_testing kifo_testing)
  if(KIFO_WITH_UI)
    list(APPEND _testing kifo_testing_ui)
  endif()
  install(TARGETS ${_testing} EXPORT kifoTestingTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} FILE_SET HEADERS DESTINATION include/kifo)
  install(EXPORT kifoTestingTargets NAMESPACE kifo::
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kifo)
endif()

configure_package_config_file(cmake/kifoConfig.cmake.in ${PROJECT_BINARY_DIR}/kifoConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kifo)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kifoConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kifoConfig.cmake ${PROJECT_BINARY_DIR}/kifoConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kifo)
