// The module's shims over the host's localisation, and the dialog list they open dialogs from.
#pragma once

#include "abi/quelm_types.h"

/// Translation sections of the host's translation files.
inline constexpr const char* kSectionFormat = "cd";
inline constexpr const char* kSectionConfigDialog = "cd_DLG_155";
inline constexpr const char* kSectionBurnDialog = "cd_DLG_102";
inline constexpr const char* kSectionBurnMethod = "cdburn";
/// Prefix of the dialogs' section keys: the key of dialog 102 is cd_102.
inline constexpr const char* kDialogSectionPrefix = "cd_";

inline constexpr int kModelessDialog = 0;
inline constexpr int kModalDialog = 1;

/// Slots of the block that a host's preparation of a dialog fills; the last one is the module's.
inline constexpr int kLocalizeSlots = 5;

/// Head of the module's dialog resources: the first argument of every dialog creation.
extern QuelmDialogResource* QUELM_curmodule_dialogresource_head;

/// The host's translation of `text`, or `text` itself when the host has none. The host owns the
/// result.
const char* __localizeFunc(const char* text, const char* section, int flags);

/// Opens dialog `resid` with the host's translation where it offers one. Modeless: the window.
/// Modal: the dialog's result, once it has ended. Any other mode opens nothing and returns 0.
intptr_t __localizeDialog(HINSTANCE instance, int resid, HWND parent, DLGPROC proc, LPARAM init,
                          int mode);
