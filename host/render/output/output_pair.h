// The sheet and the image: made beside their place, and put there together when they are complete.
#pragma once

#include <deque>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "disc/failure.h"
#include "disc/files/placement.h"
#include "host/render/output/working_folder.h"

namespace velmor::render {

/// The two files of a render, and the portable sheet when one is wanted. Until `commit` they lie in
/// a working folder beside the target, so that nothing half-written is ever seen and an old pair
/// stays whole. The object's end removes that folder.
class OutputPair {
 public:
  /// `output` is the sheet as the user named it, with or without ".cue"; none of `inputs` may be
  /// overwritten. Throws `Failure` when the pair cannot go there: a missing or read-only folder, a
  /// name that a sheet cannot hold, an input in the way, an existing pair without `force`, or one
  /// that another program holds. With `portable` the same is true of a third file, the portable
  /// sheet.
  OutputPair(const std::string& output, bool force, const std::vector<std::string>& inputs,
             bool portable = false);
  OutputPair(const OutputPair&) = delete;
  OutputPair& operator=(const OutputPair&) = delete;

  /// Where the pair is being made.
  std::string workingSheet() const { return (m_folder->files() / m_sheet.filename()).string(); }
  std::string workingImage() const { return (m_folder->files() / m_image.filename()).string(); }
  std::string workingPortableSheet() const {
    return (m_folder->files() / m_portable.filename()).string();
  }
  /// Where it will be.
  std::string sheet() const { return m_sheet.string(); }
  std::string image() const { return m_image.string(); }
  std::string portableSheet() const { return m_portable.string(); }

  /// The path of a portable sheet that was made for an earlier image of the same name; empty when
  /// there is none, or when this render replaces it as well.
  std::string olderPortableSheet() const;

  /// Clauses to warn with: that the name is another than the user gave, since a sheet holds UTF-8
  /// alone, and about each working folder that a killed run had left in the same place.
  const std::vector<std::string>& warnings() const { return m_warnings; }

  /// Puts the pair into its place, and the portable sheet if it was made. If one was wanted but not
  /// made, an older one is removed, since its image is replaced. Throws `Failure`, with everything
  /// as it was, when that fails, or when a file has come there meanwhile that may not be replaced.
  void commit();
  /// The same for files that are still used under their working names, as the burn does: those
  /// names lead to the delivered files for as long as this object lives, also for deleting. False,
  /// with nothing done, where the file system has no way to give a folder a second name.
  bool commitAndKeepWorkingNames();

 private:
  void nameInUtf8();
  void checkName() const;
  std::vector<std::filesystem::path> targets() const;
  void checkTargets(const std::vector<std::string>& inputs) const;
  void checkOld() const;
  std::string takeBack(std::deque<disc::Placement>& placed) noexcept;

  std::filesystem::path m_sheet;
  std::filesystem::path m_image;
  std::filesystem::path m_portable;  ///< empty when none is wanted
  bool m_force;
  std::vector<std::string> m_warnings;
  std::optional<WorkingFolder> m_folder;  ///< there once nothing stands against the pair
};

}  // namespace velmor::render
