// The finish of a render, the accessors, and the end of a sink.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <cstring>

#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

using fake_host::openDescriptors;
using fake_host::Session;
using fake_host::sizeOfFile;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

class Finish : public BoundSession, public testing::Test {
 protected:
  Finish() : m_sink(createSink("disc.cue")) { EXPECT_TRUE(m_sink); }
  Sink m_sink;
};

TEST_F(Finish, AnImageOfWholeSectorsIsNotPadded) {
  for (const int sectors : {1, 2, 75}) {
    Sink sink = createSink("whole.cue");
    sink.writeSignal(588 * sectors);
    sink.finish();
    EXPECT_EQ(sink->GetLength(), sectors / 75.0);
    EXPECT_EQ(sizeOfFile(file("whole.bin")), 2352 * sectors);
  }
}

TEST_F(Finish, AnImageOneFrameOverASectorIsPaddedToTheNext) {
  m_sink.writeSignal(588 * 3 + 1);
  EXPECT_EQ(m_sink.finish(), 1);
  EXPECT_EQ(m_sink->GetLength(), 588 * 4 / 44100.0) << "587 frames were added";
  expectImage(file("disc.bin"), Image().signal(0, 588 * 3 + 1).silence(587));
}

TEST_F(Finish, ASecondTimeChangesNothing) {
  m_sink.writeSignal(600);
  EXPECT_EQ(m_sink.finish(), 1);
  fake_host::writeText(file("disc.cue"), "edited since");
  const size_t calls = host.journal.size();
  EXPECT_EQ(m_sink.finish(), 1);
  EXPECT_EQ(readText(file("disc.cue")), "edited since");
  EXPECT_EQ(sizeOfFile(file("disc.bin")), 2 * 2352);
  EXPECT_EQ(m_sink->GetLength(), 1176 / 44100.0);
  EXPECT_EQ(host.journal.size(), calls) << "the host was asked for its window again";
}

