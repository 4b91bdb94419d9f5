# The processors that the module is made for: the sample conversion is written for their vector units, and the records of
# the binary interface are laid out for them. Sets VELMOR_PROCESSOR to the one of this build, and
# VELMOR_CD_PROCESSOR_SOURCES to what is compiled for it alone.
set(VELMOR_SOURCES_x86_64
    module/sink/sample_conversion_x86_64.cpp
    module/sink/sample_conversion_sse2.cpp
    module/sink/sample_conversion_avx2.cpp)
set(VELMOR_SOURCES_arm64
    module/sink/sample_conversion_neon.cpp)

if(CMAKE_OSX_ARCHITECTURES)
  set(VELMOR_PROCESSOR "${CMAKE_OSX_ARCHITECTURES}")
else()
  set(VELMOR_PROCESSOR "${CMAKE_SYSTEM_PROCESSOR}")
endif()
if(VELMOR_PROCESSOR MATCHES ";")
  message(FATAL_ERROR "one build is for one processor, not for \"${VELMOR_PROCESSOR}\"; "
    "./dev mac builds for each and joins the results")
endif()
# Linux's name for what Apple calls arm64.
if(VELMOR_PROCESSOR STREQUAL "aarch64")
  set(VELMOR_PROCESSOR arm64)
endif()
if(NOT DEFINED VELMOR_SOURCES_${VELMOR_PROCESSOR})
  message(FATAL_ERROR "velmor_cd does not support the processor \"${VELMOR_PROCESSOR}\"; "
    "it supports: x86_64, arm64 (aarch64)")
endif()
set(VELMOR_CD_PROCESSOR_SOURCES ${VELMOR_SOURCES_${VELMOR_PROCESSOR}})
