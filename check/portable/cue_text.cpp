#include "check/image/disc_units.h"
#include "check/portable/portable_disc.h"

namespace velmor::cdcheck {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

std::string twoDigits(int number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

void addLine(std::string& text, std::string_view indent, const std::string& line) {
  text += indent;
  text += line;
  text += kLineEnd;
}

void addFields(std::string& text, std::string_view indent, const PlainFields& fields) {
  if (!fields.title.empty()) addLine(text, indent, "TITLE \"" + fields.title + '"');
  if (!fields.performer.empty()) addLine(text, indent, "PERFORMER \"" + fields.performer + '"');
  if (!fields.songwriter.empty()) addLine(text, indent, "SONGWRITER \"" + fields.songwriter + '"');
}

class CueWriter {
 public:
  explicit CueWriter(const PortableDisc& disc) : disc_(disc) {}

  std::string run() {
    if (!disc_.catalog.empty()) addLine(text_, "", "CATALOG " + disc_.catalog);
    addFields(text_, "", disc_.fields);
    for (const PlainTrack& t : disc_.tracks) addTrack(t);
    return std::move(text_);
  }

 private:
  void nameFile(size_t file) {
    if (named_ > file) return;
    named_ = file + 1;
    addLine(text_, "", "FILE \"" + disc_.files[file].name + "\" " + disc_.files[file].type);
  }

  void addTrack(const PlainTrack& t) {
    nameFile(t.indices.front().file);
    addLine(text_, "  ", "TRACK " + twoDigits(t.number) + ' ' + t.mode);
    addFields(text_, "    ", t.fields);
    if (!t.flags.empty()) addLine(text_, "    ", "FLAGS " + t.flags);
    if (!t.isrc.empty()) addLine(text_, "    ", "ISRC " + t.isrc);
    if (t.pregap > 0) addLine(text_, "    ", "PREGAP " + msfText(t.pregap));
    for (const PlainIndex& i : t.indices) {
      nameFile(i.file);
      addLine(text_, "    ", "INDEX " + twoDigits(i.number) + ' ' + msfText(i.sector));
    }
    if (t.postgap > 0) addLine(text_, "    ", "POSTGAP " + msfText(t.postgap));
  }

  const PortableDisc& disc_;
  std::string text_;
  size_t named_ = 0;  ///< files named so far
};

}  // namespace

std::string cueText(const PortableDisc& disc) {
  return CueWriter(disc).run();
}

}  // namespace velmor::cdcheck
