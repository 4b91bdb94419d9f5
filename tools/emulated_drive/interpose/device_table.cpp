#include "tools/emulated_drive/interpose/device_table.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace velmor::emulated_drive {

namespace {
thread_local int g_direct_calls = 0;

std::pair<dev_t, ino_t> fileBehind(int descriptor) {
  const DirectCalls direct;
  struct stat info {};
  return ::fstat(descriptor, &info) == 0 ? std::pair(info.st_dev, info.st_ino)
                                         : std::pair<dev_t, ino_t>();
}

/// Optical drives were called scdN before they were srN; wodim still looks for them there.
std::string presentName(const std::string& path) {
  constexpr std::string_view kFormerFamily = "/dev/scd";
  return path.starts_with(kFormerFamily) ? "/dev/sr" + path.substr(kFormerFamily.size()) : path;
}

}  // namespace

DirectCalls::DirectCalls() {
  ++g_direct_calls;
}
DirectCalls::~DirectCalls() {
  --g_direct_calls;
}
bool DirectCalls::active() {
  return g_direct_calls > 0;
}

DeviceTable& DeviceTable::instance() {
  static DeviceTable* const kTable =
      new DeviceTable;  // outlives every static that may still close a file
  return *kTable;
}

void DeviceTable::refresh() {
  const char* value = std::getenv(kDirectoryVariable);
  const std::string root = value != nullptr ? value : "";
  if (root == m_root) {
    return;
  }
  m_root = root;
  m_devices.clear();
  if (root.empty()) {
    return;
  }
  int number = 0;
  for (const DriveDirectory& directory : DriveDirectory::all(root)) {
    try {
      m_devices.push_back(std::make_shared<EmulatedDevice>(directory, number));
      ++number;
    } catch (const std::exception& error) {
      // A library below the program has no other way to speak.
      std::fprintf(stderr, "velmor-emulated-drive: %s\n", error.what());
    }
  }
  if (m_devices.empty()) {
    std::fprintf(
        stderr,
        "velmor-emulated-drive: \"%s\" holds no drive; velmor-emulated-drive create makes one\n",
        root.c_str());
  }
}

bool DeviceTable::active() {
  const std::lock_guard lock(m_mutex);
  refresh();
  return !m_root.empty();
}

std::shared_ptr<EmulatedDevice> DeviceTable::byPath(const std::string& path) {
  const std::lock_guard lock(m_mutex);
  refresh();
  const std::string name = presentName(path);
  for (const std::shared_ptr<EmulatedDevice>& device : m_devices) {
    if (device->path() == name) {
      return device;
    }
  }
  return nullptr;
}

std::shared_ptr<EmulatedDevice> DeviceTable::byDescriptor(int descriptor) {
  const std::lock_guard lock(m_mutex);
  const auto found = m_open.find(descriptor);
  if (found == m_open.end()) {
    return nullptr;
  }
  // A stream closes its descriptor inside libc, where nobody sees it; the number may since lead to
  // another file.
  if (fileBehind(descriptor) != found->second.door) {
    m_open.erase(found);
    return nullptr;
  }
  return found->second.device;
}

void DeviceTable::attach(int descriptor, std::shared_ptr<EmulatedDevice> device) {
  const std::lock_guard lock(m_mutex);
  m_open[descriptor] = {std::move(device), fileBehind(descriptor)};
}

void DeviceTable::detach(int descriptor) {
  const std::lock_guard lock(m_mutex);
  m_open.erase(descriptor);
}

bool isOpticalDeviceName(const std::string& path) {
  constexpr const char* kFamilies[] = {"/dev/sr",    "/dev/scd",  "/dev/sg",  "/dev/pktcdvd",
                                       "/dev/cdrom", "/dev/cdrw", "/dev/dvd", "/dev/hd"};
  for (const std::string family : kFamilies) {
    if (path.rfind(family, 0) == 0) {
      return true;
    }
  }
  return false;
}

}  // namespace velmor::emulated_drive
