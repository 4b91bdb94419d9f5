# The module on macOS: the same for a native build and for one from Linux (mac_cross.toolchain.cmake).

enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)

set(VELMOR_CD_PLATFORM_SOURCES
    module/platform/file_system_mac.cpp
    module/platform/modal_pause_mac.cpp)
# Retain and release by hand: no compiler's counting.
set(VELMOR_CD_OBJECTIVE_C_SOURCES ${VELMOR_CD_MAC_SOURCES})
set_source_files_properties(${VELMOR_CD_OBJECTIVE_C_SOURCES} PROPERTIES COMPILE_OPTIONS -fno-objc-arc)
# A dylib: a bundle could not be linked against.
set(VELMOR_CD_KIND SHARED)

function(velmor_link_module)
  set_target_properties(velmor_cd PROPERTIES
    SUFFIX .dylib
    INSTALL_NAME_DIR ""
    BUILD_WITH_INSTALL_NAME_DIR ON)
  # A name that does not exist is a link error, so the list is exact in both directions.
  target_link_options(velmor_cd PRIVATE
    LINKER:-exported_symbol,_VelmorPluginEntry LINKER:-exported_symbol,_QUELM_dllMain LINKER:-dead_strip)
  # A system that has no disc recording any more is one without recorders, and still renders.
  target_link_libraries(velmor_cd PRIVATE
    objc "-framework Cocoa" "-weak_framework DiscRecording" "-weak_framework DiscRecordingUI")
endfunction()
