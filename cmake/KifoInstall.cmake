# Install rules and the package files that find_package(kifo) reads.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(_targets kifo_kit)
if(KIFO_WITH_UI)
  list(APPEND _targets kifo_ui)
endif()
install(TARGETS ${_targets} EXPORT kifoTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT kifoTargets NAMESPACE kifo:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kifo)

set(_qt_folders inapp/views)
install(DIRECTORY Kifo_iOS_Common_Kit DESTINATION include/kifo FILES_MATCHING PATTERN "*.h"
  PATTERN views EXCLUDE)
install(FILES platform/linux/LinuxPlatform.h DESTINATION include/kifo/platform/linux)
if(KIFO_WITH_UI)
  install(DIRECTORY Kifo_iOS_Common_Kit/inapp/views DESTINATION include/kifo/Kifo_iOS_Common_Kit/inapp
    FILES_MATCHING PATTERN "*.h")
  install(DIRECTORY platform/qt DESTINATION include/kifo/platform FILES_MATCHING PATTERN "*.h")
endif()

configure_package_config_file(cmake/kifoConfig.cmake.in ${PROJECT_BINARY_DIR}/kifoConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kifo)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kifoConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kifoConfig.cmake ${PROJECT_BINARY_DIR}/kifoConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kifo)
