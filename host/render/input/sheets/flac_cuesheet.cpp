#include "host/render/input/sheets/flac_cuesheet.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "disc/codes/isrc.h"
#include "disc/failure.h"
#include "disc/sheet/sheet_parser.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"
#include "host/render/input/formats/flac_blocks.h"
#include "host/render/input/marks/vorbis_comments.h"
#include "host/render/input/sheets/sheet_marks.h"

namespace velmor::render {
namespace {

using Bytes = std::span<const std::byte>;

constexpr size_t kCatalogueLength = 128;
constexpr size_t kBehindCatalogue = 8 + 259;  // lead-in and reserved
constexpr size_t kIsrcLength = 12;
constexpr size_t kBehindFlags = 13;  // reserved
constexpr size_t kIndexReserved = 3;
constexpr size_t kLeastTracks = 2;

/// Takes pieces off a block; nothing of what is not there whole.
class BlockReader {
 public:
  explicit BlockReader(Bytes bytes) : m_rest(bytes) {}

  bool isDamaged() const { return m_is_damaged; }
  uint64_t number(size_t width) {
    uint64_t value = 0;
    for (const std::byte byte : take(width)) value = value << 8 | std::to_integer<uint64_t>(byte);
    return value;
  }
  /// Up to its first NUL.
  std::string text(size_t length) {
    const std::string_view all = disc::charactersOf(take(length));
    return std::string(all.substr(0, all.find('\0')));
  }
  void skip(size_t length) { take(length); }

 private:
  Bytes take(size_t length) {
    m_is_damaged = m_is_damaged || length > m_rest.size();
    if (m_is_damaged) return {};
    const Bytes taken = m_rest.first(length);
    m_rest = m_rest.subspan(length);
    return taken;
  }

  Bytes m_rest;
  bool m_is_damaged = false;
};

struct BlockTrack {
  uint64_t number = 0;
  uint64_t start = 0, pause = 0;  ///< INDEX 01 and 00, in frames of the file
  std::string isrc;
  bool is_audio = false;
};

BlockTrack takeTrack(BlockReader& block) {
  constexpr uint64_t kDataTrack = 0x80;
  BlockTrack track;
  const uint64_t begin = block.number(8);
  track.start = track.pause = begin;
  track.number = block.number(1);
  track.isrc = block.text(kIsrcLength);
  track.is_audio = (block.number(1) & kDataTrack) == 0;
  block.skip(kBehindFlags);
  for (uint64_t left = block.number(1); left > 0 && !block.isDamaged(); --left) {
    const uint64_t from_track = block.number(8);
    const uint64_t index = block.number(1);
    if (index == 0) track.pause = begin + from_track;
    if (index == 1) track.start = begin + from_track;
    block.skip(kIndexReserved);
  }
  return track;
}

std::vector<BlockTrack> tracksOf(BlockReader& block) {
  constexpr uint64_t kMostTracks = 99;  // the lead-out has a number above
  std::vector<BlockTrack> tracks;
  for (uint64_t left = block.number(1); left > 0 && !block.isDamaged(); --left) {
    BlockTrack track = takeTrack(block);
    if (track.is_audio && track.number >= 1 && track.number <= kMostTracks) {
      tracks.push_back(std::move(track));
    }
  }
  return tracks;
}

std::string nameOf(const std::string& path) {
  return "the cue sheet in " + disc::inQuotes(path);
}

void fill(std::string& text, const std::string& with) {
  if (text.empty()) text = with;
}

/// The marks of a sheet in text; none when it is no sheet of one file with several tracks.
FileMarks marksOfText(const std::string& text, const std::string& path, Tags& tags,
                      std::vector<std::string>& warnings) {
  const disc::Sheet sheet = disc::parseSheet(text);
  if (sheet.tracks.size() < kLeastTracks || sheet.files.size() != 1) return {};
  try {
    SheetMarks found = marksOfSheet(sheet, nameOf(path));
    fill(tags.album, found.disc.album);
    fill(tags.artist, found.disc.artist);
    fill(tags.songwriter, found.disc.songwriter);
    fill(tags.catalogue, found.disc.catalogue);
    fill(tags.date, found.disc.date);
    fill(tags.genre, found.disc.genre);
    for (std::string& converted : found.disc.converted)
      tags.converted.push_back(std::move(converted));
    for (std::string& warning : found.warnings) warnings.push_back(std::move(warning));
    for (Mark& mark : found.of_files.front().marks) mark.given_by.clear();
    return std::move(found.of_files.front());
  } catch (const Failure& damage) {
    warnings.push_back(std::string(damage.what()) + "; its tracks are left out");
    return {};
  }
}

}  // namespace

FileMarks marksOfCuesheetBlock(std::span<const std::byte> bytes, int rate, Tags& tags) {
  BlockReader block(bytes);
  const std::string catalogue = block.text(kCatalogueLength);
  block.skip(kBehindCatalogue);
  const std::vector<BlockTrack> tracks = tracksOf(block);
  if (block.isDamaged() || tracks.size() < kLeastTracks) return {};
  fill(tags.catalogue, tags.read(catalogue));
  FileMarks found;
  for (const BlockTrack& track : tracks) {
    Mark mark;
    const double start = static_cast<double>(track.start) / rate;
    // Audio before the first track's start is its pause, which no mark can lie behind.
    const bool first = &track == &tracks.front();
    (first ? mark.pause_behind : mark.start) = start;
    if (!first && track.pause < track.start) {
      found.pauses.push_back(static_cast<double>(track.pause) / rate);
    }
    mark.name = "Track " + disc::twoDigits(static_cast<int64_t>(track.number));
    found.marks.push_back(mark);
    if (const auto isrc = disc::normalisedIsrc(track.isrc)) {
      mark.name = "ISRC=" + *isrc;
      found.marks.push_back(mark);
    }
  }
  std::stable_sort(found.marks.begin(), found.marks.end(),
                   [](const Mark& a, const Mark& b) { return a.start < b.start; });
  return found;
}

FileMarks marksOfCarriedSheet(const disc::FileBytes& file, const std::string& path, int rate,
                              Tags& tags, std::vector<std::string>& warnings) {
  const std::string text = cueSheetComment(vorbisCommentsIn(file));
  FileMarks found = marksOfText(text, path, tags, warnings);
  if (!found.marks.empty()) return found;
  const auto block = FlacBlocks(file).next(FlacBlockType::kCueSheet);
  if (!block) return found;
  found = marksOfCuesheetBlock(*block, rate, tags);
  checkCatalogue(tags, nameOf(path), warnings);
  return found;
}

}  // namespace velmor::render
