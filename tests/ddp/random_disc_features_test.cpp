// That the random discs have among them what the comparison of two writers is to go over.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/ddp/model/random_disc.h"

namespace velmor::ddp::test {
namespace {

using ddp_model::ModelDisc;
using ddp_model::ModelTrack;
using ddp_model::Texts;

constexpr std::ptrdiff_t kFewest = 5;  ///< discs with a feature, in a thousand

bool anyTrack(const ModelDisc& disc, bool (*has)(const ModelTrack&)) {
  return std::any_of(disc.tracks.begin(), disc.tracks.end(), has);
}
bool anyText(const ModelDisc& disc, bool (*has)(const std::string&)) {
  const auto in = [has](const Texts& texts) {
    return std::any_of(texts.begin(), texts.end(), has);
  };
  return in(disc.texts) || std::any_of(disc.tracks.begin(), disc.tracks.end(),
                                       [in](const ModelTrack& track) { return in(track.texts); });
}
bool isForeign(const std::string& text) {
  return std::any_of(text.begin(), text.end(),
                     [](char letter) { return static_cast<unsigned char>(letter) >= 0x80; });
}
bool isSet(const std::string& text) {
  return !text.empty();
}
bool hasPregap(const ModelTrack& track) {
  return track.indices.front().number == 0;
}

struct Feature {
  const char* name;
  bool (*has)(const ModelDisc&);
};

const Feature kFeatures[] = {
    {"one track", [](const ModelDisc& disc) { return disc.tracks.size() == 1; }},
    {"99 tracks", [](const ModelDisc& disc) { return disc.tracks.size() == 99; }},
    {"a catalogue number", [](const ModelDisc& disc) { return isSet(disc.catalogue); }},
    {"no catalogue number", [](const ModelDisc& disc) { return disc.catalogue.empty(); }},
    {"the longest master identifier",
     [](const ModelDisc& disc) { return disc.master_id.size() == 48; }},
    {"no text", [](const ModelDisc& disc) { return !anyText(disc, isSet); }},
    {"texts of tracks alone",
     [](const ModelDisc& disc) {
       return std::none_of(disc.texts.begin(), disc.texts.end(), isSet) && anyText(disc, isSet);
     }},
    {"letters beyond ASCII", [](const ModelDisc& disc) { return anyText(disc, isForeign); }},
    {"a text whose packs lie further in than they can say",
     [](const ModelDisc& disc) {
       return anyText(disc, [](const std::string& text) { return text.size() > 30; });
     }},
    {"as many packs as there can be",
     [](const ModelDisc& disc) { return ddp_model::packCount(disc) == 256; }},
    {"two seconds of pause in the image",
     [](const ModelDisc& disc) { return hasPregap(disc.tracks[0]); }},
    {"no pause in the image", [](const ModelDisc& disc) { return !hasPregap(disc.tracks[0]); }},
    {"audio in the pause before track 1",
     [](const ModelDisc& disc) {
       return hasPregap(disc.tracks[0]) && disc.tracks[0].indices[1].sector > 150;
     }},
    {"audio before a track 1 without a pause",
     [](const ModelDisc& disc) {
       return !hasPregap(disc.tracks[0]) && disc.tracks[0].indices[0].sector > 0;
     }},
    {"a pause before track 1 of four digits",
     [](const ModelDisc& disc) {
       return hasPregap(disc.tracks[0]) && disc.tracks[0].indices[1].sector > 999;
     }},
    {"a pregap of a later track",
     [](const ModelDisc& disc) {
       return std::any_of(disc.tracks.begin() + 1, disc.tracks.end(), hasPregap);
     }},
    {"an ISRC on a track with a pregap",
     [](const ModelDisc& disc) {
       return anyTrack(disc, [](const ModelTrack& t) { return hasPregap(t) && isSet(t.isrc); });
     }},
    {"an ISRC on a track without a pregap",
     [](const ModelDisc& disc) {
       return anyTrack(disc, [](const ModelTrack& t) { return !hasPregap(t) && isSet(t.isrc); });
     }},
    {"an index 02",
     [](const ModelDisc& disc) {
       return anyTrack(disc, [](const ModelTrack& t) { return t.indices.back().number > 1; });
     }},
    {"an index 99",
     [](const ModelDisc& disc) {
       return anyTrack(disc, [](const ModelTrack& t) { return t.indices.back().number == 99; });
     }},
    {"a last sector that is not whole",
     [](const ModelDisc& disc) { return disc.image_bytes % 2352 != 0; }},
    {"more than 80 minutes",
     [](const ModelDisc& disc) { return disc.image_bytes > int64_t{80} * 60 * 75 * 2352; }},
};

TEST(RandomDiscFeatures, AreAllAmongTheDiscsOfTheComparison) {
  std::vector<ModelDisc> discs;
  for (unsigned number = 0; number < ddp_model::kRandomDiscs; ++number)
    discs.push_back(ddp_model::randomDisc(number));
  for (const Feature& feature : kFeatures)
    EXPECT_GE(std::count_if(discs.begin(), discs.end(), feature.has), kFewest) << feature.name;
  for (size_t kind = 0; kind < Texts{}.size(); ++kind)
    EXPECT_GE(std::count_if(discs.begin(), discs.end(),
                            [kind](const ModelDisc& disc) { return isSet(disc.texts[kind]); }),
              kFewest)
        << "texts of kind " << kind;
}

TEST(RandomDiscFeatures, AreAllTwelveCombinationsOfATracksFlags) {
  std::set<std::array<bool, 4>> flags;
  for (unsigned number = 0; number < ddp_model::kRandomDiscs; ++number)
    for (const ModelTrack& track : ddp_model::randomDisc(number).tracks)
      flags.insert(
          {track.copies_permitted, track.four_channels, track.pre_emphasis, track.serial_copies});
  EXPECT_EQ(flags.size(), 12U);
}

}  // namespace
}  // namespace velmor::ddp::test
