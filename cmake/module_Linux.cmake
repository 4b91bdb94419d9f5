# The module on Linux.

set(VELMOR_CD_PLATFORM_SOURCES
    platform/disc_recording_linux.cpp
    platform/file_system_linux.cpp
    platform/system_log_linux.cpp
    platform/windowing_provider_linux.cpp)
set(VELMOR_CD_OBJECTIVE_C_SOURCES)
set(VELMOR_CD_KIND MODULE)

function(velmor_link_module)
  # A version script: hidden visibility alone still exports weak instances of the standard library's templates.
  set_target_properties(velmor_cd PROPERTIES LINK_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/velmor_cd.map)
  target_link_options(velmor_cd PRIVATE
    -Wl,--version-script=${CMAKE_SOURCE_DIR}/cmake/velmor_cd.map -Wl,--as-needed)
  if(NOT VELMOR_SANITIZE)
    target_link_options(velmor_cd PRIVATE -Wl,-z,defs)
  endif()
endfunction()
