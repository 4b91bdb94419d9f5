// The burn dialog.
#include "module/resources/dialog_template.h"
#include "module/resources/dialogs.h"

namespace {

constexpr int kList = LVS_REPORT | WS_TABSTOP;
constexpr const char* kDelete = "Delete CD image files on close of this window";

// clang-format off
constexpr QuelmControl kDialogRows[] = {
    {},
    {kQuelmButton, 1, "Burn CD", IDOK, 128, 216, 50, 14, 0},
    {kQuelmButton, 0, "Close", IDCANCEL, 181, 216, 50, 14, 0},
    {kQuelmLabel, -1, "Method:", 0, 7, 9, 28, 8, 0},
    {kQuelmCombo, 0, "", IDC_BURN_METHOD, 39, 7, 192, 58, kCombo},
    {kQuelmLabel, -1, "Drive:", 0, 7, 27, 28, 8, 0},
    {kQuelmCombo, 0, "", IDC_BURN_DRIVE, 39, 24, 192, 58, kCombo},
    {kQuelmLabel, -1, "Track list:", 0, 7, 42, 32, 8, 0},
    {"List1", IDC_BURN_TRACKLIST, "SysListView32", kList, 7, 53, 224, 138, 0},
    {"Eject CD when done", IDC_BURN_EJECT, "Button", kCheckBox, 7, 193, 81, 10, 0},
    {kDelete, IDC_BURN_DELETE, "Button", kCheckBox, 7, 204, 159, 10, 0},
};
// clang-format on

void QUELM__dlg_cf__IDD_BURN(HWND window, int flags) {
  createControls(window, flags, kDialogRows);
}

}  // namespace

QuelmDialogResource g_burn_dialog = {
    IDD_BURN, "Burn Audio CD Image", 12, QUELM__dlg_cf__IDD_BURN, 404, 406, nullptr};
