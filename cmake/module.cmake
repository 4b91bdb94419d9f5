# The module: its rooms as one object library (which the class tests link too), and the shared library.

# The Objective-C++ files, in the order of the link line. Tests on Linux build them too.
set(VELMOR_CD_MAC_SOURCES
    module/platform/cd_burn_delegate_mac.mm
    module/platform/cd_burn_source_mac.mm
    module/platform/disc_recording_mac.mm
    module/platform/system_log_mac.mm
    module/platform/windowing_provider_mac.mm)

# VELMOR_CD_PLATFORM_SOURCES, VELMOR_CD_OBJECTIVE_C_SOURCES, VELMOR_CD_KIND, velmor_link_module()
include(cmake/module_${CMAKE_SYSTEM_NAME}.cmake)

# Static initialisers run in the order of the link line: what registers the Objective-C classes, then the module's own,
# before which nothing of the module may run, then the rest. The last one's last function is one that cleans up behind an
# exception: the linker for macOS folds functions of one kind of frame into one entry of the unwind table, but none that
# cleans up, and would end the table where the last such group begins.
set(VELMOR_CD_SOURCES
    ${VELMOR_CD_OBJECTIVE_C_SOURCES}
    module/plugin/module_init.cpp
    module/plugin/quelm_modstub.cpp
    module/plugin/dialog_list.cpp
    module/plugin/entry.cpp
    module/plugin/localize.cpp
    module/plugin/sink_registration.cpp
    module/resources/burn.cpp
    module/resources/doburn.cpp
    module/resources/isosink_cfg.cpp
    module/sink/config_dialog.cpp
    module/sink/cue_sheet.cpp
    module/sink/marker_names.cpp
    module/sink/pcm_sink_iso.cpp
    module/sink/pcm_sink_iso_write.cpp
    module/sink/project_marks.cpp
    module/sink/sample_conversion.cpp
    ${VELMOR_CD_PROCESSOR_SOURCES}
    module/sink/track_cutter.cpp
    module/burn/burn_engine.cpp
    module/burn/burn_settings.cpp
    module/burn/track_source.cpp
    module/support/ascii_case.cpp
    module/support/assoc_array.cpp
    module/support/file_read.cpp
    module/support/file_write.cpp
    module/support/heap_buf.cpp
    module/support/ydk_string.cpp
    abi/host_functions.cpp
    abi/quelm_functions.cpp
    ${VELMOR_CD_PLATFORM_SOURCES}
    module/burn/burn_dialog.cpp)

add_library(velmor_cd_objects OBJECT ${VELMOR_CD_SOURCES})
target_compile_options(velmor_cd_objects PRIVATE -fvisibility=hidden -fvisibility-inlines-hidden)
# Each file by itself: the order of the list above is that of the static initialisers.
set_target_properties(velmor_cd_objects PROPERTIES UNITY_BUILD OFF)

add_library(velmor_cd ${VELMOR_CD_KIND} $<TARGET_OBJECTS:velmor_cd_objects>)
set_target_properties(velmor_cd PROPERTIES PREFIX "" LINKER_LANGUAGE CXX)
velmor_link_module()
