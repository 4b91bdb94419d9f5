// A file while it is being made.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "disc/files/new_file.h"

namespace velmor::disc {

/// A new file beside its target, under a name of its own; gone with the object unless it was put in
/// the target's place. Nobody sees it half-written.
class Draft {
 public:
  /// Throws `std::filesystem::filesystem_error` when no file can be made beside `target`.
  explicit Draft(std::filesystem::path target);
  ~Draft();
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;

  const std::filesystem::path& path() const { return m_path; }
  const std::filesystem::path& target() const { return m_target; }

  /// Appends `text`. Throws `std::filesystem::filesystem_error`.
  void write(std::string_view text) { m_file->write(text); }
  /// Gives it the permissions of the target, where there is one. Throws as `write` does.
  void takePermissionsOfTarget();
  /// Waits until the bytes are on the disk, which is when a full disk is found out at the latest.
  /// Throws as `write` does.
  void sync() { m_file->sync(); }
  /// Takes the target's place in one step: whoever opens it finds the old file or the new one.
  /// Throws as `write` does.
  void takePlace();

 private:
  std::filesystem::path m_target;
  std::filesystem::path m_path;
  std::optional<NewFile> m_file;
};

}  // namespace velmor::disc
