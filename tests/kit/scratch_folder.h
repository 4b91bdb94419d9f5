// A folder for the files of one test.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace test_kit {

/// A fresh folder among the system's temporary ones, removed with everything in it at destruction.
/// Throws `std::runtime_error` when none can be made.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const { return m_path; }
  std::filesystem::path operator/(const std::string& name) const { return m_path / name; }
  /// The path of `name` in the folder as text, as a program is given it.
  std::string file(const std::string& name) const { return (m_path / name).string(); }
  /// The names of everything in it, sorted.
  std::vector<std::string> names() const;
  /// Removes what is in it and keeps the folder.
  void empty() const;

 private:
  std::filesystem::path m_path;
};

}  // namespace test_kit
