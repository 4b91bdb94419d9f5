#include "host/recording/libburn/device_access.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "disc/text/phrases.h"

namespace velmor::recording {
namespace {

constexpr int kDeviceNumbers = 32;  // as many as libburn looks for

std::string nameOfUser(uid_t user) {
  const passwd* entry = getpwuid(user);
  return entry != nullptr ? entry->pw_name : std::to_string(user);
}

std::string nameOfGroup(gid_t group) {
  const ::group* entry = getgrgid(group);
  return entry != nullptr ? entry->gr_name : std::to_string(group);
}

ProcessIdentity thisProcess() {
  ProcessIdentity identity;
  identity.user = geteuid();
  identity.groups.push_back(getegid());
  const int count = getgroups(0, nullptr);
  if (count <= 0) return identity;
  std::vector<gid_t> groups(static_cast<size_t>(count));
  if (getgroups(count, groups.data()) == count)
    identity.groups.insert(identity.groups.end(), groups.begin(), groups.end());
  return identity;
}

std::string octal(mode_t mode) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%03o", static_cast<unsigned>(mode & 0777));
  return text.data();
}

bool isMember(const ProcessIdentity& identity, gid_t group) {
  return std::find(identity.groups.begin(), identity.groups.end(), group) != identity.groups.end();
}

std::string explainPermission(const DeviceFile& file, const ProcessIdentity& identity) {
  const std::string file_words =
      disc::inQuotes(file.path) + " may not be opened for recording: it belongs to " +
      file.owner_name + ", group " + file.group_name + ", permissions " + octal(file.mode);
  constexpr mode_t kGroupReadWrite = S_IRGRP | S_IWGRP;
  const bool group_may = (file.mode & kGroupReadWrite) == kGroupReadWrite;
  if (group_may && !isMember(identity, file.group))
    return file_words + ", and you are not in the group " + file.group_name +
           "; ask for it with: sudo usermod -aG " + file.group_name + " $USER, then log in again";
  if (!group_may)
    return file_words + ", so not even its group may read and write it; ask for: sudo chmod g+rw " +
           file.path;
  return file_words + "; something other than these permissions forbids it, as a sandbox would";
}

}  // namespace

std::string explainAccess(const DeviceFile& file, const ProcessIdentity& identity, int error) {
  switch (error) {
    case EACCES:
    case EPERM:
      return explainPermission(file, identity);
    case EBUSY:
      return disc::inQuotes(file.path) +
             " is in use by another program; close what is playing, burning or copying a disc "
             "there, or unmount the disc";
    case ENXIO:
    case ENODEV:
    case ENOMEDIUM:
      return "there is no drive behind " + disc::inQuotes(file.path);
    default:
      return disc::inQuotes(file.path) + " cannot be opened: " + std::strerror(error);
  }
}

std::string accessObstacle(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0)
    return disc::inQuotes(path) + " is not there any more; is the drive still plugged in?";
  // With the flags that libburn opens a drive with: exclusively, and without waiting for a disc.
  const int fd = open(path.c_str(), O_RDWR | O_NONBLOCK | O_EXCL | O_CLOEXEC);
  if (fd >= 0) {
    close(fd);
    return "";
  }
  const int error = errno;
  const DeviceFile file{path,
                        status.st_uid,
                        status.st_gid,
                        status.st_mode & 07777,
                        nameOfUser(status.st_uid),
                        nameOfGroup(status.st_gid)};
  return explainAccess(file, thisProcess(), error);
}

std::vector<std::string> opticalDeviceFiles() {
  std::vector<std::string> files;
  for (int i = 0; i < kDeviceNumbers; ++i) {
    const std::string path = "/dev/sr" + std::to_string(i);
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) files.push_back(path);
  }
  return files;
}

}  // namespace velmor::recording
