# Debian packages of what is installed, one for each component, made by CPack; ./package calls it.

set(plugin_package m24-tracking)
set(programs_package m24-tracking-tools)
set(development_package m24-tracking-dev)
set(components plugin programs development)

find_program(HELP2MAN help2man REQUIRED)
find_program(GZIP gzip REQUIRED)

# compress(<output> <input>): as Debian wants it, without name and time.
function(compress output input)
    add_custom_command(OUTPUT ${output} COMMAND ${GZIP} -n9c ${input} > ${output}
        DEPENDS ${input} VERBATIM)
    cmake_path(GET output FILENAME name)
    add_custom_target(compress_${name} ALL DEPENDS ${output})
endfunction()

# man_page(<program> <description>): its own --help as a page of section 1. help2man gives the
# program's path to a shell without quotes: a relative one has no space in it, wherever this is built.
function(man_page program description)
    set(page ${PROJECT_BINARY_DIR}/${program}.1)
    add_custom_command(OUTPUT ${page}
        COMMAND ${HELP2MAN} --no-info --name=${description} --output=${page}
            $<PATH:RELATIVE_PATH,$<TARGET_FILE:${program}>,${PROJECT_BINARY_DIR}>
        WORKING_DIRECTORY ${PROJECT_BINARY_DIR} DEPENDS ${program} VERBATIM)
    compress(${page}.gz ${page})
    install(FILES ${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT programs)
endfunction()

man_page(orvhost "load a settings panel for cameras and give it a camera")
man_page(orvcheck "check whether a settings panel for cameras keeps the contract")
# The module cannot be asked for help.
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
install(DIRECTORY examples
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${development_package} COMPONENT development)

set(CPACK_COMPONENT_PLUGIN_DESCRIPTION "settings panel for a camera's subject tracking
A Qt 5 plug-in for camera-control applications. It adds one settings panel,
\"AI Tracking\": tracking on or off, what is tracked, how the camera follows
and how the picture is composed. It follows a camera whose tracking is turned
on or off, or whose type is changed, by somebody else.")
set(CPACK_DEBIAN_PLUGIN_PACKAGE_SECTION video)

set(CPACK_COMPONENT_PROGRAMS_DESCRIPTION "reference host and checks for camera settings panels
The program orvhost loads a settings-panel plug-in and gives it a camera to
work on, a simulated one or a real one. It shows every transfer between
panel and camera and can put faults in the camera's way. The program orvcheck
checks a panel against the contract with its host, and the module
orv_hostcheck, loaded in place of a panel, checks the host.")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_DEPENDS "${plugin_package} (= ${PROJECT_VERSION}), binutils")

set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "interface and widgets for camera settings panels
What it takes to write a settings panel for camera-control applications, or
an application that loads such panels: the interface between the two, a
static library of widgets, the pictures that a host brings, a package
configuration for CMake and two small examples.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "qtbase5-dev, libqt5svg5-dev")
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
# Whatever the umask is.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
