# m24_add_settings_panel(<target> [<source>...]): adds the module of a settings panel. It exports only
# Qt's two entry points, so that panels cannot interfere with each other. It is never unmapped:
# meta-types, timers and accessibility factories may outlive the host's unloading.
function(m24_add_settings_panel target)
    set(exports ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/settingspanel.map)
    add_library(${target} MODULE ${ARGN})
    set_target_properties(${target} PROPERTIES AUTOMOC ON LINK_DEPENDS ${exports})
    target_link_libraries(${target} PRIVATE m24::api)
    target_link_options(${target} PRIVATE
        LINKER:--no-undefined,-z,nodelete,--version-script=${exports})
endfunction()

# m24_add_panel_checks(<target> [SKIP <check>...]): runs each check of orvcheck on the panel as a test
# "<target>.<check>". Call it after enable_testing() or include(CTest), with a generator for a single
# configuration. `orvcheck --list` names the checks.
function(m24_add_panel_checks target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SKIP")
    if(TARGET orvcheck)
        set(checker $<TARGET_FILE:orvcheck>)
    elseif(M24_ORVCHECK)
        set(checker ${M24_ORVCHECK})
    else()
        message(WARNING "There is no orvcheck, so ${target} is not checked. Set M24_ORVCHECK.")
        return()
    endif()
    set(panel $<TARGET_FILE:${target}>)
    list(TRANSFORM arg_SKIP PREPEND "--skip=" OUTPUT_VARIABLE skip)
    list(JOIN skip " " skip)
    # ctest reads the list of checks, because a checker of this build does not exist until then.
    set(tests ${CMAKE_CURRENT_BINARY_DIR}/${target}-checktests.cmake)
    configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/m24_tracking-checktests.cmake.in ${tests}.in @ONLY)
    file(GENERATE OUTPUT ${tests} INPUT ${tests}.in)
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${tests})
endfunction()
