#include "disc/ddp/sheet_flags.h"

#include "disc/text/words.h"

namespace velmor::ddp {

namespace {

struct NamedFlag {
  std::string_view word;
  bool TrackFlags::*flag;
};
constexpr NamedFlag kFlags[] = {{"DCP", &TrackFlags::copy_permitted},
                                {"4CH", &TrackFlags::four_channels},
                                {"PRE", &TrackFlags::pre_emphasis},
                                {"SCMS", &TrackFlags::serial_copies}};

}  // namespace

TrackFlags flagsOf(const disc::Track& track) {
  TrackFlags flags;
  if (!track.flags) return flags;
  for (std::string_view rest = track.flags->bytes; !rest.empty();) {
    const std::string_view word = disc::takeWord(rest);
    for (const NamedFlag& named : kFlags)
      if (word == named.word) flags.*named.flag = true;
  }
  return flags;
}

std::string flagWords(const TrackFlags& flags) {
  std::string words;
  for (const NamedFlag& named : kFlags)
    if (flags.*named.flag) (words += words.empty() ? "" : " ") += named.word;
  return words;
}

}  // namespace velmor::ddp
