# The sample conversion is written for the vector units of these processors, and the records of the binary interface are
# laid out for them. The names are those of uname and of Apple's compiler.
set(VELMOR_PROCESSORS x86_64)

if(CMAKE_OSX_ARCHITECTURES)
  set(processors ${CMAKE_OSX_ARCHITECTURES})
else()
  set(processors ${CMAKE_SYSTEM_PROCESSOR})
endif()
foreach(processor IN LISTS processors)
  if(NOT processor IN_LIST VELMOR_PROCESSORS)
    list(JOIN VELMOR_PROCESSORS ", " supported)
    message(FATAL_ERROR "velmor_cd does not support the processor \"${processor}\"; it supports: ${supported}")
  endif()
endforeach()
