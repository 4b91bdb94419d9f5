// The configuration dialog of the sink, embedded in the host's render window.
#pragma once

#include "abi/sink_registration.h"

/// What the dialog is created with: read only while it is being created.
struct ConfigDialogParams {
  const void* cfg;
  intptr_t cfg_len;
};

/// The dialog's procedure; 0 for every message.
LRESULT wavecfgDlgProc(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam);

/// The settings in a blob. One that is too short or another format's is all defaults.
SinkConfig readSinkConfig(const void* cfg, intptr_t cfg_len);
