// The module's three dialogs and the ids of their controls.
#pragma once

#include "abi/quelm_types.h"

inline constexpr int IDD_ISOSINK_CFG = 155;
inline constexpr int IDD_BURN = 102;
inline constexpr int IDD_DOBURN = 103;  ///< registered, and opened by nobody

// Controls of the configuration dialog. The ids cross: the left edit, the tracks', is 1002.
inline constexpr int IDC_DISC_LEADIN = 1001;
inline constexpr int IDC_TRACK_LEADIN = 1002;
inline constexpr int IDC_TRACK_MODE = 1014;
inline constexpr int IDC_BURN_AFTER = 1016;
inline constexpr int IDC_HASH_ONLY = 1017;

// Controls of the burn dialog.
inline constexpr int IDC_BURN_METHOD = 1014;
inline constexpr int IDC_BURN_DRIVE = 1015;
inline constexpr int IDC_BURN_EJECT = 1016;
inline constexpr int IDC_BURN_DELETE = 1017;
inline constexpr int IDC_BURN_TRACKLIST = 1018;

extern QuelmDialogResource g_isosink_cfg_dialog;
extern QuelmDialogResource g_burn_dialog;
extern QuelmDialogResource g_doburn_dialog;
