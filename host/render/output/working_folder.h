// The folder in which the files of a render are made.
#pragma once

#include <filesystem>
#include <string>

namespace velmor::render {

/// A fresh hidden folder beside the place of the files, removed with what is in it at the object's
/// end. That takes no memory, so that nothing is left lying either where memory has run out; what
/// the system refuses is tried once more, and told when it is refused again.
class WorkingFolder {
 public:
  /// Throws `Failure` when nothing can be written to `parent`.
  explicit WorkingFolder(const std::filesystem::path& parent);
  ~WorkingFolder() { remove(); }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

  std::filesystem::path path() const { return m_path; }
  /// Removes it, or what stands there under its name, before the object's end.
  void remove() noexcept;
  /// Lets it stay at the object's end; its path.
  std::string leave() noexcept;

 private:
  std::string m_path;
  bool m_stays = false;
};

}  // namespace velmor::render
