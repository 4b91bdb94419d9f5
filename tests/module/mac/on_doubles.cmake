# The Objective-C++ of the module, compiled with this build's compiler against GNUstep and run with doubles of AppKit
# and DiscRecording.
execute_process(COMMAND g++ -print-file-name=include OUTPUT_VARIABLE gcc_include OUTPUT_STRIP_TRAILING_WHITESPACE)
set(VELMOR_OBJECTIVE_CXX
  -x objective-c++ -DGNUSTEP -DGNUSTEP_BASE_LIBRARY=1 -DGNU_RUNTIME=1 -D_NATIVE_OBJC_EXCEPTIONS -fno-strict-aliasing
  -fexceptions -fobjc-exceptions -fconstant-string-class=NSConstantString
  -isystem ${CMAKE_SOURCE_DIR}/tools/mac/sdk/frameworks -isystem /usr/include/GNUstep)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  list(APPEND VELMOR_OBJECTIVE_CXX -fobjc-runtime=gcc -idirafter ${gcc_include})
endif()
list(TRANSFORM VELMOR_CD_MAC_SOURCES PREPEND ${CMAKE_SOURCE_DIR}/ OUTPUT_VARIABLE mac_sources)
set(double_sources doubles/application.mm doubles/disc_recording.mm doubles/objective_c_calls.mm)
set_source_files_properties(${mac_sources} ${double_sources} PROPERTIES
  LANGUAGE CXX COMPILE_OPTIONS "${VELMOR_OBJECTIVE_CXX}")

# As on macOS, the Objective-C++ comes first on the link line (objects of a target's own sources would come last): before
# its classes are registered nothing may use them. Files are what differs between the systems, so here they are Linux's.
add_library(velmor_cd_objective_cxx OBJECT ${mac_sources})
target_compile_options(velmor_cd_objective_cxx PRIVATE -fvisibility=hidden -fvisibility-inlines-hidden)
set(replaced "(disc_recording|system_log|windowing_provider)_linux")
add_library(velmor_cd_gnustep MODULE
  $<TARGET_OBJECTS:velmor_cd_objective_cxx>
  $<FILTER:$<TARGET_OBJECTS:velmor_cd_objects>,EXCLUDE,${replaced}>
  ${CMAKE_SOURCE_DIR}/module/platform/modal_pause_mac.cpp engine_door.cpp)
target_compile_options(velmor_cd_gnustep PRIVATE -fvisibility=hidden -fvisibility-inlines-hidden)
target_link_libraries(velmor_cd_gnustep PRIVATE gnustep-base objc)
set_target_properties(velmor_cd_gnustep PROPERTIES PREFIX "")

add_library(mac_doubles OBJECT doubles/framework_state.cpp doubles/constants.cpp ${double_sources})
target_link_libraries(mac_doubles PUBLIC gnustep-base objc)

foreach(part IN ITEMS burn import)
  set(name mac_${part}_on_doubles_test)
  velmor_add_test(NAME ${name} SOURCES ${part}_on_doubles_test.cpp LIBS mac_doubles fake_host TIMEOUT 600)
  add_dependencies(${name} velmor_cd_gnustep)
  target_compile_definitions(${name} PRIVATE VELMOR_GNUSTEP_MODULE="$<TARGET_FILE:velmor_cd_gnustep>")
  # GNUstep keeps what it made until the process ends, and looks for defaults in the home folder.
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "HOME=${CMAKE_CURRENT_BINARY_DIR};ASAN_OPTIONS=detect_leaks=0")
endforeach()
