// The installed readers, run on a cue sheet: what each of them takes the disc to be.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "check/report/readers.h"

namespace velmor::check::test {

/// A disc as a reader shows it, or as it truly is. What a reader does not show is not set.
struct LoadedDisc {
  bool accepted = false;
  std::string output;  ///< of the reader, for messages
  std::optional<std::string> catalog;
  /// Of the tracks; empty: none.
  std::optional<std::vector<std::string>> titles, performers, isrcs;
  std::optional<std::vector<std::string>> disc_texts;  ///< TITLE and PERFORMER of the disc
  std::optional<std::vector<int64_t>> more_indices;    ///< INDEX 02 and on, as the starts
  /// INDEX 01, in sectors of the image and of the silence that the sheet adds.
  std::optional<std::vector<int64_t>> starts;
  std::optional<std::vector<int64_t>> gap_starts;  ///< of the pause before it, else the same
};

/// A sheet in a folder of its own with its image, and the image's length.
struct SheetOnDisk {
  std::string folder, sheet, image;
  int64_t sectors = 0;
  bool silence_added = false;  ///< by PREGAP or POSTGAP
  /// The files that the sheet names, with their sectors, where they are several.
  std::vector<std::pair<std::string, int64_t>> files = {};
};

struct ReaderRun {
  Reader reader;
  std::vector<std::string> programs;  ///< all must be installed
  std::function<LoadedDisc(const SheetOnDisk&)> load;

  bool installed() const;
};

/// Eleven of the thirteen: k3b and libmirage cannot be asked without a desktop or a kernel module.
const std::vector<ReaderRun>& readerRuns();

struct Asked {
  Reader reader;
  LoadedDisc loaded;
};

/// Asks all installed readers but those of `leave_out` at once, each in a folder of its own with
/// links to the files that `prepare` made.
std::vector<Asked> askReaders(
    const std::function<SheetOnDisk(const std::filesystem::path&)>& prepare,
    const std::vector<Reader>& leave_out = {});
/// The names of the readers that are not installed here; empty when all are.
std::string missingReaders();

/// Where `loaded` differs from `truth` in what it shows; empty when nowhere. With gaps in front of
/// track 1 a reader may count from there: starts are then compared from the first one on.
std::string difference(const LoadedDisc& loaded, const LoadedDisc& truth);

}  // namespace velmor::check::test
