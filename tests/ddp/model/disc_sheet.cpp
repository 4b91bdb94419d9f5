#include "tests/ddp/model/disc_sheet.h"

#include <cstdio>

namespace ddp_model {
namespace {

constexpr std::array<const char*, 6> kCommands = {"TITLE",    "PERFORMER", "SONGWRITER",
                                                  "COMPOSER", "ARRANGER",  "MESSAGE"};

std::string spelled(const std::string& text) {
  if (text.size() % 2 != 0) return text;
  std::string utf8;
  for (const char letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    if (code < 0x80) {
      utf8 += letter;
    } else {
      utf8 += static_cast<char>(0xC0 | code >> 6);
      utf8 += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return utf8;
}

std::string textLines(const Texts& texts) {
  std::string lines;
  for (size_t kind = 0; kind < texts.size(); ++kind)
    if (!texts[kind].empty())
      lines += std::string(kCommands[kind]) + " \"" + spelled(texts[kind]) + "\"\n";
  return lines;
}

std::string flagsLine(const ModelTrack& track) {
  std::string flags;
  if (track.copies_permitted) flags += " DCP";
  if (track.four_channels) flags += " 4CH";
  if (track.pre_emphasis) flags += " PRE";
  if (track.serial_copies) flags += " SCMS";
  return flags.empty() ? flags : "FLAGS" + flags + '\n';
}

std::string indexLine(const ModelIndex& index) {
  std::array<char, 64> line{};
  const auto sector = static_cast<int>(index.sector);
  std::snprintf(line.data(), line.size(), "INDEX %02d %02d:%02d:%02d\n", index.number,
                sector / 4500, sector % 4500 / 75, sector % 75);
  return line.data();
}

std::string trackLines(const ModelTrack& track, size_t number) {
  std::string lines = (number < 10 ? "TRACK 0" : "TRACK ") + std::to_string(number) + " AUDIO\n";
  lines += textLines(track.texts) + flagsLine(track);
  if (!track.isrc.empty()) lines += "ISRC " + track.isrc + '\n';
  for (const ModelIndex& index : track.indices) lines += indexLine(index);
  return lines;
}

}  // namespace

std::string sheetOf(const ModelDisc& disc, const std::string& image) {
  std::string lines;
  if (!disc.master_id.empty()) lines += "REM MASTER_ID \"" + disc.master_id + "\"\n";
  if (!disc.catalogue.empty()) lines += "CATALOG " + disc.catalogue + '\n';
  lines += textLines(disc.texts) + "FILE \"" + image + "\" BINARY\n";
  for (size_t t = 0; t < disc.tracks.size(); ++t) lines += trackLines(disc.tracks[t], t + 1);
  return lines;
}

}  // namespace ddp_model
