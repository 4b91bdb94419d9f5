# Everything beside the module: what ships with it, and what tests and measures it.

if(VELMOR_BUILD_PROGRAMS)
  find_package(PkgConfig REQUIRED)
  foreach(room IN ITEMS disc check ddp page programs host)
    add_subdirectory(${room})
  endforeach()
endif()

# From here on nothing ships.
if(VELMOR_UNITY_TESTS)
  set(CMAKE_UNITY_BUILD ON)
endif()
# Who changes one file of a program waits for few others with it; who changes a test does so for the test alone.
set(CMAKE_UNITY_BUILD_BATCH_SIZE 60)
if(BUILD_TESTING)
  enable_testing()
  include(cmake/testing.cmake)
  add_subdirectory(tools)
  add_subdirectory(tests)
endif()
if(VELMOR_BUILD_PROGRAMS AND (BUILD_TESTING OR VELMOR_LIBFUZZER))
  add_subdirectory(fuzz)
endif()
if(VELMOR_BUILD_BENCHMARKS)
  add_subdirectory(bench)
endif()
