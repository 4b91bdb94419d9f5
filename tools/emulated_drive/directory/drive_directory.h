// A drive that outlives its process: a folder with the drive's settings, the description of the
// disc in its tray and the audio recorded on it.
//
//   drive.conf   what the drive is and what goes wrong in it (written by people)
//   disc.txt     the disc; absent: no disc
//   audio.bin    its sectors from LBA -150 on
//   tray-open    present while the tray is out
//   door         the file that is really open behind a descriptor of the device; locks on the
//                device are locks on it
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/emulated_drive/drive/emulated_drive.h"

namespace velmor::emulated_drive {

/// A settings or disc file that cannot be read: what, where, what to do.
class DirectoryError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A name in double quotes, as all messages have them.
std::string inQuotes(const std::filesystem::path& name);

struct DriveSettings {
  std::string device = "/dev/sr30";  ///< the path that programs open
  DriveIdentity identity;
  Faults faults;
  bool busy = false;  ///< every open fails as if another program held the drive
  bool deny = false;  ///< every open fails for lack of permission
};

/// Sets one key of drive.conf; the value "none" removes a bad sector. `where` tells in the
/// `DirectoryError` that is thrown for a wrong one where it was given.
void applySetting(const std::string& key, const std::string& value, const std::string& where,
                  DriveSettings& settings);

/// One drive's folder. Holds no descriptor and no state but the path.
class DriveDirectory {
 public:
  explicit DriveDirectory(std::filesystem::path path) : m_path(std::move(path)) {}

  /// The drives of a folder of drives, in the order of their folder names. A folder without
  /// drive.conf is none.
  static std::vector<DriveDirectory> all(const std::filesystem::path& root);

  /// All but `trayOpen` throw `DirectoryError`.
  [[nodiscard]] DriveSettings settings() const;
  void saveSettings(const DriveSettings& settings) const;
  [[nodiscard]] std::optional<EmulatedDisc> disc() const;
  void saveDisc(const std::optional<EmulatedDisc>& disc) const;

  [[nodiscard]] bool trayOpen() const;
  void saveTray(bool open) const;

  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
  [[nodiscard]] std::filesystem::path settingsFile() const { return m_path / "drive.conf"; }
  [[nodiscard]] std::filesystem::path discFile() const { return m_path / "disc.txt"; }
  [[nodiscard]] std::filesystem::path audioFile() const { return m_path / "audio.bin"; }
  [[nodiscard]] std::filesystem::path trayFile() const { return m_path / "tray-open"; }
  [[nodiscard]] std::filesystem::path doorFile() const { return m_path / "door"; }

 private:
  std::filesystem::path m_path;
};

}  // namespace velmor::emulated_drive
