// The burn engine: recorders, and the image cut into tracks for the recording service.
#pragma once

#include "abi/quelm_types.h"
#include "module/support/file_read.h"

/// Appends one entry per recorder to the combo box, "vendor product", its item data the recorder's
/// handle. No reference to the recorder is taken.
void CDBurn_PopulateComboBoxWithBurners(HWND combo);

/// Burns `image` to the recorder `device`, one track per entry of `track_byte_offsets` (null for no
/// tracks). Track 1 begins at byte 0 whatever its entry says; offsets are truncated to blocks; the
/// last track runs to the image's end. Returns when the service's panel is done; failures before it
/// opens are silent.
void CDBurn_Run(long device, int track_count, const int* track_byte_offsets, YDK_FileRead* image,
                bool eject, bool test_burn);
