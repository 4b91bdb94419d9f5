// Somebody's set, read and judged.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "check/report/findings.h"
#include "disc/cd_text/disc_texts.h"
#include "disc/ddp/checksum_files.h"
#include "disc/ddp/identifier.h"
#include "disc/ddp/set_layout.h"
#include "disc/failure.h"

namespace velmor::ddp {

struct SetFileSummary {
  std::string name;
  int64_t bytes = 0;
  std::optional<DigestTexts> digests;  ///< nothing: it could not be read
};

struct CheckedSet {
  std::filesystem::path folder;
  Identifier identifier;
  SetLayout layout;                   ///< as far as it could be read
  bool layout_sound = false;          ///< is it whole, and in an order that makes a disc?
  disc::DiscTexts texts;              ///< ISO 8859-1
  bool has_texts = false;             ///< is there a CD-TEXT stream?
  std::string audio_file;             ///< a plain name; empty: the map names none that can be read
  std::vector<SetFileSummary> files;  ///< of the set, in its order
  std::vector<check::Finding> findings;  ///< most serious first

  int count(check::Severity severity) const;
  bool ready() const { return count(check::Severity::kError) == 0; }
};

struct SetCheckOptions {
  /// Told of the audio's bytes done and of all. May throw, which ends the check.
  std::function<void(int64_t done, int64_t all)> progress = [](int64_t, int64_t) {};
};

/// Reads the set in `folder` and changes nothing; each byte of the audio is read once. Throws
/// `Failure` when `folder` cannot be opened or has no DDPID or DDPMS; everything else is a finding.
CheckedSet checkSet(const std::filesystem::path& folder, const SetCheckOptions& options = {});

}  // namespace velmor::ddp
