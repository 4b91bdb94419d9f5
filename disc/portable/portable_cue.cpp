#include "disc/portable/portable_cue.h"

#include <cassert>
#include <string_view>
#include <utility>

#include "disc/units/disc_time.h"

namespace velmor::disc {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

void addLine(std::string& text, std::string_view indent, const std::string& line) {
  text += indent;
  text += line;
  text += kLineEnd;
}

void addCueFields(std::string& text, std::string_view indent, const PlainFields& fields) {
  if (!fields.title.empty()) addLine(text, indent, "TITLE \"" + fields.title + '"');
  if (!fields.performer.empty()) addLine(text, indent, "PERFORMER \"" + fields.performer + '"');
  if (!fields.songwriter.empty()) addLine(text, indent, "SONGWRITER \"" + fields.songwriter + '"');
  if (!fields.composer.empty()) addLine(text, indent, "COMPOSER \"" + fields.composer + '"');
  if (!fields.arranger.empty()) addLine(text, indent, "ARRANGER \"" + fields.arranger + '"');
  if (!fields.message.empty()) addLine(text, indent, "MESSAGE \"" + fields.message + '"');
}

class CueWriter {
 public:
  explicit CueWriter(const PortableDisc& disc) : m_disc(disc) {}

  std::string run() {
    for (const std::string& remark : m_disc.remarks) addLine(m_text, "", "REM " + remark);
    if (!m_disc.catalog.empty()) addLine(m_text, "", "CATALOG " + m_disc.catalog);
    addCueFields(m_text, "", m_disc.fields);
    for (const PlainTrack& t : m_disc.tracks) addTrack(t);
    return std::move(m_text);
  }

 private:
  void nameFile(size_t file) {
    assert(file < m_disc.files.size());
    if (m_named > file) return;
    m_named = file + 1;
    addLine(m_text, "", "FILE \"" + m_disc.files[file].name + "\" " + m_disc.files[file].type);
  }

  void addTrack(const PlainTrack& t) {
    assert(!t.indices.empty());
    nameFile(t.indices.front().file);
    addLine(m_text, "  ", "TRACK " + twoDigits(t.number) + ' ' + t.mode);
    addCueFields(m_text, "    ", t.fields);
    if (!t.flags.empty()) addLine(m_text, "    ", "FLAGS " + t.flags);
    if (!t.isrc.empty()) addLine(m_text, "    ", "ISRC " + t.isrc);
    if (t.pregap > 0) addLine(m_text, "    ", "PREGAP " + msfText(t.pregap));
    for (const PlainIndex& i : t.indices) {
      nameFile(i.file);
      addLine(m_text, "    ", "INDEX " + twoDigits(i.number) + ' ' + msfText(i.sector));
    }
    if (t.postgap > 0) addLine(m_text, "    ", "POSTGAP " + msfText(t.postgap));
  }

  const PortableDisc& m_disc;
  std::string m_text;
  size_t m_named = 0;  ///< files named so far
};

}  // namespace

std::string cueText(const PortableDisc& disc) {
  return CueWriter(disc).run();
}

}  // namespace velmor::disc
