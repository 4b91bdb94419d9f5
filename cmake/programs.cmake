# Everything beside the module: what ships with it, and what tests and measures it.

find_package(PkgConfig REQUIRED)
foreach(room IN ITEMS disc check ddp host)
  add_subdirectory(${room})
endforeach()

# From here on nothing ships.
if(VELMOR_UNITY_TESTS)
  set(CMAKE_UNITY_BUILD ON)
endif()
if(BUILD_TESTING)
  enable_testing()
  include(cmake/testing.cmake)
  add_subdirectory(tools)
  add_subdirectory(tests)
endif()
if(BUILD_TESTING OR VELMOR_LIBFUZZER)
  add_subdirectory(fuzz)
endif()
if(VELMOR_BUILD_BENCHMARKS)
  add_subdirectory(bench)
endif()
