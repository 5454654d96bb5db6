# Everything that all targets share: language level, warnings, sanitizers, ccache, linker.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

# ccache needs to be told that precompiled headers may be reused.
find_program(TESSARINE_CCACHE ccache)
if(TESSARINE_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND}" -E env "CCACHE_SLOPPINESS=pch_defines,time_macros"
        "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" "CCACHE_NOHASHDIR=1" "${TESSARINE_CCACHE}")
endif()

add_library(tessarine_options INTERFACE)
target_compile_options(tessarine_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wunused
    -Wcast-align -Wformat=2 -Wnull-dereference)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(tessarine_options INTERFACE -Wduplicated-cond -Wlogical-op
        -fpch-preprocess
        # The optimiser's guesses about inlined Qt containers are wrong more often than right.
        -Wno-null-dereference)
endif()
if(TESSARINE_WARNINGS_AS_ERRORS)
    target_compile_options(tessarine_options INTERFACE -Werror)
endif()
target_compile_definitions(tessarine_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
    QT_STRICT_ITERATORS QT_NO_FOREACH)

if(TESSARINE_SANITIZERS)
    target_compile_options(tessarine_options INTERFACE
        "-fsanitize=${TESSARINE_SANITIZERS}" -fno-omit-frame-pointer -g1)
    target_link_options(tessarine_options INTERFACE "-fsanitize=${TESSARINE_SANITIZERS}")
    if(TESSARINE_SANITIZERS MATCHES "undefined")
        target_compile_options(tessarine_options INTERFACE -fno-sanitize-recover=undefined)
    endif()
endif()

if(TESSARINE_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "TESSARINE_FUZZ needs clang.")
    endif()
    target_compile_options(tessarine_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

find_program(TESSARINE_MOLD mold)
if(TESSARINE_MOLD)
    target_link_options(tessarine_options INTERFACE -fuse-ld=mold)
endif()
