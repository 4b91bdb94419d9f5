# Tests: one program per folder of tests/, each case its own line in ctest's report only where that is cheap.

find_package(GTest REQUIRED)

# velmor_add_test(NAME name SOURCES file... [LIBS lib...] [ARGS arg...] [TIMEOUT seconds])
# A GoogleTest program; VELMOR_MODULE and VELMOR_SOURCE_DIR tell it where the module and its fixtures are.
function(velmor_add_test)
  cmake_parse_arguments(T "" "NAME;TIMEOUT" "SOURCES;LIBS;ARGS" ${ARGN})
  add_executable(${T_NAME} ${T_SOURCES})
  # The test library's headers are compiled once, with the smallest of the programs.
  if(T_NAME STREQUAL "conversion_test")
    target_precompile_headers(${T_NAME} PRIVATE <gtest/gtest.h> <gmock/gmock.h>)
  else()
    target_precompile_headers(${T_NAME} REUSE_FROM conversion_test)
  endif()
  # What is tested is optimised; the tests themselves compile twice as fast when they are not.
  target_compile_options(${T_NAME} PRIVATE -O0)
  target_link_libraries(${T_NAME} PRIVATE ${T_LIBS} GTest::gmock GTest::gtest GTest::gtest_main ${CMAKE_DL_LIBS})
  target_compile_definitions(${T_NAME} PRIVATE
    VELMOR_MODULE="$<TARGET_FILE:velmor_cd>"
    VELMOR_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
    VELMOR_BINARY_DIR="${CMAKE_BINARY_DIR}")
  add_dependencies(${T_NAME} velmor_cd)
  set_target_properties(${T_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  add_test(NAME ${T_NAME} COMMAND ${T_NAME} ${T_ARGS})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 120)
  endif()
  math(EXPR T_TIMEOUT "${T_TIMEOUT} * ${VELMOR_TEST_PATIENCE}")
  set_tests_properties(${T_NAME} PROPERTIES TIMEOUT ${T_TIMEOUT})
endfunction()
