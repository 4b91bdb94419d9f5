// The folder in which the files of a render are made.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "disc/failure.h"
#include "disc/files/held_folder.h"

namespace velmor::render {

/// A fresh hidden folder beside the place of the files, removed with what is in it at the object's
/// end. That takes no memory, so that nothing is left lying either where memory has run out; what
/// the system refuses is tried once more, and told when it is refused again.
///
/// A process that is killed leaves the folder behind, and a later one can tell that it is nobody's
/// any more.
class WorkingFolder {
 public:
  /// Throws `Failure` when nothing can be written to `parent`.
  explicit WorkingFolder(const std::filesystem::path& parent);
  ~WorkingFolder();
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

  std::filesystem::path path() const { return m_folder.path(); }
  /// A folder within for the new files.
  std::filesystem::path files() const { return path() / kFiles; }
  /// A folder within, to be made, for old files while they are being replaced.
  std::filesystem::path replaced() const { return path() / kReplaced; }
  /// Empties the folder and makes `files` another name of the folder that all this lies in.
  void nameParent();
  /// Lets it stay at the object's end; its path.
  std::string leave() noexcept;

  /// Removes the folders that killed processes have left in `parent`, and answers a clause about
  /// each, for a message. One that keeps the only copy of an old file stays, and is told too.
  static std::vector<std::string> removeAbandoned(const std::filesystem::path& parent);

 private:
  static constexpr const char* kFiles = "files";
  static constexpr const char* kReplaced = "replaced";

  static std::string removeOne(const std::filesystem::path& folder);
  void remove() noexcept;

  disc::HeldFolder m_folder;
  bool m_stays = false;
};

}  // namespace velmor::render
