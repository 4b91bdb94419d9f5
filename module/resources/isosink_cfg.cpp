// The configuration dialog, embedded in the host's render window.
#include "module/resources/dialog_template.h"
#include "module/resources/dialogs.h"

namespace {

// clang-format off
constexpr QuelmControl kSettingsRows[] = {
    {},
    {kQuelmLabel, -1, "Lead-in silence for tracks:", 0, 0, 3, 82, 8, 0},
    {kQuelmEdit, 0, "", IDC_TRACK_LEADIN, 85, 2, 34, 14, ES_AUTOHSCROLL},
    {kQuelmLabel, -1, "ms", 0, 123, 3, 10, 8, 0},
    {kQuelmLabel, -1, "Extra lead-in silence for disc:", 0, 141, 3, 90, 8, 0},
    {kQuelmEdit, 0, "", IDC_DISC_LEADIN, 234, 2, 35, 14, ES_AUTOHSCROLL},
    {kQuelmLabel, -1, "ms", 0, 271, 3, 10, 8, 0},
    {kQuelmLabel, -1, "Track mode:", 0, 0, 21, 41, 8, 0},
    {kQuelmCombo, 0, "", IDC_TRACK_MODE, 44, 19, 164, 109, kCombo},
    {"Burn CD image after render", IDC_BURN_AFTER, "Button", kCheckBox, 0, 37, 101, 10, 0},
    {"Only use markers starting with #", IDC_HASH_ONLY, "Button", kCheckBox, 113, 37, 116, 10, 0},
};
// clang-format on

void QUELM__dlg_cf__IDD_ISOSINK_CFG(HWND window, int flags) {
  createControls(window, flags, kSettingsRows);
}

}  // namespace

QuelmDialogResource g_isosink_cfg_dialog = {
    IDD_ISOSINK_CFG, "", 13, QUELM__dlg_cf__IDD_ISOSINK_CFG, 484, 86, nullptr};
