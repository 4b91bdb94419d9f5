#include "check/image/disc_units.h"
#include "check/portable/portable_disc.h"
#include "check/rules/encoding.h"
#include "check/sheet/command_line.h"

namespace velmor::cdcheck {

namespace {

void addFields(std::string& text, const PlainFields& fields) {
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
  explicit TocWriter(const PortableDisc& disc) : disc_(disc) {}

  std::string run() {
    text_ = "CD_DA\n\n";
    if (!disc_.catalog.empty()) text_ += "CATALOG \"" + disc_.catalog + "\"\n\n";
    if (!empty(disc_.fields)) {
      text_ += "CD_TEXT {\n  LANGUAGE_MAP { 0: EN }\n  LANGUAGE 0 {\n";
      addFields(text_, disc_.fields);
      text_ += "  }\n}\n";
    }
    for (size_t t = 0; t < disc_.tracks.size(); ++t) addTrack(t);
    return std::move(text_);
  }

 private:
  void addTrack(size_t t) {
    const PlainTrack& track = disc_.tracks[t];
    text_ += "\nTRACK AUDIO\n";
    addFlags(track.flags);
    if (!track.isrc.empty()) text_ += "ISRC \"" + track.isrc + "\"\n";
    if (!empty(track.fields)) {
      text_ += "CD_TEXT {\n  LANGUAGE 0 {\n";
      addFields(text_, track.fields);
      text_ += "  }\n}\n";
    }
    addAudio(t);
  }

  void addFlags(const std::string& flags) {
    const auto has = [&](std::string_view flag) { return flags.find(flag) != std::string::npos; };
    if (has("DCP")) text_ += "COPY\n";
    if (has("PRE")) text_ += "PRE_EMPHASIS\n";
    if (has("4CH")) text_ += "FOUR_CHANNEL_AUDIO\n";
  }

  /// cdrdao knows a container by the end of its name alone; by any other it is raw samples, and its
  /// header sounds.
  static void refuseUnknownContainer(const PlainFile& file) {
    const bool known = upperCase(file.name).ends_with(".WAV");
    if (file.type == "AIFF" || (file.type == "WAVE" && !known))
      throw CheckError("cdrdao would play the header of '" + printable(file.name) +
                       "' as sound: make it a WAVE file named .wav for a TOC.");
  }

  /// cdrdao takes raw samples as big-endian; SWAP says that they are not. WAVE files say it
  /// themselves.
  void addAudio(size_t t) {
    const PlainTrack& track = disc_.tracks[t];
    const PlainIndex& first = track.indices.front();
    for (const PlainIndex& i : track.indices)
      if (i.file != first.file || track.mode != "AUDIO")
        throw CheckError("Track " + std::to_string(track.number) +
                         " is not audio in one file, which a TOC for cdrdao cannot say: join the "
                         "files first.");
    const PlainFile& file = disc_.files[first.file];
    refuseUnknownContainer(file);
    const std::string swap = file.type == "BINARY" ? "SWAP " : "";
    if (track.pregap > 0) text_ += "SILENCE " + msfText(track.pregap) + '\n';
    text_ +=
        "FILE \"" + escaped(file.name) + "\" " + swap + msfText(first.sector) + lengthOf(t) + '\n';
    if (track.postgap > 0) text_ += "SILENCE " + msfText(track.postgap) + '\n';
    addIndices(track);
  }

  /// None for the last track of a file: it goes to the file's end, whole sector or not.
  std::string lengthOf(size_t t) const {
    if (t + 1 >= disc_.tracks.size()) return "";
    const PlainIndex& first = disc_.tracks[t].indices.front();
    const PlainIndex& next = disc_.tracks[t + 1].indices.front();
    return next.file == first.file ? ' ' + msfText(next.sector - first.sector) : "";
  }

  void addIndices(const PlainTrack& track) {
    const int64_t begin = track.indices.front().sector;
    int64_t start = begin;
    for (const PlainIndex& i : track.indices) {
      if (i.number == 1) {
        start = i.sector;
        const int64_t gap = start - begin + track.pregap;
        if (gap > 0) text_ += "START " + msfText(gap) + '\n';
      } else if (i.number > 1) {
        text_ += "INDEX " + msfText(i.sector - start) + '\n';
      }
    }
  }

  const PortableDisc& disc_;
  std::string text_;
};

}  // namespace

std::string tocText(const PortableDisc& disc) {
  return TocWriter(disc).run();
}

}  // namespace velmor::cdcheck
