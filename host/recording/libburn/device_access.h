// Why a device file may not be opened, and what would help.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace velmor::recording {

struct DeviceFile {
  std::string path;
  uid_t owner = 0;
  gid_t group = 0;
  mode_t mode = 0;         ///< permission bits
  std::string owner_name;  ///< or the number
  std::string group_name;
};

struct Person {
  uid_t user = 0;
  std::vector<gid_t> groups;  ///< effective and supplementary
};

/// A sentence for what `open` refused with `error` (an errno).
std::string explainAccess(const DeviceFile& file, const Person& person, int error);

/// Tries to open `path` as a recorder is opened. Empty: it can be. Otherwise the sentence.
std::string accessObstacle(const std::string& path);

/// The device files under which the system would have its optical drives, as far as they exist.
std::vector<std::string> opticalDeviceFiles();

}  // namespace velmor::recording
