// The host's plug-in interface: the record given to the entry, and the host functions bound by
// name.
//
// Everything is called on the host's threads, one call at a time. Texts are UTF-8, zero-terminated.
#pragma once

#include <cstddef>

#include "abi/quelm_types.h"

inline constexpr int kVelmorPluginVersion = 526;

/// Registers `record` under `kind` ("pcmsink"); the host keeps the address. 0: refused.
using RegisterFn = int (*)(const char* kind, void* record);
/// A host function by name, or null.
using LookupFn = void* (*)(const char* name);

/// The host's record, valid only while the entry runs.
struct velmor_plugin_info_t {
  int version;  ///< must be `kVelmorPluginVersion`
  void* main_window;
  RegisterFn register_fn;
  LookupFn lookup_fn;
};
static_assert(sizeof(velmor_plugin_info_t) == 32 &&
              offsetof(velmor_plugin_info_t, main_window) == 8 &&
              offsetof(velmor_plugin_info_t, register_fn) == 16 &&
              offsetof(velmor_plugin_info_t, lookup_fn) == 24);

/// Exported by the module: 1 when bound and registered, 0 when not. A null record announces the
/// unload.
using VelmorPluginEntryFn = int (*)(HINSTANCE, velmor_plugin_info_t*);
/// Exported by the module for the windowing layer; returns 1.
using QuelmDllMainFn = int (*)();

using GetMainHwndFn = HWND (*)();
using GetExePathFn = const char* (*)();
using GetIniFileFn = const char* (*)();
/// Writes `seconds` as the host shows times into `buf` of `buf_size` bytes.
using FormatTimestrFn = void (*)(double seconds, char* buf, int buf_size);
/// One marker or region. Returns the index to pass next (never 0), or 0 with the outputs untouched
/// when there is none at `idx`. Any output may be null; times are project seconds; `name` is the
/// host's until the next call.
using EnumProjectMarkersFn = int (*)(int idx, bool* isrgn, double* pos, double* rgnend,
                                     const char** name, int* number);
/// One entry of the render's metadata: its value, with `*key` set, or null past the last.
using EnumCurrentSinkMetadataFn = const char* (*)(int idx, const char** key);
/// Tells the host of bytes read and written; negative codes in `write` tell of failures.
using UpdateDiskCountersFn = void (*)(int read, int write);
/// The host's translation of `text`, owned by the host.
using LocalizeFn = const char* (*)(const char* text, const char* section, int flags);
/// Prepares a dialog's translation: a procedure to use in place of the caller's with `scratch` as
/// its parameter, or null for the caller's own.
using LocalizePrepareDialogFn = DLGPROC (*)(const char* prefix, HINSTANCE instance, int resid,
                                            DLGPROC proc, LPARAM init, void** scratch, int slots);

/// Codes that `update_disk_counters` takes in the place of a count of written bytes.
inline constexpr int kDiskOutOfSpace = -101010111;
inline constexpr int kDiskOtherError = -101010110;

// The module's pointers to them, written only by the entry. Those marked optional may be null.
extern HINSTANCE g_hInst;
extern GetMainHwndFn GetMainHwnd;
extern GetExePathFn GetExePath;
extern GetIniFileFn get_ini_file;
extern FormatTimestrFn format_timestr;  ///< optional
extern EnumProjectMarkersFn EnumProjectMarkers;
extern void* PCM_Source_CreateFromSimple;                  ///< optional; not called
extern EnumCurrentSinkMetadataFn EnumCurrentSinkMetadata;  ///< optional
extern UpdateDiskCountersFn update_disk_counters;
extern void* vac_createGroupsFromTab;                          ///< optional; not called
extern LocalizeFn importedLocalizeFunc;                        ///< optional
extern void* importedLocalizeMenu;                             ///< optional; not called
extern void* importedLocalizeInitializeDialog;                 ///< optional; not called
extern LocalizePrepareDialogFn importedLocalizePrepareDialog;  ///< optional
