#include "host/render/input/sheets/sheet_marks.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "disc/codes/catalogue_number.h"
#include "disc/codes/isrc.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_limits.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::render {
namespace {

/// The value of a remark like DATE 1998 or GENRE "Rock"; nothing when it is another.
std::optional<std::string_view> valueOfRemark(std::string_view remark, std::string_view key) {
  if (remark.substr(0, key.size()) != key) return std::nullopt;
  std::string_view value = remark.substr(key.size());
  if (value.empty() || value.front() != ' ') return std::nullopt;
  while (!value.empty() && (value.front() == ' ' || value.front() == '"')) value.remove_prefix(1);
  while (!value.empty() && (value.back() == ' ' || value.back() == '"')) value.remove_suffix(1);
  return value;
}

class SheetReader {
 public:
  SheetReader(const disc::Sheet& sheet, const std::string& name) : m_sheet(sheet), m_name(name) {}

  SheetMarks run() {
    if (m_sheet.binary_bytes) refuse("is no text in UTF-8 or an 8-bit encoding; save it as UTF-8");
    if (m_sheet.tracks.empty()) refuse("has no tracks; look whether it is a cue sheet");
    m_marks.of_files.resize(m_sheet.files.size());
    m_added.resize(m_sheet.files.size());
    readDisc();
    for (const disc::Track& track : m_sheet.tracks) readTrack(track);
    if (m_postgap > 0)
      m_marks.of_files[m_file].silences.push_back({kAtTheEnd, framesOf(m_postgap)});
    warn(m_indices, "INDEX 02 and above of ", "INDEX 02 and above of ", " out", " are left",
         " are left");
    warn(m_flags, "the FLAGS of ", "the FLAGS of ", " out", " are left", " are left");
    warn(m_gaps, "", "", " left out", " is no time (MM:SS:FF) and is",
         " are no times (MM:SS:FF) and are");
    return std::move(m_marks);
  }

 private:
  [[noreturn]] void refuse(const std::string& reason) const {
    throw Failure(m_name + " " + reason);
  }

  void warn(const std::vector<std::string>& tracks, const char* of_one, const char* of_several,
            const char* rest, const char* is, const char* are) {
    if (tracks.empty()) return;
    const bool one = tracks.size() == 1;
    m_marks.warnings.push_back((one ? of_one : of_several) + disc::listed(tracks) + " of " +
                               m_name + (one ? is : are) + rest);
  }

  std::string read(const std::optional<disc::Text>& text) {
    return text ? m_marks.disc.read(text->bytes) : std::string();
  }

  void readDisc() {
    Tags& disc = m_marks.disc;
    disc.album = read(m_sheet.fields.title);
    disc.artist = read(m_sheet.fields.performer);
    disc.songwriter = read(m_sheet.fields.songwriter);
    disc.catalogue = read(m_sheet.catalog);
    checkCatalogue(disc, m_name, m_marks.warnings);
    for (const disc::Text& remark : m_sheet.remarks) {
      if (const auto date = valueOfRemark(remark.bytes, "DATE")) disc.date = disc.read(*date);
      if (const auto genre = valueOfRemark(remark.bytes, "GENRE")) disc.genre = disc.read(*genre);
    }
  }

  void readTrack(const disc::Track& track) {
    // A number that is none is for the checker to tell.
    const int ordinal = static_cast<int>(&track - m_sheet.tracks.data()) + 1;
    const int shown = track.number >= 1 ? track.number : ordinal;
    const std::string number = "track " + std::to_string(shown);
    if (!track.isAudio()) refuse("has a data track, " + number + "; an audio CD has none");
    const disc::Index* const start = track.index(1);
    if (!start || !start->time.readable()) refuse("has no INDEX 01 in " + number + "; add it");
    if (start->file >= m_marks.of_files.size())
      refuse("names no FILE before " + number + "; add it");
    noteLosses(track, number);
    Mark mark;
    place(track, number, *start, mark);
    mark.given_by = number + " of " + m_name;
    mark.name = read(track.fields.title);
    if (mark.name.empty()) mark.name = "Track " + disc::twoDigits(shown);
    std::vector<Mark>& marks = m_marks.of_files[start->file].marks;
    marks.push_back(mark);
    const std::string isrc = read(track.isrc);
    for (const auto& [tag, text] : {std::pair{"PERF=", read(track.fields.performer)},
                                    {"WRIT=", read(track.fields.songwriter)},
                                    {"ISRC=", disc::normalisedIsrc(isrc).value_or(isrc)}}) {
      if (text.empty()) continue;
      mark.name = tag + text;
      marks.push_back(mark);
    }
  }

