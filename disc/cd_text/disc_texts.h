// What goes onto a disc beside the audio: CD-TEXT, MCN and ISRCs, ready for the recorder.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "disc/cd_text/text_packs.h"
#include "disc/failure.h"
#include "disc/sheet/sheet_texts.h"

namespace velmor::disc {

/// The packs of CD-TEXT that a sheet can fill, in the order of their types.
enum class TextKind { kTitle, kPerformer, kSongwriter, kComposer, kArranger, kMessage, kCode };
inline constexpr size_t kTextKinds = 7;

/// Those that people write; codes are none.
inline constexpr std::array kWrittenKinds = {TextKind::kTitle,      TextKind::kPerformer,
                                             TextKind::kSongwriter, TextKind::kComposer,
                                             TextKind::kArranger,   TextKind::kMessage};

/// "title"; in capitals it is the sheet's command.
constexpr std::string_view nameOf(TextKind kind) {
  constexpr std::array<std::string_view, kTextKinds> kNames = {
      "title", "performer", "songwriter", "composer", "arranger", "message", "code"};
  return kNames[static_cast<size_t>(kind)];
}

/// The first byte of a kind's packs.
constexpr uint8_t packType(TextKind kind) {
  return kind == TextKind::kCode ? kCodePackType
                                 : static_cast<uint8_t>(kFirstPackType + static_cast<int>(kind));
}

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
  /// Of track `track`, counted from 1, or of the disc (0); ISO 8859-1, empty where there is none.
  std::string text(TextKind kind, size_t track) const;
  bool hasCdText() const;
  size_t tracks() const { return recording_codes.size(); }
};

/// The texts just as the sheet gives them, converted; no codes. What is replaced becomes a sentence
/// in `warnings`.
DiscTexts textsAsGiven(const SheetTexts& sheet, std::vector<std::string>& warnings);

/// Makes what a burn writes on a disc of `tracks` tracks. A performer, songwriter, composer or
/// arranger that a track lacks is the disc's, and the codes stand beside the texts. Whatever is
/// changed or left out becomes a sentence in `warnings`. Throws `Failure` when the sheet has
/// another number of tracks, or more text than a disc holds.
DiscTexts makeDiscTexts(const SheetTexts& sheet, size_t tracks, std::vector<std::string>& warnings);

/// Packs of payload that the texts take, without those that say how many there are (`kSizePacks`).
int textPacks(const DiscTexts& texts);

}  // namespace velmor::disc
