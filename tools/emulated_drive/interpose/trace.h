// A log of what a program asked of the drives, for whoever looks for a fault.
#pragma once

#include "tools/emulated_drive/drive/emulated_drive.h"

namespace velmor::emulated_drive {

/// The environment variable that names the file to append to. Unset: nothing is written.
inline constexpr const char* kTraceVariable = "VELMOR_EMULATED_DRIVE_TRACE";

/// One line: device, command block, bytes out and in, sense data.
void trace(const std::string& device, ByteView cdb, std::size_t bytes_out, const Reply& reply);

}  // namespace velmor::emulated_drive
