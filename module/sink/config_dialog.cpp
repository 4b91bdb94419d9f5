#include "module/sink/config_dialog.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>

#include "abi/localisation.h"
#include "abi/quelm_functions.h"
#include "module/resources/dialogs.h"

namespace {

constexpr UINT kUpdateEnabled = WM_USER + 452;

int selectedMode(HWND dialog) {
  return static_cast<int>(SendMessage(GetDlgItem(dialog, IDC_TRACK_MODE), CB_GETCURSEL, 0, 0));
}

void updateEnabled(HWND dialog) {
  EnableWindow(GetDlgItem(dialog, IDC_HASH_ONLY), selectedMode(dialog) == kTracksFromMarkers);
}

void showConfig(HWND dialog, const SinkConfig& config) {
  SetDlgItemInt(dialog, IDC_DISC_LEADIN, config.disc_leadin_ms, true);
  SetDlgItemInt(dialog, IDC_TRACK_LEADIN, config.track_leadin_ms, true);
  CheckDlgButton(dialog, IDC_BURN_AFTER, config.burn_after_render);
  CheckDlgButton(dialog, IDC_HASH_ONLY, config.hash_markers_only);
  const HWND modes = GetDlgItem(dialog, IDC_TRACK_MODE);
  for (const char* mode :
       {"Markers define new tracks", "Regions define tracks (other areas ignored)", "One track"}) {
    const char* const text = __localizeFunc(mode, kSectionConfigDialog, 0);
    SendMessage(modes, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
  }
  SendMessage(modes, CB_SETCURSEL, config.track_mode, 0);
  updateEnabled(dialog);
}

SinkConfig enteredConfig(HWND dialog) {
  SinkConfig config{};
  config.format_code = static_cast<int32_t>(kIsoFormatCode);
  config.disc_leadin_ms = GetDlgItemInt(dialog, IDC_DISC_LEADIN, nullptr, true);
  config.track_leadin_ms = GetDlgItemInt(dialog, IDC_TRACK_LEADIN, nullptr, true);
  config.burn_after_render = IsDlgButtonChecked(dialog, IDC_BURN_AFTER);
  config.track_mode = std::max(selectedMode(dialog), 0);
  config.hash_markers_only = IsDlgButtonChecked(dialog, IDC_HASH_ONLY);
  return config;
}

void answerGetBlob(HWND dialog, WPARAM size, LPARAM blob) {
  if (size) *reinterpret_cast<int*>(size) = static_cast<int>(sizeof(SinkConfig));
  if (!blob) return;
  const SinkConfig config = enteredConfig(dialog);
  memcpy(reinterpret_cast<void*>(blob), &config, sizeof(config));
}

}  // namespace

SinkConfig readSinkConfig(const void* cfg, intptr_t cfg_len) {
  SinkConfig config{};
  if (cfg && cfg_len >= static_cast<intptr_t>(sizeof(config))) {
    memcpy(&config, cfg, sizeof(config));
    if (config.format_code != static_cast<int32_t>(kIsoFormatCode)) config = SinkConfig{};
  }
  return config;
}

LRESULT wavecfgDlgProc(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_INITDIALOG: {
      const auto* params = reinterpret_cast<const ConfigDialogParams*>(lparam);
      showConfig(dialog, readSinkConfig(params->cfg, params->cfg_len));
      break;
    }
    case WM_COMMAND:
      if ((wparam & 0xFFFF) == IDC_TRACK_MODE && ((wparam >> 16) & 0xFFFF) == CBN_SELCHANGE) {
        SendMessage(dialog, kUpdateEnabled, 0, 0);
      }
      break;
    case kUpdateEnabled:
      updateEnabled(dialog);
      break;
    case kConfigGetBlob:
      answerGetBlob(dialog, wparam, lparam);
      break;
    case kConfigSampleWidth:
      if (!lparam && wparam) *reinterpret_cast<int*>(wparam) = kImageBits;
      break;
    default:
      break;
  }
  return 0;
}
