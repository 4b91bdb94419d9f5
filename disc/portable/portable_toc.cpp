#include "disc/portable/portable_toc.h"

#include <cassert>
#include <utility>
#include <vector>

#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/text/words.h"
#include "disc/units/disc_time.h"

namespace velmor::disc {

namespace {

void addTocFields(std::string& text, const PlainFields& fields) {
  if (!fields.title.empty()) text += "    TITLE \"" + fields.title + "\"\n";
  if (!fields.performer.empty()) text += "    PERFORMER \"" + fields.performer + "\"\n";
  if (!fields.songwriter.empty()) text += "    SONGWRITER \"" + fields.songwriter + "\"\n";
}

/// A backslash begins a character's octal number.
std::string escaped(const std::string& name) {
  std::string text;
  for (const char c : name) text += c == '\\' ? "\\134" : std::string(1, c);
  return text;
}

bool empty(const PlainFields& f) {
  return f.title.empty() && f.performer.empty() && f.songwriter.empty();
}

class TocWriter {
 public:
  explicit TocWriter(const PortableDisc& disc) : m_disc(disc) {}

  std::string run() {
    m_text = "CD_DA\n\n";
    if (!m_disc.catalog.empty()) m_text += "CATALOG \"" + m_disc.catalog + "\"\n\n";
    if (!empty(m_disc.fields)) {
      m_text += "CD_TEXT {\n  LANGUAGE_MAP { 0: EN }\n  LANGUAGE 0 {\n";
      addTocFields(m_text, m_disc.fields);
      m_text += "  }\n}\n";
    }
    for (size_t t = 0; t < m_disc.tracks.size(); ++t) addTrack(t);
    return std::move(m_text);
  }

 private:
  void addTrack(size_t t) {
    const PlainTrack& track = m_disc.tracks[t];
    m_text += "\nTRACK AUDIO\n";
    addFlags(track.flags);
    if (!track.isrc.empty()) m_text += "ISRC \"" + track.isrc + "\"\n";
    if (!empty(track.fields)) {
      m_text += "CD_TEXT {\n  LANGUAGE 0 {\n";
      addTocFields(m_text, track.fields);
      m_text += "  }\n}\n";
    }
    addAudio(t);
  }

  void addFlags(const std::string& flags) {
    const auto has = [&](std::string_view flag) { return flags.find(flag) != std::string::npos; };
    if (has("DCP")) m_text += "COPY\n";
    if (has("PRE")) m_text += "PRE_EMPHASIS\n";
    if (has("4CH")) m_text += "FOUR_CHANNEL_AUDIO\n";
  }

  /// cdrdao knows a container by the end of its name alone; by any other it is raw samples, and its
  /// header sounds.
  static void refuseUnknownContainer(const PlainFile& file) {
    const bool known = upperCase(file.name).ends_with(".WAV");
    if (file.type == "AIFF" || (file.type == "WAVE" && !known))
      throw Failure("cdrdao would play the header of " + inQuotes(printable(file.name)) +
                    " as sound; make it a WAVE file named .wav for a TOC");
  }

  /// cdrdao takes raw samples as big-endian; SWAP says that they are not. WAVE files say it
  /// themselves.
  void addAudio(size_t t) {
    const PlainTrack& track = m_disc.tracks[t];
    assert(!track.indices.empty());
    if (track.mode != "AUDIO")
      throw Failure("track " + std::to_string(track.number) +
                    " is not audio, for which no TOC is written; burn it from its sheet");
    if (track.pregap > 0) m_text += "SILENCE " + msfText(track.pregap) + '\n';
    const std::vector<int64_t> places = addPieces(t);
    if (track.postgap > 0) m_text += "SILENCE " + msfText(track.postgap) + '\n';
    addIndices(track, places);
  }

  /// The track's audio, a piece of each file that its indices lie in. Returns where each index lies
  /// in it.
  std::vector<int64_t> addPieces(size_t t) {
    const PlainTrack& track = m_disc.tracks[t];
    std::vector<int64_t> places;
    PlainIndex begin = track.indices.front();
    int64_t before = 0;
    for (const PlainIndex& i : track.indices) {
      if (i.file != begin.file) {
        const int64_t rest = m_disc.files[begin.file].sectors - begin.sector;
        if (rest <= 0)
          throw Failure("track " + std::to_string(track.number) +
                        " goes on in a second file, and the first one's length is not known; "
                        "join the files first");
        addFile(begin, ' ' + msfText(rest));
        before += rest;
        begin = {i.number, 0, i.file};
      }
      places.push_back(before + i.sector - begin.sector);
    }
    addFile(begin, lengthOf(t, begin));
    return places;
  }

  void addFile(const PlainIndex& begin, const std::string& length) {
    const PlainFile& file = m_disc.files[begin.file];
    refuseUnknownContainer(file);
    const std::string swap = file.type == "BINARY" ? "SWAP " : "";
    m_text += "FILE \"" + escaped(file.name) + "\" " + swap + msfText(begin.sector) + length + '\n';
  }

  /// None for the last track of a file: it goes to the file's end, whole sector or not.
  std::string lengthOf(size_t t, const PlainIndex& first) const {
    if (t + 1 >= m_disc.tracks.size()) return "";
    const PlainIndex& next = m_disc.tracks[t + 1].indices.front();
    return next.file == first.file ? ' ' + msfText(next.sector - first.sector) : "";
  }

  void addIndices(const PlainTrack& track, const std::vector<int64_t>& places) {
    int64_t start = 0;
    for (size_t i = 0; i < places.size(); ++i) {
      if (track.indices[i].number == 1) {
        start = places[i];
        const int64_t gap = start + track.pregap;
        if (gap > 0) m_text += "START " + msfText(gap) + '\n';
      } else if (track.indices[i].number > 1) {
        m_text += "INDEX " + msfText(places[i] - start) + '\n';
      }
    }
  }

  const PortableDisc& m_disc;
  std::string m_text;
};

}  // namespace

std::string tocText(const PortableDisc& disc) {
  return TocWriter(disc).run();
}

}  // namespace velmor::disc
