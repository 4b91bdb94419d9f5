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
  std::string owner_name;  ///< the number where it has no name
  std::string group_name;
};

/// Whose rights a process has.
struct ProcessIdentity {
  uid_t user = 0;
  std::vector<gid_t> groups;  ///< effective and supplementary
};

/// A clause for a message: what `open` refused with `error` (an errno), and what would help.
std::string explainAccess(const DeviceFile& file, const ProcessIdentity& identity, int error);

/// Tries to open `path` as a recorder is opened. Empty when it can be, otherwise why not, as above.
std::string accessObstacle(const std::string& path);

/// The device files of the machine's optical drives, usable or not.
std::vector<std::string> opticalDeviceFiles();

}  // namespace velmor::recording
