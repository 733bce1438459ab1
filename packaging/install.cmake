# Sets the installation folders. Installs the files that find_package(m24_tracking) reads and the menu
# entry.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
include(${CMAKE_CURRENT_LIST_DIR}/m24_tracking-panels.cmake)

set(m24_modules ${CMAKE_INSTALL_LIBDIR}/m24_tracking)
set(m24_headers ${CMAKE_INSTALL_INCLUDEDIR}/m24_tracking)
set(m24_resources ${CMAKE_INSTALL_DATADIR}/m24_tracking/res)
set(m24_config ${CMAKE_INSTALL_LIBDIR}/cmake/m24_tracking)

configure_package_config_file(packaging/m24_tracking-config.cmake.in m24_tracking-config.cmake
    INSTALL_DESTINATION ${m24_config}
    PATH_VARS CMAKE_INSTALL_BINDIR m24_resources m24_modules
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/m24_tracking-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(EXPORT m24_tracking NAMESPACE m24:: FILE m24_tracking-targets.cmake
    DESTINATION ${m24_config} COMPONENT development)
install(FILES
    ${PROJECT_BINARY_DIR}/m24_tracking-config.cmake
    ${PROJECT_BINARY_DIR}/m24_tracking-config-version.cmake
    packaging/m24_tracking-panels.cmake
    packaging/m24_tracking-checktests.cmake.in
    packaging/settingspanel.map
    DESTINATION ${m24_config} COMPONENT development)

install(FILES packaging/orvhost.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT programs)
install(FILES packaging/orvhost.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT programs)
