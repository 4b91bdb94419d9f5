// A folder of files that appears whole or not at all.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "disc/failure.h"
#include "disc/files/held_folder.h"

namespace velmor::disc {

/// A hidden folder beside its target while it is being filled; gone with the object unless it took
/// the target's place. A process that is killed leaves the hidden folder behind, and the target as
/// it was; the next one to be made beside it removes it.
class DraftFolder {
 public:
  /// Files of the target that the new folder stands for and that go when it is replaced; all others
  /// are carried over.
  using IsReplaced = std::function<bool(const std::string& name)>;

  /// Makes the hidden folder. `target` is new or an empty folder, or with `force` a folder of
  /// files. Throws `Failure` when it is not, when it is the current folder, or when no folder can
  /// be made beside it.
  DraftFolder(const std::filesystem::path& target, bool force, IsReplaced replaced);
  ~DraftFolder();
  DraftFolder(const DraftFolder&) = delete;
  DraftFolder& operator=(const DraftFolder&) = delete;

  /// Where the files are to be made.
  const std::filesystem::path& path() const { return m_path; }
  const std::filesystem::path& target() const { return m_target; }
  /// A clause about each hidden folder that was found left behind, for messages.
  const std::vector<std::string>& warnings() const { return m_warnings; }

  /// Gives the folder, whose files are on the disk, the target's place in one step. Throws
  /// `Failure`, with the target as it was, when that fails, or when something has come there
  /// meanwhile that may not be replaced.
  void takePlace();

 private:
  void checkTarget();
  void removeAbandoned();
  void carryOver();
  void exchange();

  std::filesystem::path m_target, m_path;
  bool m_force;
  IsReplaced m_replaced;
  std::vector<std::string> m_carried;  ///< names in the target that are in no set
  std::vector<std::string> m_warnings;
  std::optional<HeldFolder> m_hidden;
};

}  // namespace velmor::disc
