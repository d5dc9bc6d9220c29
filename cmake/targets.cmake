# Flags and the three kinds of target: a library per folder of src/, a test executable per folder
# of tests/, and the benchmark programs. Every target carries its own flags through cadenza_flags.

set(CMAKE_COMPILE_WARNING_AS_ERROR ${CADENZA_WERROR})
add_library(cadenza_flags INTERFACE)
target_compile_features(cadenza_flags INTERFACE cxx_std_20)
target_compile_options(cadenza_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor
    -Woverloaded-virtual
    # Not a part of -Wconversion for g++.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>)
add_library(cadenza_quickly_built INTERFACE)
if(CADENZA_SANITIZE)
    # -O1 keeps the picture tests bearable under software rendering.
    target_compile_options(cadenza_flags INTERFACE
        -O1 -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    # For the code of tests and benchmarks, behind the flags: it runs once, and optimising it takes longer.
    target_compile_options(cadenza_quickly_built INTERFACE -O0)
    target_link_options(cadenza_flags INTERFACE -fsanitize=address,undefined)
endif()
if(CADENZA_FUZZ)
    # The libraries too: the fuzzer looks for inputs that reach more of them.
    target_compile_options(cadenza_flags INTERFACE
        -O1 -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
endif()

# cadenza_library(<folder> SOURCES <file...> LINK <library...>)
function(cadenza_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    add_library(${name} STATIC ${arg_SOURCES})
    add_library(cadenza::${name} ALIAS ${name})
    set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF OUTPUT_NAME cadenza_${name})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE cadenza_flags)
endfunction()

# Keeps the libraries that an executable loads until its leaks are counted; see keep_loaded.cpp.
function(cadenza_keep_loaded target)
    if(CADENZA_SANITIZE)
        target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/keep_loaded.cpp)
    endif()
endfunction()

# cadenza_test_support(<name> SOURCES <file...> [LINK <library...>]): what several tests share.
function(cadenza_test_support name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    add_library(${name} STATIC ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE cadenza_flags)
endfunction()

# cadenza_test(<folder> SOURCES <file...> LINK <library...> [LABELS <label...>])
# One executable, registered as one CTest test per GoogleTest case. Tests labelled gl share the pointer,
# keys and focus of the virtual screen that ./test provides; those labelled e2e have screens of their own
# but wait for what a program does in time, those labelled sound for what it plays. Of each kind one runs
# at a time.
function(cadenza_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK;LABELS")
    add_executable(test_${name} ${arg_SOURCES})
    set_target_properties(test_${name} PROPERTIES CXX_EXTENSIONS OFF)
    target_compile_definitions(test_${name} PRIVATE
        CADENZA_TEST_SOURCE_DIR="${CMAKE_CURRENT_SOURCE_DIR}"
        CADENZA_TEST_BINARY_DIR="${CMAKE_CURRENT_BINARY_DIR}")
    target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(test_${name} PRIVATE ${arg_LINK} cadenza_flags cadenza_quickly_built GTest::gtest_main)
    cadenza_keep_loaded(test_${name})
    gtest_discover_tests(test_${name} PROPERTIES TIMEOUT 300 DISCOVERY_MODE PRE_TEST)
    set(labels ${name} ${arg_LABELS})
    set(lock)
    foreach(kind gl e2e sound)
        if(kind IN_LIST labels)
            set(lock "RESOURCE_LOCK ${kind}")
        endif()
    endforeach()
    # A list cannot be handed through the discovery: it would end at its first semicolon.
    file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/test_${name}_labels.cmake @ONLY CONTENT [[
if(test_@name@_TESTS)
    set_tests_properties(${test_@name@_TESTS} PROPERTIES LABELS "@labels@" @lock@)
endif()
]])
    set_property(DIRECTORY APPEND PROPERTY
        TEST_INCLUDE_FILES ${CMAKE_CURRENT_BINARY_DIR}/test_${name}_labels.cmake)
endfunction()

# cadenza_fuzz(SOURCES <file...> FUZZER <file...> REPLAY <file...> LINK <library...>)
# The fuzz targets: with FUZZER the program that looks for inputs, where CADENZA_FUZZ is set; else with
# REPLAY the test that gives each target the inputs kept for it.
function(cadenza_fuzz)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "SOURCES;FUZZER;REPLAY;LINK")
    if(NOT CADENZA_FUZZ)
        cadenza_test(fuzz SOURCES ${arg_SOURCES} ${arg_REPLAY} LINK ${arg_LINK})
        return()
    endif()
    add_executable(fuzz ${arg_SOURCES} ${arg_FUZZER})
    set_target_properties(fuzz PROPERTIES CXX_EXTENSIONS OFF)
    target_include_directories(fuzz PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(fuzz PRIVATE ${arg_LINK} cadenza_flags)
    target_link_options(fuzz PRIVATE -fsanitize=fuzzer,address,undefined)
endfunction()

# cadenza_bench(<name> SOURCES <file...> LINK <library...>)
function(cadenza_bench name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    add_executable(bench_${name} ${arg_SOURCES} program.cpp)
    set_target_properties(bench_${name} PROPERTIES CXX_EXTENSIONS OFF)
    target_include_directories(bench_${name} PRIVATE ${PROJECT_SOURCE_DIR}/bench)
    target_link_libraries(bench_${name} PRIVATE ${arg_LINK} cadenza_flags cadenza_quickly_built benchmark::benchmark)
endfunction()
