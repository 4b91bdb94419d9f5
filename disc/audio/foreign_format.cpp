#include "disc/audio/foreign_format.h"

#include <filesystem>
#include <string_view>

#include "disc/text/phrases.h"

namespace velmor::disc {
namespace {

using std::string_view_literals::operator""sv;

struct Kind {
  int64_t at;  ///< offset of the bytes that tell it
  std::string_view magic;
  const char* name;
};

constexpr Kind kKinds[] = {
    {4, "ftyp"sv, "an MPEG-4 file (M4A: AAC or Apple Lossless)"},
    {0, "wvpk"sv, "a WavPack file"},
    {0, "MAC "sv, "a Monkey's Audio file"},
    {0, "MPCK"sv, "a Musepack file"},
    {0, "MP+"sv, "a Musepack file"},
    {0, "TTA1"sv, "a True Audio file"},
    {0, "tBaK"sv, "a TAK file"},
    {0, "DSD "sv, "a DSD file"},
    {0, "\x30\x26\xb2\x75"sv, "a Windows Media file"},
    {0, "\x1a\x45\xdf\xa3"sv, "a Matroska or WebM file"},
    {0, "ADIF"sv, "an AAC file"},
    {0, "\xff\xf1"sv, "an AAC file"},
    {0, "\xff\xf9"sv, "an AAC file"},
};

}  // namespace

std::string foreignFormat(const FileBytes& file, const std::string& path) {
  for (const Kind& kind : kKinds) {
    if (!file.has(kind.at, kind.magic)) continue;
    const std::string wav = std::filesystem::path(path).replace_extension(".wav").string();
    // Floating point takes all that a lossy format has, and whole numbers of 24 bits too.
    return std::string("is ") + kind.name +
           ", which is not read here; decode it first: ffmpeg -i " + inQuotes(path) +
           " -c:a pcm_f32le " + inQuotes(wav);
  }
  return {};
}

}  // namespace velmor::disc
