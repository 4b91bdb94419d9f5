# Tests: one program per folder of tests/, each case its own line in ctest's report only where that is cheap.

if(CMAKE_CROSSCOMPILING)
  # Debian has the library for its own processor, and its sources.
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  foreach(library IN ITEMS gtest gtest_main gmock)
    target_compile_options(${library} PRIVATE -w -O0)
  endforeach()
  include(cmake/emulated_tests.cmake)
else()
  find_package(GTest REQUIRED)
endif()

# velmor_run_test(NAME name PROGRAM program TIMEOUT seconds [ARGS arg...] [WITHOUT cases...] [ENVIRONMENT variable...])
# Has ctest run a test program without these cases.
function(velmor_run_test)
  cmake_parse_arguments(R "" "NAME;PROGRAM;TIMEOUT" "ARGS;WITHOUT;ENVIRONMENT" ${ARGN})
  if(CMAKE_CROSSCOMPILING)
    velmor_run_emulated_test()
    return()
  endif()
  if(R_WITHOUT)
    list(JOIN R_WITHOUT ":" without)
    list(APPEND R_ARGS --gtest_filter=-${without})
  endif()
  add_test(NAME ${R_NAME} COMMAND ${R_PROGRAM} ${R_ARGS})
  set_tests_properties(${R_NAME} PROPERTIES TIMEOUT ${R_TIMEOUT} ENVIRONMENT "${R_ENVIRONMENT}")
  if(R_NAME IN_LIST VELMOR_LONGEST_TESTS)
    set_tests_properties(${R_NAME} PROPERTIES COST 1000)
  endif()
endfunction()

# velmor_once(name...): what these tests are about is the same in every build, files of other compilers and programs of
# others. The sanitizers' run leaves them out, and their build the programs that are for nothing else.
function(velmor_once)
  set_tests_properties(${ARGN} PROPERTIES LABELS once)
  foreach(test IN LISTS ARGN)
    if(VELMOR_SANITIZE AND TARGET ${test})
      set_target_properties(${test} PROPERTIES EXCLUDE_FROM_ALL ON)
    endif()
  endforeach()
endfunction()

# The longest begin first, so that no processor is left alone with one of them at the end.
set(VELMOR_LONGEST_TESTS
  burn_program_test cdcheck_matrix_test cdcheck_test ddp_test dylib_through_sink_test input_test recording_emulated_tests
  render_fault_test render_process_test sink_test)

# velmor_add_test(NAME name SOURCES file... [LIBS lib...] [ARGS arg...] [TIMEOUT seconds] [ENVIRONMENT variable...])
# A GoogleTest program; VELMOR_MODULE and VELMOR_SOURCE_DIR tell it where the module and its fixtures are.
function(velmor_add_test)
  cmake_parse_arguments(T "" "NAME;TIMEOUT" "SOURCES;LIBS;ARGS;ENVIRONMENT" ${ARGN})
  add_executable(${T_NAME} ${T_SOURCES})
  # The test library's headers are compiled once, with the smallest of the programs.
  if(T_NAME STREQUAL "conversion_test")
    target_precompile_headers(${T_NAME} PRIVATE <gtest/gtest.h> <gmock/gmock.h>)
  else()
    target_precompile_headers(${T_NAME} REUSE_FROM conversion_test)
  endif()
  # What is tested is optimised; the tests themselves compile twice as fast when they are not. An emulator is slow enough.
  target_compile_options(${T_NAME} PRIVATE $<IF:$<BOOL:${CMAKE_CROSSCOMPILING}>,-O1,-O0>
    ${VELMOR_TEST_SANITIZERS})
  target_link_libraries(${T_NAME} PRIVATE ${T_LIBS} GTest::gmock GTest::gtest GTest::gtest_main ${CMAKE_DL_LIBS})
  target_compile_definitions(${T_NAME} PRIVATE
    VELMOR_MODULE="$<TARGET_FILE:velmor_cd>"
    VELMOR_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
    VELMOR_BINARY_DIR="${CMAKE_BINARY_DIR}")
  add_dependencies(${T_NAME} velmor_cd)
  set_target_properties(${T_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 600)
  endif()
  math(EXPR T_TIMEOUT "${T_TIMEOUT} * ${VELMOR_TEST_PATIENCE}")
  velmor_run_test(NAME ${T_NAME} PROGRAM ${T_NAME} TIMEOUT ${T_TIMEOUT}
    ARGS ${T_ARGS} ENVIRONMENT ${T_ENVIRONMENT})
endfunction()
