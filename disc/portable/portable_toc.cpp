#include "disc/portable/portable_toc.h"

#include <cassert>
#include <utility>

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
    const PlainIndex& first = track.indices.front();
    for (const PlainIndex& i : track.indices)
      if (i.file != first.file || track.mode != "AUDIO")
        throw Failure("track " + std::to_string(track.number) +
                      " is not audio in one file, which a TOC for cdrdao cannot say; join the "
                      "files first");
    const PlainFile& file = m_disc.files[first.file];
    refuseUnknownContainer(file);
    const std::string swap = file.type == "BINARY" ? "SWAP " : "";
    if (track.pregap > 0) m_text += "SILENCE " + msfText(track.pregap) + '\n';
    m_text +=
        "FILE \"" + escaped(file.name) + "\" " + swap + msfText(first.sector) + lengthOf(t) + '\n';
    if (track.postgap > 0) m_text += "SILENCE " + msfText(track.postgap) + '\n';
    addIndices(track);
  }

  /// None for the last track of a file: it goes to the file's end, whole sector or not.
  std::string lengthOf(size_t t) const {
    if (t + 1 >= m_disc.tracks.size()) return "";
    const PlainIndex& first = m_disc.tracks[t].indices.front();
    const PlainIndex& next = m_disc.tracks[t + 1].indices.front();
    return next.file == first.file ? ' ' + msfText(next.sector - first.sector) : "";
  }

  void addIndices(const PlainTrack& track) {
    const int64_t begin = track.indices.front().sector;
    int64_t start = begin;
    for (const PlainIndex& i : track.indices) {
      if (i.number == 1) {
        start = i.sector;
        const int64_t gap = start - begin + track.pregap;
        if (gap > 0) m_text += "START " + msfText(gap) + '\n';
      } else if (i.number > 1) {
        m_text += "INDEX " + msfText(i.sector - start) + '\n';
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
