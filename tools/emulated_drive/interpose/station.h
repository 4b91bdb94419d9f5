// The emulated devices of this process and the descriptors that programs hold on them.
#pragma once

#include <sys/types.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "tools/emulated_drive/interpose/device.h"

namespace velmor::recorder {

/// The environment variable that names the recorder directory. Unset or empty: nothing is emulated.
inline constexpr const char* kDirectoryVariable = "VELMOR_RECORDER_DIR";

/// While one lives, this thread's system calls go to the system untouched: the emulator's own files
/// are not devices.
class DirectCalls {
 public:
  DirectCalls();
  ~DirectCalls();
  DirectCalls(const DirectCalls&) = delete;
  DirectCalls& operator=(const DirectCalls&) = delete;
  static bool active();
};

/// Any thread. Devices live until the recorder directory changes; descriptors keep theirs alive.
class Station {
 public:
  static Station& instance();

  /// Whether a recorder directory is set.
  bool active();
  /// The drive of that name; /dev/scdN is another name of /dev/srN.
  std::shared_ptr<Device> byPath(const std::string& path);
  std::shared_ptr<Device> byDescriptor(int descriptor);

  void attach(int descriptor, std::shared_ptr<Device> device);
  void detach(int descriptor);

 private:
  struct Held {
    std::shared_ptr<Device> device;
    std::pair<dev_t, ino_t> door;  ///< the file behind the descriptor
  };

  Station() = default;
  void refresh();  // with the mutex held

  std::mutex m_mutex;
  std::string m_root;
  std::vector<std::shared_ptr<Device>> m_devices;
  std::map<int, Held> m_open;
};

/// Names of optical and generic SCSI devices. While emulation is on, the real ones are hidden: no
/// test can burn a real disc by mistake.
bool isRecorderName(const std::string& path);

}  // namespace velmor::recorder
