// CD-TEXT read back from packs, whoever made them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "disc/cd_text/disc_texts.h"
#include "disc/cd_text/text_packs.h"

namespace velmor::disc {

enum class PackTrouble {
  kWrong,  ///< players need not show what was meant
  kOdd,    ///< readable all the same, or of no use here
};

/// What is not as it should be with the packs.
struct PackProblem {
  PackTrouble trouble = PackTrouble::kWrong;
  size_t pack = 0;   ///< 1 and up; 0: of all
  std::string what;  ///< a sentence without its full stop
};

struct ReadPacks {
  /// Of the first language, in ISO 8859-1; a text that stands for that of the track before is
  /// written out. Codes are in the block of codes only.
  DiscTexts texts;
  size_t packs = 0;
  int first_track = 0, last_track = 0;  ///< as the size packs say; 0: there are none
  std::vector<PackProblem> problems;    ///< at most `kMostPackProblems`
};

inline constexpr size_t kMostPackProblems = 50;

/// Reads packs as a file holds them: bare, behind a header of four bytes, or before a stray zero.
/// Any bytes will do.
ReadPacks readPacks(std::string_view bytes);

}  // namespace velmor::disc
