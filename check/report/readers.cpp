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

using enum Reader;

/// Seen in Debian 12's packages of these programs; tests/check runs those that are installed.
const std::map<std::string_view, ReaderVerdict>& verdicts() {
  static const std::map<std::string_view, ReaderVerdict> kVerdicts = {
      {"catalog-quoted", {{kLibcdio, k3b}, {kLibburn, kLibmirage}, "the number is lost or cut"}},
      {"isrc-quoted",
       {{kLibburn, k3b}, {kCuetools, kLibcue, kLibmirage}, "the code is lost or becomes a text"}},
      {"quote-in-text",
       {{kCdrdao, k3b}, {kCuetools, kLibcue, kLibcdio}, "the text is lost or cut"}},
      {"backslash-at-end", {{kCdrdao}, {kCuetools, kLibcue}, "the tracks that follow are lost"}},
      {"empty-performer", {{kCdrdao}, {}, ""}},
      {"empty-text", {{kCdrdao}, {}, ""}},
      {"empty-isrc", {{kLibburn, kCdrdao, k3b, kMetaflac}, {}, ""}},
      {"text-too-long", {{kCdrdao, k3b}, {}, ""}},
      {"line-break-in-value",
       {{kLibburn, kLibcdio, k3b, kMpv, kMednafen}, {kLibmirage}, "the text is cut"}},
      {"carriage-return-alone",
       {{kCuetools, kLibcue, kLibcdio, kChdman, kMetaflac, kMpv, kShnsplit},
        {kLibburn, kBchunk},
        "no track is found"}},
      {"no-last-line-end", {{kCuetools, kLibcue, kChdman}, {}, ""}},
      {"lower-case-command",
       {{kCuetools, kLibcue, kLibburn, kLibcdio, kChdman, kShnsplit},
        {kBchunk},
        "no track is found"}},
      {"lower-case-file-type", {{kLibburn, kChdman}, {}, ""}},
      {"unknown-flag", {{kLibburn, kCdrdao, kLibcdio, kMednafen}, {}, ""}},
      {"unknown-track-mode",
       {{kLibburn, kCdrdao, kLibcdio, kChdman, kMednafen},
        {kCuetools, kLibcue, kBchunk},
        "the track is lost"}},
      {"quote-in-file-name", {{kCdrdao, kLibcdio, kChdman, kMpv, kMednafen}, {}, ""}},
      {"line-cut",
       {{kLibburn, kCdrdao, k3b, kMetaflac},
        {kCuetools, kLibcue, kLibmirage, kMpv},
        "the text, or the track that follows, is lost"}},
      {"minutes-over-99",
       {{kLibburn, kCdrdao, kMednafen}, {kLibcdio, kLibmirage}, "the time is wrong"}},
      {"too-many-tracks",
       {{kLibburn, kLibcdio, k3b, kMetaflac, kMednafen, kChdman},
        {kCuetools, kLibcue},
        "99 are left"}},
      {"utf8-text",
       {{}, {kLibburn, kCdrdao, kLibcdio}, "the letters are stored or shown byte by byte"}},
      {"latin1-text", {{kLibmirage}, {k3b}, "the letters are wrong"}},
      {"byte-order-mark",
       {{kLibburn, kCdrdao, kLibcdio}, {kMetaflac, kLibmirage}, "the first line is lost"}},
      {"isrc-dashes",
       {{kLibburn, kCdrdao},
        {kCuetools, kLibcue, kLibmirage},
        "the code keeps its dashes or is lost"}},
      {"isrc-lower-case",
       {{kCdrdao, kMetaflac}, {kCuetools, kLibcue, kLibburn}, "the code keeps its small letters"}},
      {"catalog-12-digits",
       {{kCdrdao, kLibcdio, k3b, kMetaflac},
        {kCuetools, kLibburn, kLibmirage},
        "the number is lost or wrong"}},
      {"repeated-isrc", {{kMetaflac, kCdrdao}, {}, ""}},
      {"flac-as-wave",
       {{kLibburn, kCdrdao, kLibcdio, kChdman},
        {kBchunk},
        "the compressed bytes are cut up as if they were samples"}},
      {"image-named-otherwise", {{kLibcdio}, {}, ""}},
      {"index-past-end", {{kLibburn, kCdrdao, kLibmirage, kChdman, kMednafen, kShnsplit}, {}, ""}},
      {"image-not-whole-sectors",
       {{}, {kLibmirage, kChdman, kBchunk}, "the last sector is cut off"}},
      {"track-under-4-s", {{}, {kCdrdao}, "it warns and goes on"}},
      {"gap-thrown-away",
       {{}, {kBchunk}, "what lies between INDEX 00 and INDEX 01 is in no track's file"}},
      {"lead-in-is-track-0", {{}, {kShnsplit}, "the lead-in becomes a file of its own, track 00"}},
      {"raw-byte-order", {{}, {kCdrdao}, "it takes raw samples as big-endian: give it --swap"}},
  };
  return kVerdicts;
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

const ReaderVerdict* readerVerdict(std::string_view rule) {
  const auto found = verdicts().find(rule);
  return found == verdicts().end() ? nullptr : &found->second;
}

}  // namespace velmor::check
