// The finish of a render, the accessors, and the end of a sink.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <cstring>

#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

using fake_host::OpenDescriptors;
using fake_host::Session;
using fake_host::SizeOfFile;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

class Finish : public BoundSession, public testing::Test {
 protected:
  Finish() : sink_(CreateSink("disc.cue")) { EXPECT_TRUE(sink_); }
  Sink sink_;
};

TEST_F(Finish, AnImageOfWholeSectorsIsNotPadded) {
  for (const int sectors : {1, 2, 75}) {
    Sink sink = CreateSink("whole.cue");
    sink.WriteSignal(588 * sectors);
    sink.Finish();
    EXPECT_EQ(sink->GetLength(), sectors / 75.0);
    EXPECT_EQ(SizeOfFile(File("whole.bin")), 2352 * sectors);
  }
}

TEST_F(Finish, AnImageOneFrameOverASectorIsPaddedToTheNext) {
  sink_.WriteSignal(588 * 3 + 1);
  EXPECT_EQ(sink_.Finish(), 1);
  EXPECT_EQ(sink_->GetLength(), 588 * 4 / 44100.0) << "587 frames were added";
  ExpectImage(File("disc.bin"), Image().Signal(0, 588 * 3 + 1).Silence(587));
}

TEST_F(Finish, ASecondTimeChangesNothing) {
  sink_.WriteSignal(600);
  EXPECT_EQ(sink_.Finish(), 1);
  fake_host::WriteText(File("disc.cue"), "edited since");
  const size_t calls = host.journal.size();
  EXPECT_EQ(sink_.Finish(), 1);
  EXPECT_EQ(ReadText(File("disc.cue")), "edited since");
  EXPECT_EQ(SizeOfFile(File("disc.bin")), 2 * 2352);
  EXPECT_EQ(sink_->GetLength(), 1176 / 44100.0);
  EXPECT_EQ(host.journal.size(), calls) << "the host was asked for its window again";
}

