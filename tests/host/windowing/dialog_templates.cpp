#include "tests/host/windowing/dialog_templates.h"

#include <iterator>

#include "host/windowing/functions/layer_functions.h"

namespace velmor::windowing {
namespace {

constexpr int kDropDown = CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP;
constexpr int kCheckBox = BS_AUTOCHECKBOX | WS_TABSTOP;

const QuelmControl kPanelRows[] = {
    {kQuelmLabel, -1, "Lead-in silence for tracks:", 0, 0, 3, 82, 8, 0},
    {kQuelmEdit, 0, "", 1002, 85, 2, 34, 14, ES_AUTOHSCROLL},
    {kQuelmLabel, -1, "ms", 0, 123, 3, 10, 8, 0},
    {kQuelmLabel, -1, "Extra lead-in silence for disc:", 0, 141, 3, 90, 8, 0},
    {kQuelmEdit, 0, "", 1001, 234, 2, 35, 14, ES_AUTOHSCROLL},
    {kQuelmLabel, -1, "ms", 0, 271, 3, 10, 8, 0},
    {kQuelmLabel, -1, "Track mode:", 0, 0, 21, 41, 8, 0},
    {kQuelmCombo, 0, "", 1014, 44, 19, 164, 109, kDropDown},
    {"Burn CD image after render", 1016, "Button", kCheckBox, 0, 37, 101, 10, 0},
    {"Only use markers starting with #", 1017, "Button", kCheckBox, 113, 37, 116, 10, 0},
};

const QuelmControl kBurnRows[] = {
    {kQuelmButton, 1, "Burn CD", IDOK, 128, 216, 50, 14, 0},
    {kQuelmButton, 0, "Close", IDCANCEL, 181, 216, 50, 14, 0},
    {kQuelmLabel, -1, "Method:", 0, 7, 9, 28, 8, 0},
    {kQuelmCombo, 0, "", 1014, 39, 7, 192, 58, kDropDown},
    {kQuelmLabel, -1, "Drive:", 0, 7, 27, 28, 8, 0},
    {kQuelmCombo, 0, "", 1015, 39, 24, 192, 58, kDropDown},
    {kQuelmLabel, -1, "Track list:", 0, 7, 42, 32, 8, 0},
    {"List1", 1018, "SysListView32", LVS_REPORT | WS_TABSTOP, 7, 53, 224, 138, 0},
    {"Eject CD when done", 1016, "Button", kCheckBox, 7, 193, 81, 10, 0},
    {"Delete CD image files on close of this window", 1017, "Button", kCheckBox, 7, 204, 159, 10,
     0},
};

const QuelmControl kProgressRows[] = {
    {kQuelmButton, 0, "Cancel", IDCANCEL, 18, 67, 50, 14, 0},
    {kQuelmLabel, 0, "Burning in progress...", 0, 7, 7, 172, 8, 0},
};

template <const auto& Rows>
void create(HWND window, int flags) {
  functions::QUELM_MakeSetCurParms(1.7F, 1.7F, 0, 0, window, false,
                                   (flags & kQuelmNoAutoSize) == 0);
  functions::QUELM_GenerateDialogFromList(Rows, static_cast<int>(std::size(Rows)));
}

QuelmDialogResource g_autosized = {kAutosized, "Autosized", 0,      &create<kProgressRows>,
                                   10,         500,         nullptr};
QuelmDialogResource g_panel_template = {kPanel, "", 13, &create<kPanelRows>, 484, 86, &g_autosized};
QuelmDialogResource g_burn_template = {kBurn, "Burn Audio CD Image", 12, &create<kBurnRows>, 404,
                                       406,   &g_panel_template};
QuelmDialogResource g_progress_template = {
    kProgress, "Audio CD Image", 12, &create<kProgressRows>, 316, 66, &g_burn_template};

}  // namespace

QuelmDialogResource* dialogTemplates() {
  return &g_progress_template;
}

}  // namespace velmor::windowing
