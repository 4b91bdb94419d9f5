// Finished files put into their places, all of them or none.
#pragma once

#include <deque>
#include <filesystem>

namespace velmor::disc {

/// One file put into its place, with a way back.
class Placement {
 public:
  /// Gives `made` the place of `target`, which lies in the same file system; `made` may keep its
  /// own name beside that. With `replace` an old file keeps the second name `backup` meanwhile, so
  /// that at no moment is there neither the old nor the new one; without it a file that is there is
  /// left alone. Throws `std::filesystem::filesystem_error` with everything as it was.
  Placement(const std::filesystem::path& made, std::filesystem::path target,
            std::filesystem::path backup, bool replace);

  /// Puts the old file back, or takes the new one away where there was none. False when that fails.
  bool takeBack();
  /// The old file's second name goes.
  void forgetBackup();

 private:
  void keepOldFile();
  bool placeWithoutReplacing(const std::filesystem::path& made);

  std::filesystem::path m_target;
  std::filesystem::path m_backup;
  bool m_has_backup = false;
};

/// Takes all back, the last one first. False when one of them could not be taken back.
bool takeBack(std::deque<Placement>& placed);

}  // namespace velmor::disc
