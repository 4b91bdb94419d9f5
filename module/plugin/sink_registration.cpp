#include "module/plugin/sink_registration.h"

#include <cstring>
#include <new>

#include "abi/host_functions.h"
#include "abi/localisation.h"
#include "abi/quelm_functions.h"
#include "module/resources/dialogs.h"
#include "module/sink/config_dialog.h"
#include "module/sink/pcm_sink_iso.h"

namespace {

/// Whether the blob is one of ours, which its first value tells; the other values may be missing.
bool isIsoBlob(const void* cfg, int cfg_len) {
  uint32_t code = 0;
  if (!cfg || cfg_len < static_cast<int>(sizeof(code))) return false;
  memcpy(&code, cfg, sizeof(code));
  return code == kIsoFormatCode;
}

unsigned int getFmt(const char** desc) {
  if (desc) *desc = __localizeFunc("Audio CD Image (CUE/BIN format)", kSectionFormat, 0);
  return kIsoFormatCode;
}

const char* getExtension(const void* cfg, int cfg_len) {
  return isIsoBlob(cfg, cfg_len) ? "cue" : nullptr;
}

HWND showConfig(const void* cfg, int cfg_len, HWND parent) {
  if (!isIsoBlob(cfg, cfg_len)) return nullptr;
  ConfigDialogParams params{cfg, cfg_len};
  return reinterpret_cast<HWND>(__localizeDialog(nullptr, IDD_ISOSINK_CFG, parent, wavecfgDlgProc,
                                                 reinterpret_cast<LPARAM>(&params),
                                                 kModelessDialog));
}

PCM_sink* createSink(const char* filename, void* cfg, int cfg_len, int nch, int srate,
                     bool build_peaks) {
  if (!isIsoBlob(cfg, cfg_len)) return nullptr;
  auto* sink = new (std::nothrow) PCM_sink_iso(filename, cfg, cfg_len, nch, srate, build_peaks);
  if (sink && !sink->isUsable()) {
    delete sink;
    sink = nullptr;
  }
  return sink;
}

}  // namespace

SinkRegistration mySinkRegStruct = {getFmt, getExtension, showConfig, createSink, {}};
