# SPDX-License-Identifier: MIT
# The one helper through which every target of the project is made, so that
# warnings, sanitizers, visibility and test registration are the same
# everywhere.

add_library(pde_build_options INTERFACE)
target_compile_options(pde_build_options INTERFACE -Wall -Wextra -Wpedantic)
target_compile_definitions(pde_build_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)

if(PDE_SANITIZERS)
    list(JOIN PDE_SANITIZERS "," _pde_sanitizers)
    target_compile_options(pde_build_options INTERFACE
        -fsanitize=${_pde_sanitizers} -fno-omit-frame-pointer
        -fno-sanitize-recover=all)
    target_link_options(pde_build_options INTERFACE -fsanitize=${_pde_sanitizers})
endif()

if(PDE_BUILD_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "The fuzz targets need clang with libFuzzer "
            "(Debian packages clang and libclang-rt-14-dev); use the fuzz preset.")
    endif()
    target_compile_options(pde_build_options INTERFACE
        -fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer
        -fno-sanitize-recover=all)
    target_link_options(pde_build_options INTERFACE -fsanitize=address,undefined)
endif()

# pde_add_target(<name> <LIBRARY|TEST|FUZZER|BENCHMARK|EXECUTABLE>
#                SOURCES <files>... [LIBRARIES <targets>...])
#
# LIBRARY   a static, position-independent library with hidden symbols, to be
#           linked into the plug-in module as well as into tests;
# SHARED_LIBRARY a shared library that exports only what its headers mark
#           (defines <NAME>_LIBRARY while it is built), installed in the
#           export set <name>Targets;
# TEST      a GoogleTest executable whose tests CTest discovers;
# FUZZER    a libFuzzer target (fuzz preset only);
# BENCHMARK a Google Benchmark executable (smoke-run by CTest in test builds);
# EXECUTABLE a plain program.
function(pde_add_target name kind)
    cmake_parse_arguments(PARSE_ARGV 2 ARG "" "" "SOURCES;LIBRARIES")

    if(kind MATCHES "^(SHARED_)?LIBRARY$")
        if(kind STREQUAL "LIBRARY")
            add_library(${name} STATIC ${ARG_SOURCES})
        else()
            add_library(${name} SHARED ${ARG_SOURCES})
            string(TOUPPER "${name}_LIBRARY" _pde_building)
            target_compile_definitions(${name} PRIVATE ${_pde_building})
            set_target_properties(${name} PROPERTIES
                VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
            # The library goes to the runtime package, its .so link to the
            # development package with the headers and ${name}Targets.
            install(TARGETS ${name} EXPORT ${name}Targets
                LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
                    COMPONENT runtime NAMELINK_COMPONENT development)
        endif()
        set_target_properties(${name} PROPERTIES
            POSITION_INDEPENDENT_CODE ON
            CXX_VISIBILITY_PRESET hidden
            VISIBILITY_INLINES_HIDDEN ON)
        target_include_directories(${name} PUBLIC
            "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>")
        target_link_libraries(${name} PUBLIC ${ARG_LIBRARIES}
            PRIVATE pde_build_options)
    else()
        add_executable(${name} ${ARG_SOURCES})
        target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} pde_build_options)
    endif()
    set_target_properties(${name} PROPERTIES AUTOMOC ON)

    if(kind STREQUAL "TEST")
        target_link_libraries(${name} PRIVATE GTest::gtest GTest::gtest_main)
        target_compile_definitions(${name} PRIVATE
            PDE_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data")
        gtest_discover_tests(${name}
            DISCOVERY_MODE PRE_TEST
            PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
    elseif(kind STREQUAL "FUZZER")
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    elseif(kind STREQUAL "BENCHMARK")
        target_link_libraries(${name} PRIVATE benchmark::benchmark)
        # In test builds each suite also runs once, briefly, so that it keeps working.
        if(BUILD_TESTING)
            add_test(NAME ${name}.smoke COMMAND ${name} --benchmark_min_time=0.001)
            set_tests_properties(${name}.smoke PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
        endif()
    elseif(NOT kind MATCHES "^(SHARED_LIBRARY|LIBRARY|EXECUTABLE)$")
        message(FATAL_ERROR "pde_add_target: unknown kind '${kind}' for ${name}")
    endif()
endfunction()
