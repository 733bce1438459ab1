# Makes a Debian package for each installed component, with CPack. Used by ./package.

set(plugin_package m24-tracking)
set(programs_package m24-tracking-tools)
set(development_package m24-tracking-dev)
set(components plugin programs development)

find_program(HELP2MAN help2man REQUIRED)
find_program(GZIP gzip REQUIRED)

# compress(<output> <input>): compresses a file without its name and time, as Debian requires.
function(compress output input)
    add_custom_command(OUTPUT ${output} COMMAND ${GZIP} -n9c ${input} > ${output}
        DEPENDS ${input} VERBATIM)
    cmake_path(GET output FILENAME name)
    add_custom_target(compress_${name} ALL DEPENDS ${output})
endfunction()

# man_page(<program> <description> <other page>...): makes a page of section 1 from the program's --help.
# The paths are relative because help2man passes them to a shell without quotes, and the build folder's
# path may have spaces.
function(man_page program description)
    set(page ${PROJECT_BINARY_DIR}/${program}.1)
    list(TRANSFORM ARGN REPLACE "^(.+)(\\(.\\))$" ".BR \\1 \\2" OUTPUT_VARIABLE others)
    list(JOIN others ",\n" others)
    file(WRITE ${page}.extra "[SEE ALSO]\n${others}\n")
    add_custom_command(OUTPUT ${page}
        COMMAND ${HELP2MAN} --no-info --name=${description} --include=${program}.1.extra --output=${page}
            $<PATH:RELATIVE_PATH,$<TARGET_FILE:${program}>,${PROJECT_BINARY_DIR}>
        WORKING_DIRECTORY ${PROJECT_BINARY_DIR} DEPENDS ${program} ${page}.extra VERBATIM)
    compress(${page}.gz ${page})
    install(FILES ${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT programs)
endfunction()

man_page(orvhost "load a settings panel for cameras and give it a camera"
    "orvcheck(1)" "orv_hostcheck(7)")
man_page(orvcheck "check whether a settings panel for cameras keeps the contract"
    "orvhost(1)" "orv_hostcheck(7)")
# The module has no --help.
set(page ${PROJECT_BINARY_DIR}/orv_hostcheck.7)
set(m24_module_folder ${CMAKE_INSTALL_PREFIX}/${m24_modules})
configure_file(${CMAKE_CURRENT_LIST_DIR}/orv_hostcheck.7.in ${page} @ONLY)
compress(${page}.gz ${page})
install(FILES ${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man7 COMPONENT programs)

compress(${PROJECT_BINARY_DIR}/changelog.gz ${CMAKE_CURRENT_LIST_DIR}/changelog)
foreach(component IN LISTS components)
    set(package ${${component}_package})
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
    install(FILES ${PROJECT_BINARY_DIR}/changelog.gz ${CMAKE_CURRENT_LIST_DIR}/copyright
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
endforeach()
# The documents and examples keep their places relative to each other, so that links work.
install(DIRECTORY examples
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${development_package} COMPONENT development)
install(FILES docs/host.md docs/wire.md docs/life.svg docs/hostcheck.png docs/panel-en.png
        docs/panel-zh.png
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${development_package}/docs COMPONENT development)

set(CPACK_COMPONENT_PLUGIN_DESCRIPTION "settings panel for a camera's subject tracking
A Qt 5 plug-in for camera-control applications. It adds one settings panel,
\"AI Tracking\": tracking on or off, what is tracked, how the camera follows
and how the picture is composed. It also shows changes of tracking and type
that were made elsewhere.")
set(CPACK_DEBIAN_PLUGIN_PACKAGE_SECTION video)
# For the panel in Chinese.
set(CPACK_DEBIAN_PLUGIN_PACKAGE_RECOMMENDS "fonts-wqy-microhei | fonts-noto-cjk")

set(CPACK_COMPONENT_PROGRAMS_DESCRIPTION "reference host and checks for camera settings panels
The program orvhost loads a settings-panel plug-in and gives it a camera to
control, either simulated or real. It shows every transfer between panel and
camera and can simulate faults. The program orvcheck checks whether a panel
keeps the contract with its host. The module orv_hostcheck, loaded in place
of a panel, checks the host.")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SECTION devel)
# For Qt's own dialogs in Chinese.
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_RECOMMENDS "qttranslations5-l10n")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_DEPENDS "${plugin_package} (= ${PROJECT_VERSION}), binutils")

set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "interface and widgets for camera settings panels
Everything needed to write a settings panel for camera-control applications, or
an application that loads such panels: the interface between the two, a static
library of widgets, the pictures that a host provides, a package configuration
for CMake, documentation and two small examples.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "qtbase5-dev, libqt5svg5-dev")
# Suggested for m24_add_panel_checks(), which needs orvcheck.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "${programs_package}")

set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The m24_tracking developers <m24_tracking@m24-tracking.invalid>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Do not depend on the umask.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
