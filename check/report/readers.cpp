#include "check/report/readers.h"

#include <array>
#include <map>

#include "check/sheet/command_line.h"

namespace velmor::cdcheck {

namespace {

constexpr std::array<std::string_view, kReaders> kNames = {
    "cuetools", "libcue",   "libburn", "cdrdao",   "libcdio", "libmirage", "k3b",
    "chdman",   "metaflac", "mpv",     "mednafen", "bchunk",  "shnsplit"};

const std::map<std::string_view, Reader>& programs() {
  static const std::map<std::string_view, Reader> kPrograms = {
      {"CUEPRINT", Reader::cuetools},   {"CUEBREAKPOINTS", Reader::cuetools},
      {"CUECONVERT", Reader::cuetools}, {"CDRSKIN", Reader::libburn},
      {"CD-INFO", Reader::libcdio},     {"FLAC", Reader::metaflac},
      {"SHNTOOL", Reader::shnsplit}};
  return kPrograms;
}

using enum Reader;

/// Seen in Debian 12's packages of these programs; tests/cdcheck runs those that are installed.
const std::map<std::string_view, ReaderVerdict>& verdicts() {
  static const std::map<std::string_view, ReaderVerdict> kVerdicts = {
      {"catalog-quoted", {{libcdio, k3b}, {libburn, libmirage}, "the number is lost or cut"}},
      {"isrc-quoted",
       {{libburn, k3b}, {cuetools, libcue, libmirage}, "the code is lost or becomes a text"}},
      {"quote-in-text", {{cdrdao, k3b}, {cuetools, libcue, libcdio}, "the text is lost or cut"}},
      {"backslash-at-end", {{cdrdao}, {cuetools, libcue}, "the tracks that follow are lost"}},
      {"empty-performer", {{cdrdao}, {}, ""}},
      {"empty-text", {{cdrdao}, {}, ""}},
      {"empty-isrc", {{libburn, cdrdao, k3b, metaflac}, {}, ""}},
      {"text-too-long", {{cdrdao, k3b}, {}, ""}},
      {"line-break-in-value",
       {{libburn, libcdio, k3b, mpv, mednafen}, {libmirage}, "the text is cut"}},
      {"carriage-return-alone",
       {{cuetools, libcue, libcdio, chdman, metaflac, mpv, shnsplit},
        {libburn, bchunk},
        "no track is found"}},
      {"no-last-line-end", {{cuetools, libcue, chdman}, {}, ""}},
      {"lower-case-command",
       {{cuetools, libcue, libburn, libcdio, chdman, shnsplit}, {bchunk}, "no track is found"}},
      {"lower-case-file-type", {{libburn, chdman}, {}, ""}},
      {"unknown-flag", {{libburn, cdrdao, libcdio, mednafen}, {}, ""}},
      {"unknown-track-mode",
       {{libburn, cdrdao, libcdio, chdman, mednafen},
        {cuetools, libcue, bchunk},
        "the track is lost"}},
      {"quote-in-file-name", {{cdrdao, libcdio, chdman, mpv, mednafen}, {}, ""}},
      {"line-cut",
       {{libburn, cdrdao, k3b, metaflac},
        {cuetools, libcue, libmirage, mpv},
        "the text, or the track that follows, is lost"}},
      {"minutes-over-99", {{libburn, cdrdao, mednafen}, {libcdio, libmirage}, "the time is wrong"}},
      {"too-many-tracks",
       {{libburn, libcdio, k3b, metaflac, mednafen, chdman}, {cuetools, libcue}, "99 are left"}},
      {"utf8-text",
       {{}, {libburn, cdrdao, libcdio}, "the letters are stored or shown byte by byte"}},
      {"latin1-text", {{libmirage}, {k3b}, "the letters are wrong"}},
      {"byte-order-mark",
       {{libburn, cdrdao, libcdio}, {metaflac, libmirage}, "the first line is lost"}},
      {"isrc-dashes",
       {{libburn, cdrdao}, {cuetools, libcue, libmirage}, "the code keeps its dashes or is lost"}},
      {"isrc-lower-case",
       {{cdrdao, metaflac}, {cuetools, libcue, libburn}, "the code keeps its small letters"}},
      {"catalog-12-digits",
       {{cdrdao, libcdio, k3b, metaflac},
        {cuetools, libburn, libmirage},
        "the number is lost or wrong"}},
      {"repeated-isrc", {{metaflac, cdrdao}, {}, ""}},
      {"image-named-otherwise", {{libcdio}, {}, ""}},
      {"index-past-end", {{libburn, cdrdao, libmirage, chdman, mednafen, shnsplit}, {}, ""}},
      {"image-not-whole-sectors", {{}, {libmirage, chdman, bchunk}, "the last sector is cut off"}},
      {"track-under-4-s", {{}, {cdrdao}, "it warns and goes on"}},
      {"gap-thrown-away",
       {{}, {bchunk}, "what lies between INDEX 00 and INDEX 01 is in no track's file"}},
      {"lead-in-is-track-0", {{}, {shnsplit}, "the lead-in becomes a file of its own, track 00"}},
      {"raw-byte-order", {{}, {cdrdao}, "it takes raw samples as big-endian: give it --swap"}},
  };
  return kVerdicts;
}

}  // namespace

std::string_view readerName(Reader reader) {
  return kNames[static_cast<size_t>(reader)];
}

std::optional<Reader> readerByName(std::string_view name) {
  const std::string wanted = upperCase(name);
  for (size_t i = 0; i < kNames.size(); ++i)
    if (upperCase(kNames[i]) == wanted) return static_cast<Reader>(i);
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

}  // namespace velmor::cdcheck
