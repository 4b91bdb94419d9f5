// One emulated device of this process: a drive kept in its folder, safe to use from several
// threads.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <mutex>
#include <string>

#include "tools/emulated_drive/directory/drive_directory.h"
#include "tools/emulated_drive/directory/file_surface.h"

namespace velmor::emulated_drive {

class EmulatedDevice {
 public:
  /// `number` tells the drives of a process apart. Throws `DirectoryError`.
  EmulatedDevice(const DriveDirectory& directory, int number);

  /// Reads what has changed in the folder, does the command and stores what it changed; then sleeps
  /// for as long as a slow drive takes.
  Reply execute(ByteView cdb, ByteView data_out);

  /// As the folder says at this moment.
  [[nodiscard]] DriveSettings settings() const { return m_directory.settings(); }
  [[nodiscard]] bool hasDisc() const;
  [[nodiscard]] bool trayOpen() const { return m_directory.trayOpen(); }

  [[nodiscard]] const std::string& path() const { return m_path; }
  [[nodiscard]] std::string door() const { return m_directory.doorFile(); }
  [[nodiscard]] int number() const { return m_number; }
  /// The block device number that goes with the name: sr30 is 30.
  [[nodiscard]] unsigned minor() const { return m_minor; }

 private:
  /// When a file of the folder last changed; all zero: there is no such file.
  using Stamp = std::array<std::int64_t, 3>;
  struct Stamps {
    Stamp settings{}, disc{}, tray{};
    bool operator==(const Stamps&) const = default;
  };
  [[nodiscard]] Stamps stamps() const;
  void takeIn(const Stamps& now);
  void writeBack();

  DriveDirectory m_directory;
  std::string m_path;
  int m_number;
  unsigned m_minor;
  std::mutex m_mutex;
  FileSurface m_surface;
  EmulatedDrive m_drive;
  Stamps m_seen;
  unsigned m_written = 0;  // generation of the drive that the folder holds
};

}  // namespace velmor::emulated_drive