  /// Where the track's mark and its pause lie, and the silence that is added there: the POSTGAP of
  /// the track before it and its own PREGAP come before its first index.
  void place(const disc::Track& track, const std::string& number, const disc::Index& start,
             Mark& mark) {
    const int64_t pregap = sectorsOf(track.pregap, "PREGAP", number);
    const bool first = &track == &m_sheet.tracks.front();
    if (first && start.file == 0) {
      // No mark can lie behind the disc's begin and still be track 1's.
      addSilence(0, 0, pregap);
      mark.pause_behind = secondsOf(pregap + start.time.sectors());
    } else {
      const disc::Index& begin = firstOf(track, start);
      addSilence(begin.file, begin.time.sectors(), m_postgap);
      const int64_t pause = m_added[begin.file] + begin.time.sectors();
      addSilence(begin.file, begin.time.sectors(), pregap);
      const int64_t sector = m_added[start.file] + start.time.sectors();
      mark.start = secondsOf(sector);
      if (begin.file != start.file || pause < sector) {
        m_marks.of_files[begin.file].pauses.push_back(secondsOf(pause));
      }
    }
    m_postgap = sectorsOf(track.postgap, "POSTGAP", number);
    m_file = start.file;
  }

  static const disc::Index& firstOf(const disc::Track& track, const disc::Index& start) {
    const disc::Index* const pause = track.index(0);
    return pause && pause->time.readable() && pause->file <= start.file ? *pause : start;
  }

  void addSilence(size_t file, int64_t sector, int64_t sectors) {
    if (sectors == 0) return;
    m_marks.of_files[file].silences.push_back({framesOf(sector), framesOf(sectors)});
    m_added[file] += sectors;
  }

  int64_t sectorsOf(const std::optional<disc::Msf>& gap, const std::string& command,
                    const std::string& number) {
    if (!gap) return 0;
    if (!gap->readable()) {
      m_gaps.push_back("the " + command + " of " + number);
      return 0;
    }
    const int64_t sectors = gap->sectors();
    if (sectors > disc::kLongestTimeSectors)
      refuse("has a " + command + " of " + disc::msfText(sectors) + " (MM:SS:FF) in " + number +
             ", but the times of a disc end at " + disc::msfText(disc::kLongestTimeSectors) +
             "; shorten it");
    return sectors;
  }
  static int64_t framesOf(int64_t sectors) { return sectors * disc::kFramesPerSector; }
  static double secondsOf(int64_t sectors) {
    return static_cast<double>(sectors) / disc::kSectorsPerSecond;
  }

  void noteLosses(const disc::Track& track, const std::string& number) {
    if (track.flags) m_flags.push_back(number);
    const bool has_more = std::any_of(track.indices.begin(), track.indices.end(),
                                      [](const disc::Index& index) { return index.number > 1; });
    if (has_more) m_indices.push_back(number);
  }

  const disc::Sheet& m_sheet;
  const std::string& m_name;
  SheetMarks m_marks;
  std::vector<int64_t> m_added;                         ///< to each file, sectors of silence so far
  int64_t m_postgap = 0;                                ///< of the track before, sectors
  size_t m_file = 0;                                    ///< in which the track before begins
  std::vector<std::string> m_indices, m_flags, m_gaps;  ///< that are left out
};

}  // namespace

void checkCatalogue(Tags& tags, const std::string& name, std::vector<std::string>& warnings) {
  tags.catalogue = disc::bareCatalogueNumber(tags.catalogue);
  if (tags.catalogue.empty()) return;
  if (const auto fault = disc::catalogueFault(tags.catalogue)) {
    warnings.push_back("the catalogue number " + disc::inQuotes(tags.catalogue) + " of " + name +
                       " " + *fault + " and is left out; give the right one with --catalog");
    tags.catalogue.clear();
  }
}

SheetMarks marksOfSheet(const disc::Sheet& sheet, const std::string& name) {
  return SheetReader(sheet, name).run();
}

}  // namespace velmor::render
