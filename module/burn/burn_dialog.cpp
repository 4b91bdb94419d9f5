#include "module/burn/burn_dialog.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "abi/host_functions.h"
#include "abi/localisation.h"
#include "abi/quelm_functions.h"
#include "module/burn/burn_engine.h"
#include "module/burn/burn_settings.h"
#include "module/burn/track_offsets.h"
#include "module/resources/dialogs.h"
#include "module/support/file_read.h"
#include "module/support/typed_buf.h"

namespace {

constexpr UINT WM_CDBURN_REFRESH_DRIVES = WM_USER + 1620;

const char* dialogText(const char* text) {
  return __localizeFunc(text, kSectionBurnDialog, 0);
}

void showError(HWND dialog, const char* text) {
  MessageBox(dialog, dialogText(text), dialogText("CD Burn Error"), MB_OK);
}

int selection(HWND dialog, int combo) {
  return static_cast<int>(SendMessage(GetDlgItem(dialog, combo), CB_GETCURSEL, 0, 0));
}

bool isChecked(HWND dialog, int box) {
  return IsDlgButtonChecked(dialog, box) != 0;
}

/// The recorder that the person has picked, 0 when none.
long pickedRecorder(HWND dialog) {
  const HWND drives = GetDlgItem(dialog, IDC_BURN_DRIVE);
  const LRESULT row = SendMessage(drives, CB_GETCURSEL, 0, 0);
  return row < 0 ? 0 : SendMessage(drives, CB_GETITEMDATA, row, 0);
}

void insertColumn(HWND list, int index, const char* title, int width) {
  char text[256];
  snprintf(text, sizeof(text), "%s", dialogText(title));
  LVCOLUMN column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH;
  column.cx = width;
  column.text = text;
  ListView_InsertColumn(list, index, &column);
}

}  // namespace

void BurnCD(HWND parent, const char* bin_path, const char* cue_path,
            YDK_PtrList<YDK_String>* track_names, const double* track_starts, int track_count,
            double total_length) {
  CDBurnInstance instance(bin_path, cue_path, track_names, track_starts, track_count, total_length);
  __localizeDialog(nullptr, IDD_BURN, parent, CDBurnInstance::staticBurnProc,
                   reinterpret_cast<LPARAM>(&instance), kModalDialog);
}

CDBurnInstance::CDBurnInstance(const char* bin_path, const char* cue_path,
                               YDK_PtrList<YDK_String>* track_names, const double* track_starts,
                               int track_count, double total_length)
    : m_track_starts(track_starts),
      m_ntracks(track_starts ? std::max(track_count, 0) : 0),
      m_track_names(track_names),
      m_total_len(total_length) {
  m_cuefn.Set(cue_path);
  m_binfn.Set(bin_path);
}

LRESULT CDBurnInstance::staticBurnProc(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_INITDIALOG) SetWindowLong(dialog, GWL_USERDATA, lparam);
  auto* const instance = reinterpret_cast<CDBurnInstance*>(GetWindowLong(dialog, GWL_USERDATA));
  if (!instance) return 0;
  switch (message) {
    case WM_INITDIALOG:
      instance->onInit(dialog);
      break;
    case WM_CDBURN_REFRESH_DRIVES:
      refreshDrives(dialog);
      break;
    case WM_COMMAND:
      instance->onCommand(dialog, wparam);
      break;
    case WM_DESTROY:
      instance->onDestroy(dialog);
      break;
    default:
      break;
  }
  return 0;
}

void CDBurnInstance::onInit(HWND dialog) {
  const HWND methods = GetDlgItem(dialog, IDC_BURN_METHOD);
  const char* const method = __localizeFunc("Native CD Burning", kSectionBurnMethod, 0);
  SendMessage(methods, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(method));
  SendMessage(methods, CB_SETCURSEL, 0, 0);
  CheckDlgButton(dialog, IDC_BURN_EJECT, readBurnSetting("eject", 1));
  CheckDlgButton(dialog, IDC_BURN_DELETE, readBurnSetting("deletefiles", 0));
  SendMessage(dialog, WM_CDBURN_REFRESH_DRIVES, 0, 0);
  listTracks(GetDlgItem(dialog, IDC_BURN_TRACKLIST));
}

