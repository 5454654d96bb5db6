# tessarine_library(NAME [PCH core|widgets] LINKS targets...)
# One static library from all sources of the current folder. Libraries name only what the layer
# below offers, so that a wrong include does not link.
function(tessarine_library name)
    cmake_parse_arguments(ARG "" "PCH" "LINKS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp"
        "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}/src")
    target_link_libraries(${name} PUBLIC tessarine_options ${ARG_LINKS})
    tessarine_precompiled_header(${name} "${ARG_PCH}")
    # Ninja does not notice that a new source needs moc; each configuration runs it once more.
    file(REMOVE "${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/timestamp")
endfunction()

# Shares one of the two precompiled headers with the target.
function(tessarine_precompiled_header name kind)
    if(kind STREQUAL "core")
        target_precompile_headers(${name} REUSE_FROM tessarine_core_pch)
    elseif(kind STREQUAL "widgets")
        # The header is only valid where the same module macros are set.
        target_compile_definitions(${name} PRIVATE QT_CORE_LIB QT_GUI_LIB QT_WIDGETS_LIB)
        target_precompile_headers(${name} REUSE_FROM tessarine_widgets_pch)
    endif()
endfunction()

# tessarine_tests(LIBRARIES targets... [LABELS labels...] [SCREEN])
# One QtTest executable for each *Test.cpp of the current folder. They run on the offscreen
# platform; with SCREEN they run on the X display that CTest was started on.
function(tessarine_tests)
    cmake_parse_arguments(ARG "SCREEN" "" "LIBRARIES;LABELS" ${ARGN})
    file(GLOB tests CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*Test.cpp")
    foreach(source ${tests})
        get_filename_component(name "${source}" NAME_WE)
        add_executable(${name} "${source}")
        target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
        target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} Qt6::Test Qt6::Widgets)
        tessarine_precompiled_header(${name} widgets)
        add_test(NAME ${name} COMMAND ${name})
        set(environment "QT_LOGGING_RULES=qt.qpa.*=false"
            # A test that has started another program may start threads afterwards.
            "TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/tsan.supp:die_after_fork=0"
            "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/lsan.supp"
            "UBSAN_OPTIONS=print_stacktrace=1")
        if(NOT ARG_SCREEN)
            list(APPEND environment "QT_QPA_PLATFORM=offscreen")
        endif()
        set_tests_properties(${name} PROPERTIES
            ENVIRONMENT "${environment}" LABELS "${ARG_LABELS}" TIMEOUT 120)
    endforeach()
endfunction()
