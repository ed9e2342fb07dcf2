# Programs around the libraries: tests, examples, benchmarks, fuzzers. Each of these functions
# does nothing when it is given no source.

include(GoogleTest)

# orv_program(TARGET SOURCES file... [LIBS library...] [CORE_ONLY]): a host program within the
# project, on both libraries or on orvcore alone.
function(orv_program target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "CORE_ONLY" "" "SOURCES;LIBS")
    add_executable(${target} ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE
        $<IF:$<BOOL:${arg_CORE_ONLY}>,orv::orvcore,orv::orvcl> orv_warnings ${arg_LIBS})
endfunction()

# orv_test(TARGET SOURCES file... [LIBS library...] [THREADS] [CORE_ONLY])
#
# One GoogleTest program an area, linked to the shared libraries as a host is. Each of its tests is
# a test of ctest with the area as its label: orv_io_tests has the label io. THREADS adds the
# label threads, by which the thread sanitizer's run picks its tests.
function(orv_test target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "THREADS;CORE_ONLY" "" "SOURCES;LIBS")
    if(NOT arg_SOURCES)
        return()
    endif()
    set(core_only)
    if(arg_CORE_ONLY)
        set(core_only CORE_ONLY)
    endif()
    orv_program(${target} ${core_only}
        SOURCES ${arg_SOURCES} LIBS GTest::gtest_main orv_test_support ${arg_LIBS})
    string(REGEX REPLACE "^orv_|_tests$" "" labels ${target})
    gtest_discover_tests(${target} TEST_PREFIX ${labels}/ DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60)
    if(arg_THREADS)
        list(APPEND labels threads)
    endif()

    # Lists do not survive gtest_discover_tests(PROPERTIES), so ctest reads them from a file of
    # its own once the tests are known.
    set(properties ${CMAKE_CURRENT_BINARY_DIR}/${target}_properties.cmake)
    file(CONFIGURE OUTPUT ${properties} @ONLY CONTENT [[
if(@target@_TESTS)
    set_tests_properties(${@target@_TESTS} PROPERTIES
        TIMEOUT 300 LABELS "@labels@" ENVIRONMENT "@ORV_TEST_ENVIRONMENT@")
endif()
]])
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${properties})
endfunction()

# orv_example(NAME EXPECT regular-expression [ARGS word...]): builds NAME.cpp of the current folder
# and has ctest run it; the run passes when its output matches.
function(orv_example name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPECT" "ARGS;LIBS")
    orv_program(example_${name} SOURCES ${name}.cpp LIBS ${arg_LIBS})
    if(ORV_BUILD_TESTS)
        add_test(NAME example_${name} COMMAND example_${name} ${arg_ARGS})
        set_tests_properties(example_${name} PROPERTIES
            LABELS examples TIMEOUT 60 PASS_REGULAR_EXPRESSION "${arg_EXPECT}"
            ENVIRONMENT "${ORV_TEST_ENVIRONMENT}")
    endif()
endfunction()

# orv_fuzzer(NAME SOURCES file... [LIBS library...]): a libFuzzer program fuzz_NAME, whose seeds
# lie in corpus/NAME of the current folder and whose dictionary, if it has one, is NAME.dict.
function(orv_fuzzer name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBS")
    if(NOT arg_SOURCES)
        return()
    endif()
    orv_program(fuzz_${name} SOURCES ${arg_SOURCES} LIBS ${arg_LIBS})
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
endfunction()
