// A progress dialog that hosts may list; the platform's own panel shows the progress.
#include "module/resources/dialog_template.h"
#include "module/resources/dialogs.h"

namespace {

// clang-format off
constexpr QuelmControl kProgressRows[] = {
    {},
    {kQuelmButton, 0, "Cancel", IDCANCEL, 18, 67, 50, 14, 0},
    {kQuelmLabel, 0, "Burning in progress...", 0, 7, 7, 172, 8, 0},
};
// clang-format on

void QUELM__dlg_cf__IDD_DOBURN(HWND window, int flags) {
  createControls(window, flags, kProgressRows);
}

}  // namespace

QuelmDialogResource g_doburn_dialog = {
    IDD_DOBURN, "Audio CD Image", 12, QUELM__dlg_cf__IDD_DOBURN, 316, 66, nullptr};
