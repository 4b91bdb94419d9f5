# The module on Linux.

set(VELMOR_CD_PLATFORM_SOURCES
    module/platform/disc_recording_linux.cpp
    module/platform/file_system_linux.cpp
    module/platform/system_log_linux.cpp
    module/platform/windowing_provider_linux.cpp)
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
