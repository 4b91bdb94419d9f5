#include "check/report/readers.h"

#include <array>
#include <map>

#include "disc/text/words.h"

namespace velmor::check {

namespace {

constexpr std::array<std::string_view, kReaders> kNames = {
    "cuetools", "libcue",   "libburn", "cdrdao",   "libcdio", "libmirage", "k3b",
    "chdman",   "metaflac", "mpv",     "mednafen", "bchunk",  "shnsplit"};

const std::map<std::string_view, Reader>& programs() {
  static const std::map<std::string_view, Reader> kPrograms = {
      {"CUEPRINT", Reader::kCuetools},   {"CUEBREAKPOINTS", Reader::kCuetools},
      {"CUECONVERT", Reader::kCuetools}, {"CDRSKIN", Reader::kLibburn},
      {"CD-INFO", Reader::kLibcdio},     {"FLAC", Reader::kMetaflac},
      {"SHNTOOL", Reader::kShnsplit}};
  return kPrograms;
}

}  // namespace

std::string_view readerName(Reader reader) {
  return kNames[static_cast<size_t>(reader)];
}

std::optional<Reader> readerByName(std::string_view name) {
  const std::string wanted = disc::upperCase(name);
  for (size_t i = 0; i < kNames.size(); ++i)
    if (disc::upperCase(kNames[i]) == wanted) return static_cast<Reader>(i);
  const auto program = programs().find(wanted);
  if (program == programs().end()) return std::nullopt;
  return program->second;
}

std::string readerNames() {
  std::string all;
  for (const std::string_view name : kNames) {
    if (!all.empty()) all += ", ";
    all += name;
  }
  return all;
}

}  // namespace velmor::check
