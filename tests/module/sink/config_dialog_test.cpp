// The configuration dialog: what it shows of a blob and what it hands back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <ostream>

#include "tests/fake_host/session.h"

namespace {

using fake_host::BoundSession;
using fake_host::makeConfig;
using fake_host::Session;
using fake_host::Settings;
using fake_host::Window;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr int kDiscLeadIn = 1001;
constexpr int kTrackLeadIn = 1002;
constexpr int kTrackMode = 1014;
constexpr int kBurn = 1016;
constexpr int kHashOnly = 1017;
constexpr UINT kUpdateEnabling = 0x5C4;

class ConfigDialog : public testing::Test {
 protected:
  Window& show(const void* blob, int length) {
    m_session.windowing.calls.clear();
    HWND window = m_session.registration().ShowConfig(blob, length, &m_session.windowing.parent);
    EXPECT_NE(window, nullptr);
    return *static_cast<Window*>(window);
  }
  Window& show(const Settings& settings) {
    const SinkConfig config = makeConfig(settings);
    return show(&config, sizeof config);
  }
  static LRESULT send(Window& dialog, UINT message, const void* wparam = nullptr,
                      const void* lparam = nullptr) {
    return fake_host::WindowingLayer::send(dialog, message, reinterpret_cast<WPARAM>(wparam),
                                           reinterpret_cast<LPARAM>(lparam));
  }
  static SinkConfig readBack(Window& dialog) {
    SinkConfig config = {-1, -1, -1, -1, -1, -1};
    EXPECT_EQ(send(dialog, kConfigGetBlob, nullptr, &config), 0);
    return config;
  }
  // The user picks an entry of the track mode combo.
  static void pick(Window& dialog, int selection) {
    dialog.control(kTrackMode)->selection = selection;
    const WPARAM selection_changed = (WPARAM{1} << 16) | kTrackMode;
    EXPECT_EQ(fake_host::WindowingLayer::send(dialog, 0x111, selection_changed, 0), 0);
  }