TEST_F(Finish, ClosesBothFiles) {
  sink_.Delete();
  const int before = OpenDescriptors();
  Sink sink = CreateSink("disc.cue");
  EXPECT_EQ(OpenDescriptors(), before + 2);
  sink.Finish();
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(Finish, FramesThatComeLateTouchNothing) {
  // In a process of its own, so that a crash is one failure and not the end of all tests.
  const auto write_late = [this] {
    sink_.WriteSignal(588);
    sink_.Finish();
    const std::string sheet = ReadText(File("disc.cue"));
    sink_.WriteSignal(588);
    sink_.Delete();
    const bool same = SizeOfFile(File("disc.bin")) == 2352 && ReadText(File("disc.cue")) == sheet;
    std::_Exit(same ? 0 : 1);
  };
  EXPECT_EXIT(write_late(), testing::ExitedWithCode(0), "");
}

TEST_F(Finish, WithoutAParentTheHostsMainWindowIsAskedFor) {
  sink_.Finish();
  EXPECT_THAT(host.journal, Contains("GetMainHwnd"));
}

TEST_F(Finish, WithAParentTheHostsMainWindowIsNotAskedFor) {
  int parent = 0;
  sink_.Finish(&parent);
  EXPECT_THAT(host.journal, Not(Contains("GetMainHwnd")));
}

TEST_F(Finish, BurningAfterAnEmptyRenderOpensNoDialog) {
  for (const int flag : {1, -1, 5}) {
    Sink sink = CreateSink("empty.cue", {.burn_after_render = flag});
    ASSERT_TRUE(sink);
    EXPECT_EQ(sink.Finish(), 1);
    EXPECT_THAT(windowing.requests, IsEmpty());
    EXPECT_EQ(SizeOfFile(File("empty.bin")), 0);
    EXPECT_EQ(ReadText(File("empty.cue")),
              "FILE \"empty.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n    INDEX 01 00:00:00\r\n");
  }
}

TEST_F(Finish, WithoutTheBurnOptionNoDialogOpens) {
  sink_.WriteSignal(588);
  sink_.Finish();
  EXPECT_THAT(windowing.requests, IsEmpty());
}

TEST_F(Finish, TheBurnDialogFindsBothFilesComplete) {
  Sink sink = CreateSink("burn.cue", {.burn_after_render = 1});
  sink.WriteSignal(600);
  bool shown = false;
  windowing.on_modal = [&](fake_host::Window&) {
    shown = true;
    EXPECT_EQ(SizeOfFile(File("burn.bin")), 2 * 2352);
    EXPECT_THAT(ReadText(File("burn.cue")), testing::EndsWith("INDEX 01 00:00:00\r\n"));
  };
  sink.Finish();
  EXPECT_TRUE(shown);
  windowing.requests.clear();
  sink.Finish();
  EXPECT_THAT(windowing.requests, IsEmpty()) << "a second finish burns nothing";
}

TEST_F(Finish, WithoutItTheSheetStaysEmptyAndTheImageAsItIs) {
  host.metadata = {{"CUE:DISC_TITLE", "t"}};
  Sink sink = CreateSink("aborted.cue", {.disc_leadin_ms = 100, .burn_after_render = 1});
  sink.WriteSignal(1000);
  sink.Delete();
  EXPECT_EQ(SizeOfFile(File("aborted.cue")), 0);
  ExpectImage(File("aborted.bin"), Image().Silence(4410).ToSector().Signal(0, 1000));
  EXPECT_THAT(windowing.requests, IsEmpty());
}

TEST_F(Finish, TheEndOfASinkClosesItsFiles) {
  sink_.Delete();
  const int before = OpenDescriptors();
  Sink sink = CreateSink("disc.cue");
  sink.WriteSignal(10);
  sink.Delete();
  EXPECT_EQ(OpenDescriptors(), before);
}

// Accessors.

TEST_F(Finish, TheFileNameIsTheSheets) {
  EXPECT_EQ(sink_->GetFileName(), File("disc.cue"));
  sink_.Finish();
  EXPECT_EQ(sink_->GetFileName(), File("disc.cue"));
}

TEST_F(Finish, SizeAndPeaksAreNotTold) {
  sink_.WriteSignal(44100);
  EXPECT_EQ(sink_->GetFileSize(), 0);
  double peaks[] = {-7.0, -7.0};
  EXPECT_EQ(sink_->GetLastSecondPeaks(2, peaks), 0);
  EXPECT_EQ(peaks[0], -7.0);
  EXPECT_EQ(peaks[1], -7.0);
  sink_.Finish();
  EXPECT_EQ(sink_->GetFileSize(), 0);
}

TEST_F(Finish, MidiIsNotWanted) {
  EXPECT_EQ(sink_->WantMIDI(), 0);
  sink_->WriteMIDI(nullptr, 100, 44100.0);
  sink_->GetPeakInfo(nullptr);
  EXPECT_EQ(sink_->GetLength(), 0.0);
}

TEST_F(Finish, TheRequiredFormatIsThatOfACd) {
  int rate = 0;
  int channels = 0;
  EXPECT_EQ(sink_->Extended(0x80002, &rate, &channels, nullptr), 1);
  EXPECT_EQ(rate, 44100);
  EXPECT_EQ(channels, 2);
  int bits = 0;
  EXPECT_EQ(sink_->Extended(0x80005, &bits, nullptr, nullptr), 1);
  EXPECT_EQ(bits, 16);
}

TEST_F(Finish, AQueryWithoutAPlaceForItsAnswerStoresNothing) {
  int value = -1;
  EXPECT_EQ(sink_->Extended(0x80002, &value, nullptr, nullptr), 0);
  EXPECT_EQ(sink_->Extended(0x80002, nullptr, &value, nullptr), 0);
  EXPECT_EQ(sink_->Extended(0x80002, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(sink_->Extended(0x80005, nullptr, &value, &value), 0);
  EXPECT_EQ(value, -1);
}

TEST_F(Finish, OtherCallsAnswerZeroAndTouchNothing) {
  int values[3] = {-1, -1, -1};
  for (const int call : {0, 1, 0x80000, 0x80003, 0x80004, 0x80006, 0x100, -1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(sink_->Extended(call, &values[0], &values[1], &values[2]), 0) << call;
  }
  EXPECT_THAT(values, testing::Each(-1));
  EXPECT_EQ(SizeOfFile(File("disc.cue")), 0) << "nothing was finished";
}

// The description.

TEST_F(Finish, TheDescriptionNamesRateAndChannels) {
  char text[64] = {0};
  sink_->GetOutputInfoString(text, sizeof text);
  EXPECT_STREQ(text, "Audio CD Image 44100Hz 2ch");
  EXPECT_THAT(host.localize_calls,
              testing::ElementsAre(fake_host::LocalizeCall{"Audio CD Image %dHz %dch", "cd", 1}));
}

TEST_F(Finish, TheDescriptionIsTranslatedBeforeItIsFilledIn) {
  host.translations["Audio CD Image %dHz %dch"] = "CD-Abbild, %d Hz, %d Kan\xC3\xA4le";
  char text[64] = {0};
  sink_->GetOutputInfoString(text, sizeof text);
  EXPECT_STREQ(text, "CD-Abbild, 44100 Hz, 2 Kan\xC3\xA4le");
}

TEST_F(Finish, TheDescriptionKeepsToItsBuffer) {
  const std::string whole = "Audio CD Image 44100Hz 2ch";
  for (int size = 1; size <= 40; ++size) {
    char text[48];
    std::memset(text, 'Z', sizeof text);
    sink_->GetOutputInfoString(text, size);
    EXPECT_EQ(std::string(text), whole.substr(0, static_cast<size_t>(size) - 1)) << size;
    for (int i = size; i < 48; ++i) ASSERT_EQ(text[i], 'Z') << "byte " << i << " of " << size;
  }
}

TEST_F(Finish, ADescriptionWithoutABufferIsNotWritten) {
  char text[4] = {'Z', 'Z', 'Z', 'Z'};
  sink_->GetOutputInfoString(text, 0);
  sink_->GetOutputInfoString(text, -1);
  sink_->GetOutputInfoString(text, INT_MIN);
  sink_->GetOutputInfoString(nullptr, 0);
  sink_->GetOutputInfoString(nullptr, 100);
  EXPECT_THAT(text, testing::Each('Z'));
}

TEST(FinishWithoutTranslation, TheDescriptionIsTheModulesOwn) {
  Session session;
  session.host.Withhold("__localizeFunc");
  session.Load();
  ASSERT_EQ(session.Bind(), 1);
  Sink sink = session.CreateSink("disc.cue");
  char text[64] = {0};
  sink->GetOutputInfoString(text, sizeof text);
  EXPECT_STREQ(text, "Audio CD Image 44100Hz 2ch");
}

}  // namespace
}  // namespace sink_test
