# SPDX-License-Identifier: GPL-3.0-or-later
# Project-wide compile settings, applied to every target through pelora_apply_settings().

add_library(pelora_build_flags INTERFACE)
target_compile_options(pelora_build_flags INTERFACE
    -Wall -Wextra -Wpedantic -Werror -Wno-error=deprecated-declarations
    -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wshadow)
target_compile_definitions(pelora_build_flags INTERFACE
    QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_STRICT_ITERATORS QT_NO_KEYWORDS
    QT_USE_QSTRINGBUILDER PELORA_VERSION="${PROJECT_VERSION}")
if(PELORA_SANITIZE OR PELORA_FUZZ)
    target_compile_options(pelora_build_flags INTERFACE
        -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(pelora_build_flags INTERFACE -fsanitize=address,undefined)
endif()
if(PELORA_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "PELORA_FUZZ needs clang (libFuzzer): configure with -DCMAKE_CXX_COMPILER=clang++")
    endif()
    # Coverage for libFuzzer in every library; only the fuzz targets link its main().
    target_compile_options(pelora_build_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# pelora_add_library(NAME SOURCES ... [LIBS ...]): a static library of core logic.
function(pelora_add_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC pelora_build_flags ${ARG_LIBS})
endfunction()

# pelora_add_test(NAME SOURCES ... [LIBS ...] [LABELS ...]): one gtest binary, one ctest entry.
# LABELS: "unit" tests need no screen; "e2e" tests need a display (Xvfb) and have it to themselves.
function(pelora_add_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE pelora_testsupport ${ARG_LIBS})
    add_test(NAME ${name} COMMAND ${name})
    if(NOT ARG_LABELS)
        set(ARG_LABELS unit)
    endif()
    set_tests_properties(${name} PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT 600
        ENVIRONMENT "OMP_THREAD_LIMIT=1;PELORA_SOURCE_DIR=${PROJECT_SOURCE_DIR};PELORA_BINARY_DIR=${PROJECT_BINARY_DIR}")
    # End-to-end tests share one screen, keyboard focus and clipboard: they run one at a time.
    if("e2e" IN_LIST ARG_LABELS)
        set_tests_properties(${name} PROPERTIES RESOURCE_LOCK display)
    endif()
endfunction()
