# The module: its rooms as one object library (which the class tests link too), and the shared library.

# The static initialisers come first on the link line: nothing of the module may run before the import.
set(VELMOR_CD_SOURCES
    plugin/module_init.cpp
    plugin/quelm_modstub.cpp
    plugin/dialog_list.cpp
    plugin/entry.cpp
    plugin/localize.cpp
    plugin/sink_registration.cpp
    resources/burn.cpp
    resources/doburn.cpp
    resources/isosink_cfg.cpp
    sink/config_dialog.cpp
    sink/cue_sheet.cpp
    sink/marker_names.cpp
    sink/pcm_sink_iso.cpp
    sink/pcm_sink_iso_write.cpp
    sink/sample_conversion.cpp
    sink/sample_conversion_avx2.cpp
    sink/track_cutter.cpp
    burn/burn_dialog.cpp
    burn/burn_engine.cpp
    burn/burn_settings.cpp
    burn/track_source.cpp
    support/assoc_array.cpp
    support/file_read.cpp
    support/file_write.cpp
    support/heap_buf.cpp
    support/ydk_string.cpp
    platform/disc_recording_linux.cpp
    platform/file_system_linux.cpp
    platform/system_log_linux.cpp
    platform/windowing_provider_linux.cpp)

add_library(velmor_cd_objects OBJECT ${VELMOR_CD_SOURCES})
target_compile_options(velmor_cd_objects PRIVATE -fvisibility=hidden -fvisibility-inlines-hidden)

add_library(velmor_cd MODULE $<TARGET_OBJECTS:velmor_cd_objects>)
set_target_properties(velmor_cd PROPERTIES
  PREFIX "" LINKER_LANGUAGE CXX
  LINK_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/velmor_cd.map)
# A version script: hidden visibility alone still exports weak instances of the standard library's templates.
target_link_options(velmor_cd PRIVATE
  -Wl,--version-script=${CMAKE_SOURCE_DIR}/cmake/velmor_cd.map -Wl,--as-needed)
if(NOT VELMOR_SANITIZE)
  target_link_options(velmor_cd PRIVATE -Wl,-z,defs)
endif()