  BoundSession m_session;
};

TEST_F(ConfigDialog, ShowsTheBlobControlByControl) {
  show({.disc_leadin_ms = 1500,
        .track_leadin_ms = 250,
        .burn_after_render = 1,
        .track_mode = 1,
        .hash_markers_only = 1});
  std::vector<std::string> shown;
  for (const std::string& call : m_session.windowing.calls) {
    if (call.rfind("GetDlgItem(", 0) != 0 && call.rfind("QUELM_", 0) != 0 &&
        call.find("0x5C4") == std::string::npos) {
      shown.push_back(call);
    }
  }
  EXPECT_THAT(
      shown,
      ElementsAre("SetDlgItemInt(1001, 1500, signed)", "SetDlgItemInt(1002, 250, signed)",
                  "CheckDlgButton(1016, 1)", "CheckDlgButton(1017, 1)",
                  "SendMessage(1014, 0x143, 0, \"Markers define new tracks\")",
                  "SendMessage(1014, 0x143, 0, \"Regions define tracks (other areas "
                  "ignored)\")",
                  "SendMessage(1014, 0x143, 0, \"One track\")", "SendMessage(1014, 0x14E, 1, 0)",
                  "SendMessage(1014, 0x147, 0, 0)", "EnableWindow(1017, 0)"));
}

TEST_F(ConfigDialog, TheComboTextsAreTranslatedInTheirSection) {
  m_session.host.translations["One track"] = "Une piste";
  const Window& dialog = show(Settings{});
  EXPECT_THAT(dialog.controls[7]->items,
              ElementsAre("Markers define new tracks",
                          "Regions define tracks (other areas ignored)", "Une piste"));
  using fake_host::LocalizeCall;
  EXPECT_THAT(
      m_session.host.localize_calls,
      ElementsAre(LocalizeCall{"Markers define new tracks", "cd_DLG_155", 0},
                  LocalizeCall{"Regions define tracks (other areas ignored)", "cd_DLG_155", 0},
                  LocalizeCall{"One track", "cd_DLG_155", 0}));
}

TEST(ConfigDialogWithoutTranslation, ShowsItsOwnTexts) {
  Session session;
  session.host.withhold("__localizeFunc");
  session.load();
  ASSERT_EQ(session.bind(), 1);
  const SinkConfig config = makeConfig({});
  auto* dialog =
      static_cast<Window*>(session.registration().ShowConfig(&config, sizeof config, nullptr));
  ASSERT_NE(dialog, nullptr);
  EXPECT_THAT(dialog->control(kTrackMode)->items,
              ElementsAre("Markers define new tracks",
                          "Regions define tracks (other areas ignored)", "One track"));
}

TEST_F(ConfigDialog, ABlobThatIsTooShortShowsTheDefaults) {
  const SinkConfig config = makeConfig({.disc_leadin_ms = 1,
                                        .track_leadin_ms = 2,
                                        .burn_after_render = 1,
                                        .track_mode = 2,
                                        .hash_markers_only = 1});
  for (const int length : {4, 8, 20, 23}) {
    Window& dialog = show(&config, length);
    EXPECT_EQ(dialog.control(kDiscLeadIn)->value, 0) << length;
    EXPECT_EQ(dialog.control(kTrackLeadIn)->value, 0) << length;
    EXPECT_EQ(dialog.control(kBurn)->checked, 0) << length;
    EXPECT_EQ(dialog.control(kHashOnly)->checked, 0) << length;
    EXPECT_EQ(dialog.control(kTrackMode)->selection, 0) << length;
    EXPECT_TRUE(dialog.control(kHashOnly)->enabled) << length;
  }
}

TEST_F(ConfigDialog, ALongerBlobIsReadLikeAWholeOne) {
  unsigned char longer[40] = {0};
  const SinkConfig config = makeConfig({.disc_leadin_ms = 5, .track_mode = 1});
  std::memcpy(longer, &config, sizeof config);
  Window& dialog = show(longer, sizeof longer);
  EXPECT_EQ(dialog.control(kDiscLeadIn)->value, 5);
  EXPECT_EQ(dialog.control(kTrackMode)->selection, 1);
}

TEST_F(ConfigDialog, AModeItDoesNotKnowSelectsNothingAndReadsBackAsMarkers) {
  for (const int mode : {5, 3, -1, INT_MAX, INT_MIN}) {
    Window& dialog = show({.track_mode = mode});
    EXPECT_THAT(m_session.windowing.calls,
                Contains("SendMessage(1014, 0x14E, " + std::to_string(mode) + ", 0)"));
    EXPECT_EQ(dialog.control(kTrackMode)->selection, -1) << mode;
    EXPECT_FALSE(dialog.control(kHashOnly)->enabled) << mode;
    EXPECT_EQ(readBack(dialog).track_mode, 0) << mode;
  }
}

TEST_F(ConfigDialog, ValuesPassThroughAsTheyAre) {
  const Settings settings = {.disc_leadin_ms = -250,
                             .track_leadin_ms = INT_MIN,
                             .burn_after_render = 7,
                             .track_mode = 2,
                             .hash_markers_only = -3};
  Window& dialog = show(settings);
  EXPECT_THAT(m_session.windowing.calls,
              AllOf(Contains("SetDlgItemInt(1001, -250, signed)"),
                    Contains("SetDlgItemInt(1002, -2147483648, signed)"),
                    Contains("CheckDlgButton(1016, 7)"), Contains("CheckDlgButton(1017, -3)")));
  const SinkConfig read = readBack(dialog);
  const SinkConfig written = makeConfig(settings);
  EXPECT_EQ(std::memcmp(&read, &written, sizeof read), 0);
}

TEST_F(ConfigDialog, ANegativeLeadInIsWrittenAsTyped) {
  Window& dialog = show(Settings{});
  dialog.control(kDiscLeadIn)->value = -250;
  dialog.control(kTrackLeadIn)->value = -1;
  EXPECT_EQ(readBack(dialog).disc_leadin_ms, -250);
  EXPECT_EQ(readBack(dialog).track_leadin_ms, -1);
}

TEST_F(ConfigDialog, ReadingBackAsksEveryControlInItsOwnWay) {
  Window& dialog = show(Settings{});
  m_session.windowing.calls.clear();
  readBack(dialog);
  EXPECT_THAT(
      m_session.windowing.calls,
      AllOf(Contains("GetDlgItemInt(1001, signed)"), Contains("GetDlgItemInt(1002, signed)"),
            Contains("IsDlgButtonChecked(1016)"), Contains("IsDlgButtonChecked(1017)"),
            Contains("SendMessage(1014, 0x147, 0, 0)")));
}

TEST_F(ConfigDialog, TheHashBoxIsEnabledInMarkersModeOnly) {
  Window& dialog = show({.hash_markers_only = 1});
  EXPECT_TRUE(dialog.control(kHashOnly)->enabled);
  for (const int selection : {1, 2, -1}) {
    pick(dialog, 0);
    EXPECT_TRUE(dialog.control(kHashOnly)->enabled);
    pick(dialog, selection);
    EXPECT_FALSE(dialog.control(kHashOnly)->enabled) << selection;
    EXPECT_EQ(dialog.control(kHashOnly)->checked, 1) << "disabled, not cleared";
    EXPECT_EQ(readBack(dialog).hash_markers_only, 1) << selection;
  }
}

TEST_F(ConfigDialog, OpeningIsNoSelectionWhateverHasTheFocus) {
  Window& dialog = show(Settings{});
  const SinkConfig config = makeConfig({});
  const struct {
    const void* cfg;
    intptr_t cfg_len;
  } params = {&config, sizeof config};
  const WPARAM selection_changed = (WPARAM{1} << 16) | kTrackMode;
  m_session.windowing.calls.clear();
  send(dialog, 0x110, reinterpret_cast<const void*>(selection_changed), &params);
  EXPECT_THAT(m_session.windowing.calls, AllOf(Contains("SendMessage(1014, 0x14E, 0, 0)"),
                                               Not(Contains("SendMessage(dialog, 0x5C4, 0, 0)"))));
}

TEST_F(ConfigDialog, ASelectionSendsTheDialogItsUpdateMessage) {
  Window& dialog = show(Settings{});
  m_session.windowing.calls.clear();
  pick(dialog, 2);
  EXPECT_THAT(m_session.windowing.calls, Contains("SendMessage(dialog, 0x5C4, 0, 0)"));
}

TEST_F(ConfigDialog, TheUpdateMessageEnablesByTheSelection) {
  Window& dialog = show(Settings{});
  dialog.control(kTrackMode)->selection = 1;
  EXPECT_EQ(send(dialog, kUpdateEnabling), 0);
  EXPECT_FALSE(dialog.control(kHashOnly)->enabled);
  dialog.control(kTrackMode)->selection = 0;
  EXPECT_EQ(send(dialog, kUpdateEnabling), 0);
  EXPECT_TRUE(dialog.control(kHashOnly)->enabled);
}

TEST_F(ConfigDialog, OtherCommandsAreIgnored) {
  Window& dialog = show(Settings{});
  m_session.windowing.calls.clear();
  const WPARAM commands[] = {
      kTrackMode, (2 << 16) | kTrackMode, (1 << 16) | kHashOnly, (1 << 16) | kBurn, 1, 2, 0,
      (1 << 16)};
  for (const WPARAM command : commands) {
    EXPECT_EQ(fake_host::WindowingLayer::send(dialog, 0x111, command, 0), 0) << command;
  }
  EXPECT_THAT(m_session.windowing.calls, IsEmpty());
}

TEST_F(ConfigDialog, OnlyTheLowWordsOfACommandCount) {
  Window& dialog = show(Settings{});
  dialog.control(kTrackMode)->selection = 1;
  const WPARAM command = (WPARAM{5} << 32) | (WPARAM{1} << 16) | kTrackMode;
  fake_host::WindowingLayer::send(dialog, 0x111, command, 0);
  EXPECT_FALSE(dialog.control(kHashOnly)->enabled);
}

TEST_F(ConfigDialog, AskedForTheSizeAloneItWritesNothingElse) {
  Window& dialog = show(Settings{});
  m_session.windowing.calls.clear();
  int size[2] = {-1, -1};
  EXPECT_EQ(send(dialog, kConfigGetBlob, &size[0]), 0);
  EXPECT_EQ(size[0], 24);
  EXPECT_EQ(size[1], -1);
}

TEST_F(ConfigDialog, SizeAndContentsCanBeAskedForTogetherOrNotAtAll) {
  Window& dialog = show({.disc_leadin_ms = 9});
  int size = 0;
  struct {
    SinkConfig config;
    unsigned char behind[8];
  } blob = {};
  std::memset(&blob, 0x5A, sizeof blob);
  EXPECT_EQ(send(dialog, kConfigGetBlob, &size, &blob), 0);
  EXPECT_EQ(size, 24);
  EXPECT_EQ(blob.config.format_code, 0x69736F20);
  EXPECT_EQ(blob.config.disc_leadin_ms, 9);
  EXPECT_THAT(blob.behind, testing::Each(0x5A));
  EXPECT_EQ(send(dialog, kConfigGetBlob), 0);
}

TEST_F(ConfigDialog, TheSampleWidthIsSixteenBits) {
  Window& dialog = show(Settings{});
  int bits = 0;
  EXPECT_EQ(send(dialog, kConfigSampleWidth, &bits), 0);
  EXPECT_EQ(bits, 16);
  bits = -1;
  int other = -1;
  EXPECT_EQ(send(dialog, kConfigSampleWidth, &bits, &other), 0);
  EXPECT_EQ(bits, -1);
  EXPECT_EQ(other, -1);
  EXPECT_EQ(send(dialog, kConfigSampleWidth), 0);
}

TEST_F(ConfigDialog, NoMessageIsClaimed) {
  Window& dialog = show(Settings{});
  m_session.windowing.calls.clear();
  for (UINT message = 0; message < 0x900; ++message) {
    if (message == WM_INITDIALOG) continue;
    EXPECT_EQ(send(dialog, message), 0) << message;
  }
  EXPECT_THAT(m_session.windowing.calls, Not(Contains(testing::HasSubstr("SetDlgItemInt"))));
}

}  // namespace
