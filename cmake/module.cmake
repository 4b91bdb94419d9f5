# The module: its rooms as one object library (which the class tests link too), and the shared library.

# The Objective-C++ files, in the order of the link line. Tests on Linux build them too.
set(VELMOR_CD_MAC_SOURCES
    burn/cd_burn_delegate_mac.mm
    burn/cd_burn_source_mac.mm
    platform/disc_recording_mac.mm
    platform/system_log_mac.mm
    platform/windowing_provider_mac.mm)

# VELMOR_CD_PLATFORM_SOURCES, VELMOR_CD_OBJECTIVE_C_SOURCES, VELMOR_CD_KIND, velmor_link_module()
include(cmake/module_${CMAKE_SYSTEM_NAME}.cmake)

# Static initialisers run in the order of the link line: what registers the Objective-C classes, then the module's own,
# before which nothing of the module may run, then the rest.
set(VELMOR_CD_SOURCES
    ${VELMOR_CD_OBJECTIVE_C_SOURCES}
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
    ${VELMOR_CD_PLATFORM_SOURCES})

add_library(velmor_cd_objects OBJECT ${VELMOR_CD_SOURCES})
target_compile_options(velmor_cd_objects PRIVATE -fvisibility=hidden -fvisibility-inlines-hidden)
# Each file by itself: the order of the list above is that of the static initialisers.
set_target_properties(velmor_cd_objects PROPERTIES UNITY_BUILD OFF)

add_library(velmor_cd ${VELMOR_CD_KIND} $<TARGET_OBJECTS:velmor_cd_objects>)
set_target_properties(velmor_cd PROPERTIES PREFIX "" LINKER_LANGUAGE CXX)
velmor_link_module()
