// A file that is written once, from its begin to its end.
#pragma once

#include <filesystem>
#include <string_view>

namespace velmor::disc {

/// Creates a file where none is; whoever made its folder takes care of what is left of it. One
/// thread.
class NewFile {
 public:
  /// Creates `path`; errors name `told`, which is what the user knows of. Throws
  /// `std::filesystem::filesystem_error` when something is there, or none can be made.
  NewFile(const std::filesystem::path& path, std::filesystem::path told);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// Appends `bytes`. Throws `std::filesystem::filesystem_error`.
  void write(std::string_view bytes);
  /// Gives it the permissions `mode` (07777). Throws as `write` does.
  void setPermissions(unsigned mode);
  /// Waits until the bytes are on the disk, which is when a full disk is found out at the latest.
  /// Throws as `write` does.
  void sync();

 private:
  std::filesystem::path m_told;
  int m_descriptor = -1;
};

}  // namespace velmor::disc
