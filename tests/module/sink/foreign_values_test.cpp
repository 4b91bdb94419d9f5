// What the sink's parts make of values that the other parts keep from them, and what it keeps that
// the other parts do not read.
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "abi/host_functions.h"
#include "module/sink/config_dialog.h"
#include "module/sink/cue_sheet.h"
#include "module/sink/pcm_sink_iso.h"
#include "module/sink/project_marks.h"
#include "tests/fake_host/files.h"
#include "tests/module/support/private_field.h"

namespace support_test {

struct SilenceSeconds {
  friend constexpr auto fieldOf(SilenceSeconds);
};
template struct Field<&PCM_sink_iso::m_silence_sec, SilenceSeconds>;

}  // namespace support_test

namespace sink_test {
namespace {

int enumNothing(int, bool*, double*, double*, const char**, int*) {
  return 0;
}

TEST(Settings, OfAnotherFormatReadAsAllDefaults) {
  const SinkConfig foreign{0x20767761, 1, 2, 3, 1, 1};
  const SinkConfig read = readSinkConfig(&foreign, sizeof(foreign));
  EXPECT_EQ(read.disc_leadin_ms, 0);
  EXPECT_EQ(read.track_leadin_ms, 0);
  EXPECT_EQ(read.burn_after_render, 0);
  EXPECT_EQ(read.track_mode, 0);
  EXPECT_EQ(read.hash_markers_only, 0);
}

TEST(DiscLines, AnEmptyFieldHasNone) {
  const fake_host::TempFolder folder;
  EnumProjectMarkers = enumNothing;
  YDK_StringKeyedArray<char*> metadata(false, freecharptr);
  metadata.AppendUnsorted("TITLE", strdup(""));
  metadata.AppendUnsorted("PERFORMER", strdup("Somebody"));
  metadata.SortKeys();
  const YDK_TypedBuf<double> none;
  YDK_PtrList<YDK_String> titles;
  {
    YDK_FileWrite out(folder.file("disc.cue").c_str(), 0, 8192, 16, 16, false, false);
    writeCueSheetText({metadata, "disc.bin", none, none, none, 0, 0, 0.0, 0.0}, titles, out);
  }
  EXPECT_EQ(fake_host::readText(folder.file("disc.cue")),
            "PERFORMER \"Somebody\"\r\nFILE \"disc.bin\" BINARY\r\n");
}

int enumRegionWithoutEnd(int idx, bool* isrgn, double* pos, double* rgnend, const char** name,
                         int*) {
  if (idx > 0) return 0;
  *isrgn = true;
  *pos = 1.0;
  *rgnend = std::numeric_limits<double>::quiet_NaN();
  *name = "";
  return 1;
}

TEST(Marks, ARegionWhoseEndIsNoNumberIsOverBeforeEverything) {
  EnumProjectMarkers = enumRegionWithoutEnd;
  int index = 0;
  EXPECT_EQ(markAt(index, 0.0).end, -std::numeric_limits<double>::infinity());
}

int enumTwoTracks(int idx, bool* isrgn, double* pos, double*, const char** name, int*) {
  if (idx > 1) return 0;
  *isrgn = false;
  *pos = idx * 5.0;
  *name = "track";
  return idx + 1;
}

TEST(SilenceSoFar, IsThatOfAllLeadInsWithoutTheirPadding) {
  const fake_host::TempFolder folder;
  EnumProjectMarkers = enumTwoTracks;
  SinkConfig config{static_cast<int32_t>(kIsoFormatCode), 700, 1250, 0, kTracksFromMarkers, 0};
  PCM_sink_iso sink(folder.file("disc.cue").c_str(), &config, sizeof(config), 2, 44100, false);
  ASSERT_TRUE(sink.isUsable());
  const auto silence = [&sink] { return sink.*fieldOf(support_test::SilenceSeconds()); };
  EXPECT_EQ(silence(), 0.7);
  std::vector<double> second(44100, 0.25);
  double* channels[] = {second.data(), second.data()};
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(silence(), 0.7) << i;
    sink.WriteDoubles(channels, 44100, 2, 0, 1);
  }
  EXPECT_EQ(silence(), 0.7 + 1.25);
}

}  // namespace
}  // namespace sink_test
