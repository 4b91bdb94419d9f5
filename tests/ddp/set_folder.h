// Folders with sheets and sets that the tests make for themselves.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ddp/check/checked_set.h"
#include "ddp/write/prepared_set.h"
#include "tests/kit/child_process.h"
#include "tests/kit/scratch_folder.h"
#include "tests/kit/wav.h"
#include "tests/kit/whole_files.h"

namespace velmor::ddp::test {

using test_kit::readFile;
using test_kit::writeFile;

/// Where the packets of a map with texts begin, and where a packet's file name does.
inline constexpr size_t kPqPacket = 128;
inline constexpr size_t kAudioPacket = size_t{2} * 128;
inline constexpr size_t kNameField = 74;

/// Frames that count up: left is the frame's number, right what does not fit into that.
std::string countingFrames(int64_t frames);
inline std::string countingSectors(int64_t sectors) {
  return countingFrames(sectors * 588);
}

/// The sheet of a disc of two tracks with codes, flags, texts and a third index, for an image
/// "a.bin" of 1500 sectors.
std::string richSheet();

/// A folder with a sheet "a.cue" and its image "a.bin" of 1500 sectors.
class SheetFolder {
 public:
  explicit SheetFolder(const std::string& sheet = richSheet());

  /// Writes the set `name` from `sheet`, which is not refused.
  void write(const std::string& name, const std::string& sheet = "a.cue",
             const SetOptions& options = {}) const;
  CheckedSet check(const std::string& name) const { return checkSet(folder / name); }
  /// The ids of the errors of a set, or of all its findings.
  std::vector<std::string> errors(const std::string& name) const;
  std::vector<std::string> findings(const std::string& name) const;
  /// The ids of the errors that a sheet is refused for.
  std::vector<std::string> refusals(const std::string& sheet = "a.cue",
                                    const SetOptions& options = {}) const;

  /// Puts `bytes` at `at` of a set's file.
  void patch(const std::string& file, size_t at, const std::string& bytes) const;
  /// Takes the lists of check sums away, so that what is changed is not told by them.
  void dropChecksums(const std::string& name) const;

  test_kit::EndedProcess run(std::vector<std::string> arguments,
                             void (*in_child)() = nullptr) const;

  test_kit::ScratchFolder folder;
};

/// The names in a folder, sorted.
std::vector<std::string> namesIn(const std::filesystem::path& folder);
/// Are both folders the same, file by file and byte by byte?
bool sameFiles(const std::filesystem::path& a, const std::filesystem::path& b);

}  // namespace velmor::ddp::test