TEST_F(Finish, ClosesBothFiles) {
  m_sink.destroy();
  const int before = openDescriptors();
  Sink sink = createSink("disc.cue");
  EXPECT_EQ(openDescriptors(), before + 2);
  sink.finish();
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(Finish, FramesThatComeLateTouchNothing) {
  // In a process of its own, so that a crash is one failure and not the end of all tests.
  const auto write_late = [this] {
    m_sink.writeSignal(588);
    m_sink.finish();
    const std::string sheet = readText(file("disc.cue"));
    m_sink.writeSignal(588);
    m_sink.destroy();
    const bool same = sizeOfFile(file("disc.bin")) == 2352 && readText(file("disc.cue")) == sheet;
    std::_Exit(same ? 0 : 1);
  };
  EXPECT_EXIT(write_late(), testing::ExitedWithCode(0), "");
}

TEST_F(Finish, WithoutAParentTheHostsMainWindowIsAskedFor) {
  m_sink.finish();
  EXPECT_THAT(host.journal, Contains("GetMainHwnd"));
}

TEST_F(Finish, WithAParentTheHostsMainWindowIsNotAskedFor) {
  int parent = 0;
  m_sink.finish(&parent);
  EXPECT_THAT(host.journal, Not(Contains("GetMainHwnd")));
}

TEST_F(Finish, BurningAfterAnEmptyRenderOpensNoDialog) {
  for (const int flag : {1, -1, 5}) {
    Sink sink = createSink("empty.cue", {.burn_after_render = flag});
    ASSERT_TRUE(sink);
    EXPECT_EQ(sink.finish(), 1);
    EXPECT_THAT(windowing.requests, IsEmpty());
    EXPECT_EQ(sizeOfFile(file("empty.bin")), 0);
    EXPECT_EQ(readText(file("empty.cue")),
              "FILE \"empty.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n    INDEX 01 00:00:00\r\n");
  }
}

TEST_F(Finish, WithoutTheBurnOptionNoDialogOpens) {
  m_sink.writeSignal(588);
  m_sink.finish();
  EXPECT_THAT(windowing.requests, IsEmpty());
}

TEST_F(Finish, TheBurnDialogFindsBothFilesComplete) {
  Sink sink = createSink("burn.cue", {.burn_after_render = 1});
  sink.writeSignal(600);
  bool shown = false;
  windowing.on_modal = [&](fake_host::Window&) {
    shown = true;
    EXPECT_EQ(sizeOfFile(file("burn.bin")), 2 * 2352);
    EXPECT_THAT(readText(file("burn.cue")), testing::EndsWith("INDEX 01 00:00:00\r\n"));
  };
  sink.finish();
  EXPECT_TRUE(shown);
  windowing.requests.clear();
  sink.finish();
  EXPECT_THAT(windowing.requests, IsEmpty()) << "a second finish burns nothing";
}

TEST_F(Finish, WithoutItTheSheetStaysEmptyAndTheImageAsItIs) {
  host.metadata = {{"CUE:DISC_TITLE", "t"}};
  Sink sink = createSink("aborted.cue", {.disc_leadin_ms = 100, .burn_after_render = 1});
  sink.writeSignal(1000);
  sink.destroy();
  EXPECT_EQ(sizeOfFile(file("aborted.cue")), 0);
  expectImage(file("aborted.bin"), Image().silence(4410).toSector().signal(0, 1000));
  EXPECT_THAT(windowing.requests, IsEmpty());
}

TEST_F(Finish, TheEndOfASinkClosesItsFiles) {
  m_sink.destroy();
  const int before = openDescriptors();
  Sink sink = createSink("disc.cue");
  sink.writeSignal(10);
  sink.destroy();
  EXPECT_EQ(openDescriptors(), before);
}

// Accessors.

TEST_F(Finish, TheFileNameIsTheSheets) {
  EXPECT_EQ(m_sink->GetFileName(), file("disc.cue"));
  m_sink.finish();
  EXPECT_EQ(m_sink->GetFileName(), file("disc.cue"));
}

TEST_F(Finish, SizeAndPeaksAreNotTold) {
  m_sink.writeSignal(44100);
  EXPECT_EQ(m_sink->GetFileSize(), 0);
  double peaks[] = {-7.0, -7.0};
  EXPECT_EQ(m_sink->GetLastSecondPeaks(2, peaks), 0);
  EXPECT_EQ(peaks[0], -7.0);
  EXPECT_EQ(peaks[1], -7.0);
  m_sink.finish();
  EXPECT_EQ(m_sink->GetFileSize(), 0);
}

TEST_F(Finish, MidiIsNotWanted) {
  EXPECT_EQ(m_sink->WantMIDI(), 0);
  m_sink->WriteMIDI(nullptr, 100, 44100.0);
  m_sink->GetPeakInfo(nullptr);
  EXPECT_EQ(m_sink->GetLength(), 0.0);
}

TEST_F(Finish, TheRequiredFormatIsThatOfACd) {
  int rate = 0;
  int channels = 0;
  EXPECT_EQ(m_sink->Extended(0x80002, &rate, &channels, nullptr), 1);
  EXPECT_EQ(rate, 44100);
  EXPECT_EQ(channels, 2);
  int bits = 0;
  EXPECT_EQ(m_sink->Extended(0x80005, &bits, nullptr, nullptr), 1);
  EXPECT_EQ(bits, 16);
}

TEST_F(Finish, AQueryWithoutAPlaceForItsAnswerStoresNothing) {
  int value = -1;
  EXPECT_EQ(m_sink->Extended(0x80002, &value, nullptr, nullptr), 0);
  EXPECT_EQ(m_sink->Extended(0x80002, nullptr, &value, nullptr), 0);
  EXPECT_EQ(m_sink->Extended(0x80002, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(m_sink->Extended(0x80005, nullptr, &value, &value), 0);
  EXPECT_EQ(value, -1);
}

TEST_F(Finish, OtherCallsAnswerZeroAndTouchNothing) {
  int values[3] = {-1, -1, -1};
  for (const int call : {0, 1, 0x80000, 0x80003, 0x80004, 0x80006, 0x100, -1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(m_sink->Extended(call, &values[0], &values[1], &values[2]), 0) << call;
  }
  EXPECT_THAT(values, testing::Each(-1));
  EXPECT_EQ(sizeOfFile(file("disc.cue")), 0) << "nothing was finished";
}

// The description.

TEST_F(Finish, TheDescriptionNamesRateAndChannels) {
  char text[64] = {0};
  m_sink->GetOutputInfoString(text, sizeof text);
  EXPECT_STREQ(text, "Audio CD Image 44100Hz 2ch");
  EXPECT_THAT(host.localize_calls,
              testing::ElementsAre(fake_host::LocalizeCall{"Audio CD Image %dHz %dch", "cd", 1}));
}

TEST_F(Finish, TheDescriptionIsTranslatedBeforeItIsFilledIn) {
  host.translations["Audio CD Image %dHz %dch"] = "CD-Abbild, %d Hz, %d Kan\xC3\xA4le";
  char text[64] = {0};
  m_sink->GetOutputInfoString(text, sizeof text);
  EXPECT_STREQ(text, "CD-Abbild, 44100 Hz, 2 Kan\xC3\xA4le");
}

TEST_F(Finish, TheDescriptionKeepsToItsBuffer) {
  const std::string whole = "Audio CD Image 44100Hz 2ch";
  for (int size = 1; size <= 40; ++size) {
    char text[48];
    std::memset(text, 'Z', sizeof text);
    m_sink->GetOutputInfoString(text, size);
    EXPECT_EQ(std::string(text), whole.substr(0, static_cast<size_t>(size) - 1)) << size;
    for (int i = size; i < 48; ++i) ASSERT_EQ(text[i], 'Z') << "byte " << i << " of " << size;
  }
}

TEST_F(Finish, ADescriptionWithoutABufferIsNotWritten) {
  char text[4] = {'Z', 'Z', 'Z', 'Z'};
  m_sink->GetOutputInfoString(text, 0);
  m_sink->GetOutputInfoString(text, -1);
  m_sink->GetOutputInfoString(text, INT_MIN);
  m_sink->GetOutputInfoString(nullptr, 0);
  m_sink->GetOutputInfoString(nullptr, 100);
  EXPECT_THAT(text, testing::Each('Z'));
}

TEST(FinishWithoutTranslation, TheDescriptionIsTheModulesOwn) {
  Session session;
  session.host.withhold("__localizeFunc");
  session.load();
  ASSERT_EQ(session.bind(), 1);
  Sink sink = session.createSink("disc.cue");
  char text[64] = {0};
  sink->GetOutputInfoString(text, sizeof text);
  EXPECT_STREQ(text, "Audio CD Image 44100Hz 2ch");
}

}  // namespace
}  // namespace sink_test
