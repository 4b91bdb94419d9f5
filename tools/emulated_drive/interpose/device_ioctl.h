// The ioctls of an optical drive on Linux: SG_IO and what programs ask around it.
#pragma once

#include "tools/emulated_drive/interpose/emulated_device.h"

namespace velmor::emulated_drive {

/// 0 or more on success, -1 with errno otherwise, as ioctl(2).
int deviceIoctl(EmulatedDevice& device, unsigned long request, void* argument);

}  // namespace velmor::emulated_drive
