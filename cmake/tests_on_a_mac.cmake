# The tests that run on a Mac: those that need nothing of Linux. The module that they load is the one of this build, or the
# one that the environment names in VELMOR_TEST_MODULE.

find_package(GTest REQUIRED)
enable_testing()

# A process with the windowing layer, as a workstation is: its application object's delegate offers it.
add_library(fake_host STATIC
  tests/fake_host/files.cpp
  tests/fake_host/loaded_module.cpp
  tests/fake_host/plugin_host.cpp
  tests/fake_host/session.cpp
  tests/fake_host/sink.cpp
  tests/fake_host/windowing_layer.cpp
  tests/kit/scratch_folder.cpp
  tests/kit/whole_files.cpp)
target_compile_definitions(fake_host PRIVATE VELMOR_MODULE="$<TARGET_FILE:velmor_cd>")
target_link_libraries(fake_host PUBLIC GTest::gtest)

# velmor_add_mac_test(name file...)
function(velmor_add_mac_test name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE fake_host GTest::gmock GTest::gtest GTest::gtest_main "-framework Cocoa")
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()

velmor_add_mac_test(conversion_test
  tests/module/sink/sample_conversion_test.cpp
  tests/module/sink/conversion_forms_${VELMOR_PROCESSOR}_test.cpp
  module/sink/sample_conversion.cpp
  ${VELMOR_CD_PROCESSOR_SOURCES})
velmor_add_mac_test(model_test
  tests/module/mac/host_application.mm
  tests/module/model/random_comparison_test.cpp
  tests/module/model/random_render.cpp
  tests/module/model/reference_model.cpp
  tests/module/model/reference_model_test.cpp)
velmor_add_mac_test(sink_test
  tests/module/mac/host_application.mm
  tests/module/sink/binary_interface_test.cpp
  tests/module/sink/config_dialog_test.cpp
  tests/module/sink/markers_test.cpp
  tests/module/sink/regions_test.cpp)
add_dependencies(model_test velmor_cd)
add_dependencies(sink_test velmor_cd)