double CDBurnInstance::trackLength(int track) const {
  const double end = track + 1 < m_ntracks ? m_track_starts[track + 1] : m_total_len;
  return end - m_track_starts[track];
}

void CDBurnInstance::listTracks(HWND list) {
  insertColumn(list, 0, "Track #", 60);
  insertColumn(list, 1, "Name", 180);
  insertColumn(list, 2, "Duration", 90);
  ListView_SetExtendedListViewStyleEx(list, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
  for (int i = 0; i < m_ntracks; ++i) {
    char text[512];
    snprintf(text, sizeof(text), "%d", i + 1);
    LVITEM row{};
    row.mask = LVIF_TEXT;
    row.item = i;
    row.text = text;
    ListView_InsertItem(list, &row);
    text[0] = 0;
    if (format_timestr) format_timestr(trackLength(i), text, sizeof(text));
    ListView_SetItemText(list, i, 2, text);
    if (m_track_names && i < m_track_names->GetSize()) {
      const YDK_String* const name = m_track_names->Get(i);
      ListView_SetItemText(list, i, 1, name ? name->Get() : "");
    }
  }
}

void CDBurnInstance::refreshDrives(HWND dialog) {
  const HWND drives = GetDlgItem(dialog, IDC_BURN_DRIVE);
  SendMessage(drives, CB_RESETCONTENT, 0, 0);
  CDBurn_PopulateComboBoxWithBurners(drives);
  SendMessage(drives, CB_SETCURSEL, readBurnSetting("drive", 0), 0);
}

void CDBurnInstance::onCommand(HWND dialog, WPARAM wparam) {
  switch (wparam & 0xFFFF) {
    case IDC_BURN_METHOD:
      if (((wparam >> 16) & 0xFFFF) == CBN_SELCHANGE) {
        SendMessage(dialog, WM_CDBURN_REFRESH_DRIVES, 0, 0);
      }
      break;
    case IDCANCEL:
      EndDialog(dialog, 0);
      break;
    case IDOK:
      onBurn(dialog);
      break;
    default:
      break;
  }
}

void CDBurnInstance::onBurn(HWND dialog) {
  m_eject = isChecked(dialog, IDC_BURN_EJECT);
  const long recorder = pickedRecorder(dialog);
  if (!recorder) {
    showError(dialog, "Select a recorder");
    return;
  }
  YDK_FileRead image(m_binfn.Get());
  if (!image.IsOpen()) {
    showError(dialog, "Error opening .bin file");
    return;
  }
  YDK_TypedBuf<int> offsets;
  offsets.Resize(m_ntracks);
  if (offsets.GetSize() != m_ntracks) return;
  for (int i = 0; i < m_ntracks; ++i) {
    offsets.Get()[i] = i == 0 ? 0 : trackByteOffset(m_track_starts[i]);
  }
  CDBurn_Run(recorder, m_ntracks, offsets.Get(), &image, m_eject, false);
}

void CDBurnInstance::onDestroy(HWND dialog) {
  if (isChecked(dialog, IDC_BURN_DELETE)) {
    unlink(m_cuefn.Get());
    unlink(m_binfn.Get());
  }
  writeBurnSetting("eject", isChecked(dialog, IDC_BURN_EJECT));
  writeBurnSetting("deletefiles", isChecked(dialog, IDC_BURN_DELETE));
  // Nobody reads the method back, since the box always starts on its only entry; hosts' ini files
  // have the key all the same.
  writeBurnSetting("method", selection(dialog, IDC_BURN_METHOD));
  writeBurnSetting("drive", selection(dialog, IDC_BURN_DRIVE));
}
