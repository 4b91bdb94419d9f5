// What goes onto a disc beside the audio: CD-TEXT, MCN and ISRCs, ready for the recorder.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "disc/cd_text/text_packs.h"
#include "disc/failure.h"
#include "disc/sheet/sheet_texts.h"

namespace velmor::disc {

/// The packs of CD-TEXT that a sheet can fill.
enum class TextKind { kTitle, kPerformer, kSongwriter, kCode };
inline constexpr size_t kTextKinds = 4;
/// What libburn 1.5.4 writes: one pack fewer than a block has room for.
inline constexpr int kMostWrittenTextPacks = kMostTextPacks - 1;

/// One kind of text, ISO 8859-1. `tracks` is empty when the disc has no such text at all, and
/// otherwise has an entry, perhaps an empty one, for every track: a kind that is given for one
/// track is given for all.
struct TextBlock {
  std::string disc;
  std::vector<std::string> tracks;
  bool present() const { return !tracks.empty(); }
};

struct DiscTexts {
  std::array<TextBlock, kTextKinds> blocks;
  std::string media_catalog;                 ///< 13 digits or empty
  std::vector<std::string> recording_codes;  ///< one per track, 12 characters or empty

  const TextBlock& block(TextKind kind) const { return blocks[static_cast<size_t>(kind)]; }
  TextBlock& block(TextKind kind) { return blocks[static_cast<size_t>(kind)]; }
  bool hasCdText() const;
};

/// Makes them for a disc of `tracks` tracks. A performer or songwriter that a track lacks is the
/// disc's. Whatever is changed or left out becomes a sentence in `warnings`. Throws `Failure` when
/// the sheet has another number of tracks, or more text than a disc holds.
DiscTexts makeDiscTexts(const SheetTexts& sheet, size_t tracks, std::vector<std::string>& warnings);

/// Packs of payload that the texts take, without those that say how many there are (`kSizePacks`).
/// A text like that of the track before takes one character.
int textPacks(const DiscTexts& texts);

}  // namespace velmor::disc
