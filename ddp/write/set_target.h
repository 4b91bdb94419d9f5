// The folder that a set goes to: there is a whole set in the end, or what was there before.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "ddp/write/prepared_set.h"
#include "disc/ddp/set_writer.h"
#include "disc/failure.h"
#include "disc/files/draft_folder.h"

namespace velmor::ddp {

class SetTarget {
 public:
  /// `folder` is new or empty; with `force` it may hold a set, which is then replaced, and other
  /// files, which stay. Throws `Failure` when it is neither, or nothing can be written there.
  SetTarget(const std::filesystem::path& folder, bool force);

  /// Writes the set, which was not refused, and puts it into its place. Throws `Failure`, or what
  /// `progress` throws; the folder is as it was then.
  void write(const PreparedSet& set, const WrittenSectors& progress);
  const std::filesystem::path& path() const { return m_folder.target(); }
  /// A clause about each folder that a killed process had left there and that is removed now.
  const std::vector<std::string>& warnings() const { return m_folder.warnings(); }

 private:
  void refuseOwnImages(const PreparedSet& set) const;

  disc::DraftFolder m_folder;
};

}  // namespace velmor::ddp
