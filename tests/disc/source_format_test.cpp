#include "disc/audio/source_format.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <utility>

namespace velmor::disc::test {
namespace {

TEST(SourceFormat, IsNamedForPeople) {
  const std::pair<int, const char*> cases[] = {
      {SF_FORMAT_WAV | SF_FORMAT_PCM_24, "WAV, 24 bit"},
      {SF_FORMAT_WAVEX | SF_FORMAT_PCM_16, "WAV, 16 bit"},
      {SF_FORMAT_AIFF | SF_FORMAT_FLOAT, "AIFF, 32 bit float"},
      {SF_FORMAT_AU | SF_FORMAT_DOUBLE, "AU, 64 bit float"},
      {SF_FORMAT_W64 | SF_FORMAT_PCM_32, "W64, 32 bit"},
      {SF_FORMAT_RF64 | SF_FORMAT_PCM_U8, "RF64, 8 bit"},
      {SF_FORMAT_CAF | SF_FORMAT_ALAC_20, "CAF, 20 bit"},
      {SF_FORMAT_FLAC | SF_FORMAT_PCM_S8, "FLAC, 8 bit"},
      {SF_FORMAT_OGG | SF_FORMAT_VORBIS, "Ogg, Vorbis"},
      {SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III, "MPEG, layer III (MP3)"},
      {SF_FORMAT_RAW | SF_FORMAT_PCM_16, "CD image, 16 bit"},
  };
  for (const auto& [format, name] : cases) EXPECT_EQ(formatName(format), name);
}

}  // namespace
}  // namespace velmor::disc::test
