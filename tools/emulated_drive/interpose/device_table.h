// The emulated devices of this process and the descriptors that programs hold on them.
#pragma once

#include <sys/types.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "tools/emulated_drive/interpose/emulated_device.h"

namespace velmor::emulated_drive {

/// The environment variable that names the folder of drives. Unset or empty: nothing is emulated.
inline constexpr const char* kDirectoryVariable = "VELMOR_EMULATED_DRIVE_DIR";

/// While one lives, this thread's system calls reach the system untouched: the emulator opens files
/// of its own, which are no devices.
class DirectCalls {
 public:
  DirectCalls();
  ~DirectCalls();
  DirectCalls(const DirectCalls&) = delete;
  DirectCalls& operator=(const DirectCalls&) = delete;
  static bool active();
};

/// Any thread. Devices live until the folder of drives changes; descriptors keep theirs alive.
class DeviceTable {
 public:
  static DeviceTable& instance();

  /// Whether a folder of drives is set.
  bool active();
  /// The drive of that name; /dev/scdN is another name of /dev/srN.
  std::shared_ptr<EmulatedDevice> byPath(const std::string& path);
  std::shared_ptr<EmulatedDevice> byDescriptor(int descriptor);

  void attach(int descriptor, std::shared_ptr<EmulatedDevice> device);
  void detach(int descriptor);

 private:
  struct Held {
    std::shared_ptr<EmulatedDevice> device;
    std::pair<dev_t, ino_t> door;  ///< the file behind the descriptor
  };

  DeviceTable() = default;
  void refresh();  // with the mutex held

  std::mutex m_mutex;
  std::string m_root;
  std::vector<std::shared_ptr<EmulatedDevice>> m_devices;
  std::map<int, Held> m_open;
};

/// Names of optical and generic SCSI devices. While emulation is on, the real ones are hidden: no
/// test can burn a real disc by mistake.
bool isOpticalDeviceName(const std::string& path);

}  // namespace velmor::emulated_drive
