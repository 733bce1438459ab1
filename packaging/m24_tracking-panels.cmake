# Not CMAKE_CURRENT_FUNCTION_LIST_DIR, which needs CMake 3.17.
set(m24_panels_folder ${CMAKE_CURRENT_LIST_DIR})

# m24_add_settings_panel(<target> [<source>...]): adds the module of a settings panel. It exports only
# Qt's two entry points, so that panels cannot interfere with each other. It stays mapped, because its
# meta-types, timers and accessibility factories may be used after the host has unloaded it.
function(m24_add_settings_panel target)
    set(exports ${m24_panels_folder}/settingspanel.map)
    add_library(${target} MODULE ${ARGN})
    set_target_properties(${target} PROPERTIES AUTOMOC ON LINK_DEPENDS ${exports})
    target_link_libraries(${target} PRIVATE m24::api)
    target_link_options(${target} PRIVATE
        LINKER:--no-undefined,-z,nodelete,--version-script=${exports})
endfunction()

# m24_add_panel_checks(<target> [SKIP <check>...]): runs each check of orvcheck on the panel as a test
# "<target>.<check>". Call it after enable_testing() or include(CTest). Needs a generator for a single
# configuration. `orvcheck --list` prints the names of the checks.
function(m24_add_panel_checks target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SKIP")
    if(TARGET orvcheck)
        set(checker $<TARGET_FILE:orvcheck>)
    elseif(M24_ORVCHECK)
        set(checker ${M24_ORVCHECK})
    else()
        message(WARNING "orvcheck was not found, so ${target} is not checked. Set M24_ORVCHECK to its path.")
        return()
    endif()
    set(panel $<TARGET_FILE:${target}>)
    list(TRANSFORM arg_SKIP PREPEND "--skip=" OUTPUT_VARIABLE skip)
    list(JOIN skip " " skip)
    # ctest gets the list of checks, because a checker from this build does not exist yet.
    set(tests ${CMAKE_CURRENT_BINARY_DIR}/${target}-checktests.cmake)
    configure_file(${m24_panels_folder}/m24_tracking-checktests.cmake.in ${tests}.in @ONLY)
    file(GENERATE OUTPUT ${tests} INPUT ${tests}.in)
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${tests})
endfunction()
