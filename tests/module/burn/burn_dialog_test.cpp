// The burn dialog of the loaded module, used as a person would.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/module/burn/open_dialog_case.h"

namespace burn_test {
namespace {

using fake_host::fileExists;
using fake_host::LocalizeCall;
using fake_host::Window;
using fake_host::WindowingLayer;
using testing::_;
using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr UINT kInitDialog = 0x110;
constexpr UINT kRefreshDrives = 0x400 + 1620;

class BurnDialog : public OpenDialogCase {};

// How it opens.

TEST_F(BurnDialog, StandsBeforeTheParentThatFinishedTheRender) {
  albumAnd([](Window&) {});
  ASSERT_THAT(windowing.requests, SizeIs(1));
  EXPECT_TRUE(windowing.requests[0].modal);
  EXPECT_EQ(windowing.requests[0].id, 102);
  EXPECT_EQ(windowing.requests[0].parent, parent());
  ASSERT_THAT(host.prepare_calls, SizeIs(1));
  EXPECT_EQ(host.prepare_calls[0].resource_id, 102);
  EXPECT_EQ(host.prepare_calls[0].fifth_slot, "cd_102");
}

TEST_F(BurnDialog, StandsBeforeTheMainWindowWhereNoParentIsGiven) {
  fake_host::Sink sink = createSink("disc.cue", {.burn_after_render = 1});
  sink.writeSignal(588);
  sink.finish();
  ASSERT_THAT(windowing.requests, SizeIs(1));
  EXPECT_EQ(windowing.requests[0].parent, host.main_window);
}

TEST_F(BurnDialog, TheProgressDialogIsThereAndNobodyOpensIt) {
  albumAnd([](Window& dialog) { press(dialog, kOk); });
  ASSERT_THAT(windowing.requests, SizeIs(1)) << "the recording service shows its own panel";
  bool listed = false;
  for (auto* link = windowing.requests[0].head; link != nullptr; link = link->next) {
    listed = listed || link->id == 103;
  }
  EXPECT_TRUE(listed);
}

TEST_F(BurnDialog, OffersOneMethodWhateverWasSaved) {
  windowing.ini["velmor_cd/method"] = "3";
  albumAnd([](Window& dialog) {
    EXPECT_THAT(dialog.control(kMethod)->items, ElementsAre("Native CD Burning"));
    EXPECT_EQ(dialog.control(kMethod)->selection, 0);
  });
  EXPECT_THAT(calls("GetPrivateProfileInt"), Each(Not(HasSubstr("\"method\""))))
      << "the method is written and never read: there is one";
  EXPECT_THAT(host.localize_calls, Contains(LocalizeCall{"Native CD Burning", "cdburn", 0}));
  EXPECT_THAT(calls("SendMessage(1014"),
              ElementsAre("SendMessage(1014, 0x143, 0, \"Native CD Burning\")",
                          "SendMessage(1014, 0x14E, 0, 0)", "SendMessage(1014, 0x147, 0, 0)"));
}

TEST_F(BurnDialog, ListsTheDrivesAnewAndPicksTheSavedOne) {
  m_recorders.add("ACME", "OTHER");
  windowing.ini["velmor_cd/drive"] = "1";
  albumAnd([](Window&) {});
  EXPECT_THAT(calls("SendMessage(1015"),
              ElementsAre("SendMessage(1015, 0x14B, 0, 0)", HasSubstr("0x143, 0, "), _,
                          HasSubstr("0x143, 0, "), _, "SendMessage(1015, 0x14E, 1, 0)",
                          "SendMessage(1015, 0x147, 0, 0)"));
}

TEST_F(BurnDialog, EjectsAndKeepsTheFilesUnlessToldOtherwise) {
  albumAnd([](Window& dialog) {
    EXPECT_EQ(dialog.control(kEject)->checked, 1);
    EXPECT_EQ(dialog.control(kDelete)->checked, 0);
  });
  EXPECT_THAT(
      calls("GetPrivateProfileInt"),
      ElementsAre(
          R"(GetPrivateProfileInt("velmor_cd", "eject", 1, "/home/somebody/velmor.ini"))",
          R"(GetPrivateProfileInt("velmor_cd", "deletefiles", 0, "/home/somebody/velmor.ini"))",
          R"(GetPrivateProfileInt("velmor_cd", "drive", 0, "/home/somebody/velmor.ini"))"));
}

TEST_F(BurnDialog, RemembersBoxesAndDrive) {
  m_recorders.add("ACME", "OTHER");
  windowing.ini = {
      {"velmor_cd/eject", "0"}, {"velmor_cd/deletefiles", "1"}, {"velmor_cd/drive", "1"}};
  albumAnd([](Window& dialog) {
    EXPECT_EQ(dialog.control(kEject)->checked, 0);
    EXPECT_EQ(dialog.control(kDelete)->checked, 1);
    EXPECT_EQ(dialog.control(kDrive)->selection, 1);
    dialog.control(kDelete)->checked = 0;
  });
}

TEST_F(BurnDialog, WithoutAnInstanceNothingHappens) {
  albumAnd([this](Window& dialog) {
    Window stranger;
    stranger.procedure = dialog.procedure;
    const size_t calls = windowing.calls.size();
    for (const UINT message : {UINT{kInitDialog}, UINT{WM_COMMAND}, UINT{WM_DESTROY},
                               UINT{kRefreshDrives}, UINT{0x113}}) {
      EXPECT_EQ(WindowingLayer::send(stranger, message, kOk), 0) << message;
    }
    const std::vector<std::string> made(windowing.calls.begin() + static_cast<ptrdiff_t>(calls),
                                        windowing.calls.end());
    EXPECT_THAT(made, Each(AnyOf(HasSubstr("GetWindowLong"), HasSubstr("SetWindowLong"))));
  });
}

TEST_F(BurnDialog, OtherMessagesAreAnsweredWithZero) {
  albumAnd([this](Window& dialog) {
    for (const UINT message : {0x1u, 0x5u, 0x10u, 0x113u, kRefreshDrives + 1}) {
      EXPECT_EQ(WindowingLayer::send(dialog, message, 1, 1), 0);
    }
    press(dialog, kTracks);
    EXPECT_THAT(calls("MessageBox"), IsEmpty());
  });
}

// The tracks.

TEST_F(BurnDialog, ListsTheTracksWithNamesAndDurations) {
  albumAnd([](Window& dialog) {
    const Window& list = *dialog.control(kTracks);
    EXPECT_THAT(list.columns, ElementsAre("Track # 60", "Name 180", "Duration 90"));
    EXPECT_EQ(list.list_style, 0x20) << "whole rows are selected";
    EXPECT_THAT(list.rows,
                ElementsAre(ElementsAre("1", "One", "5.000"), ElementsAre("2", "Two", "5.000"),
                            ElementsAre("3", "Three", "5.000")));
  });
  for (const char* title : {"Track #", "Name", "Duration"}) {
    EXPECT_THAT(host.localize_calls, Contains(LocalizeCall{title, "cd_DLG_102", 0}));
  }
}

TEST_F(BurnDialog, ShowsATitlesQuotesAsTheApostrophesOfTheSheet) {
  host.marks = {fake_host::marker(0.0, "Say \"Go\""), fake_host::marker(5.0, "\"\"")};
  renderAnd(10.0, [this](Window& dialog) {
    EXPECT_THAT(dialog.control(kTracks)->rows, ElementsAre(ElementsAre("1", "Say 'Go'", "5.000"),
                                                           ElementsAre("2", "''", "5.000")));
    EXPECT_THAT(fake_host::readText(file("disc.cue")), HasSubstr("    TITLE \"Say 'Go'\"\r\n"));
  });
}

TEST_F(BurnDialog, LetsTheHostWriteEachDurationInto512Bytes) {
  host.marks = {fake_host::marker(0.0, "One"), fake_host::marker(5.0, "Two")};
  renderAnd(11.0, [](Window&) {});
  using Call = fake_host::FormatTimeCall;
  EXPECT_EQ(host.format_time_calls, (std::vector<Call>{{5.0, 512}, {6.0, 512}}));
}

TEST_F(BurnDialog, TheLastTrackLastsToTheEndOfTheImagePaddingIncluded) {
  host.marks = {fake_host::marker(0.0, "One"), fake_host::marker(5.0, "Two")};
  renderAnd(10.001, [](Window& dialog) {
    EXPECT_EQ(dialog.control(kTracks)->rows[1][2], "5.013") << "376 sectors";
  });
}

TEST_F(BurnDialog, ATrackWithoutANameHasAnEmptyCell) {
  renderAnd(5.0,
            [](Window& dialog) {
              ASSERT_THAT(dialog.control(kTracks)->rows, SizeIs(1));
              EXPECT_THAT(dialog.control(kTracks)->rows[0], ElementsAre("1", "", "5.000"));
            },
            {.track_mode = kOneTrack});
  EXPECT_THAT(calls("ListView_SetItemText(0, 1"), IsEmpty()) << "the list of names is shorter";
}

TEST_F(BurnDialog, AnEmptyNameIsAnEmptyCellToo) {
  host.marks = {fake_host::marker(0.0, ""), fake_host::marker(5.0, "Two")};
  renderAnd(10.0, [](Window& dialog) {
    EXPECT_THAT(dialog.control(kTracks)->rows[0], ElementsAre("1", "", "5.000"));
    EXPECT_THAT(dialog.control(kTracks)->rows[1], ElementsAre("2", "Two", "5.000"));
  });
}

// The recorders.

TEST_F(BurnDialog, NamesRecordersByVendorAndProduct) {
  m_recorders.devices.clear();
  m_recorders.add("ACME", "BURNER");
  m_recorders.add(std::nullopt, "PRODUCT ONLY");
  m_recorders.add("VENDOR ONLY", std::nullopt);
  m_recorders.add(std::nullopt, std::nullopt);
  m_recorders.add("", "EMPTY VENDOR");
  m_recorders.add("", "");
  m_recorders.add("NULL", "HANDLE").is_null = true;
  m_recorders.add("LAST", "ONE").valid = false;
  albumAnd([this](Window& dialog) {
    const Window& drives = *dialog.control(kDrive);
    EXPECT_THAT(drives.items, ElementsAre("ACME BURNER", "PRODUCT ONLY", "VENDOR ONLY",
                                          "EMPTY VENDOR", "LAST ONE"));
    const auto handle = [this](size_t i) {
      return reinterpret_cast<intptr_t>(m_recorders.handle(i));
    };
    EXPECT_THAT(drives.item_data,
                ElementsAre(handle(0), handle(1), handle(2), handle(4), handle(7)));
  });
  EXPECT_THAT(m_recorders.journal, Not(Contains("IsValid 7"))) << "only a chosen recorder is asked";
}

TEST_F(BurnDialog, ALongNameIsCutAt496BytesAndNeverInsideACharacter) {
  struct {
    std::string name;
    size_t kept;
  } const cases[] = {
      {std::string(496, 'v'), 496},
      {std::string(497, 'v'), 496},
      {std::string(2000, 'v'), 496},
      {std::string(494, 'v') + "\xC3\xA9", 496},                // é, whole
      {std::string(495, 'v') + "\xC3\xA9", 495},                // é, half of it beyond
      {std::string(494, 'v') + "\xE2\x82\xAC", 494},            // €
      {std::string(493, 'v') + "\xF0\x9D\x84\x9E", 493},        // a clef
      {std::string(492, 'v') + "\xF0\x9D\x84\x9E" + "x", 496},  // the clef fits
      {std::string(496, '\x80'), 496},                          // no UTF-8 at all
  };
  m_recorders.devices.clear();
  for (const auto& each : cases) {
    m_recorders.add(each.name, "P");
    m_recorders.add(std::nullopt, each.name);
  }
  m_recorders.add(std::string(600, 'v'), std::string(600, 'p'));
  albumAnd([&](Window& dialog) {
    const std::vector<std::string>& items = dialog.control(kDrive)->items;
    ASSERT_THAT(items, SizeIs(2 * std::size(cases) + 1));
    for (size_t i = 0; i < std::size(cases); ++i) {
      const std::string kept = cases[i].name.substr(0, cases[i].kept);
      EXPECT_EQ(items[2 * i], kept + " P") << i;
      EXPECT_EQ(items[2 * i + 1], kept) << i;
    }
    EXPECT_EQ(items.back(), std::string(496, 'v') + " " + std::string(496, 'p'));
  });
}

TEST_F(BurnDialog, ALongNameInWhichNoCharacterBeginsIsLeftOut) {
  m_recorders.devices.clear();
  m_recorders.add(std::string(600, '\x80'), "P");
  albumAnd([&](Window& dialog) { EXPECT_THAT(dialog.control(kDrive)->items, ElementsAre("P")); });
}

TEST_F(BurnDialog, TheNumberOfRecordersIsAskedForOnEveryRound) {
  m_recorders.add("ACME", "OTHER");
  albumAnd([](Window&) {});
  EXPECT_THAT(m_recorders.journal, ElementsAre("DeviceCount", "DeviceAt 0", "VendorName 0",
                                               "ProductName 0", "DeviceCount", "DeviceAt 1",
                                               "VendorName 1", "ProductName 1", "DeviceCount"));
}

TEST_F(BurnDialog, ARecorderThatIsPluggedInLaterIsListedWhenTheMethodIsChosen) {
  m_recorders.is_there = false;
  albumAnd([this](Window& dialog) {
    EXPECT_THAT(dialog.control(kDrive)->items, IsEmpty());
    EXPECT_EQ(dialog.control(kDrive)->selection, -1);
    m_recorders.is_there = true;
    press(dialog, kMethod, kSelectionChanged);
    EXPECT_THAT(dialog.control(kDrive)->items, ElementsAre("ACME BURNER"));
    EXPECT_EQ(dialog.control(kDrive)->selection, 0);
  });
  EXPECT_EQ(m_recorders.lookups, 2) << "the service is asked for whenever recorders are listed";
}

TEST_F(BurnDialog, ChoosingTheMethodSelectsTheSavedDriveNotTheCurrentOne) {
  m_recorders.add("ACME", "OTHER");
  windowing.ini["velmor_cd/drive"] = "1";
  albumAnd([](Window& dialog) {
    dialog.control(kDrive)->selection = 0;
    press(dialog, kMethod, kSelectionChanged);
    EXPECT_EQ(dialog.control(kDrive)->selection, 1);
  });
}

TEST_F(BurnDialog, OtherNotificationsOfTheMethodAreIgnored) {
  albumAnd([this](Window& dialog) {
    const size_t calls = m_recorders.journal.size();
    for (const int code : {0, 2, 7, 8, 0x101}) press(dialog, kMethod, code);
    EXPECT_EQ(m_recorders.journal.size(), calls);
  });
}

// Messages to the person.

TEST_F(BurnDialog, WithoutARecorderOneIsToBeSelected) {
  m_recorders.devices.clear();
  albumAnd([this](Window& dialog) {
    press(dialog, kOk);
    EXPECT_THAT(calls("MessageBox"), ElementsAre(error("Select a recorder")));
    EXPECT_FALSE(dialog.ended);
  });
  EXPECT_THAT(host.localize_calls, Contains(LocalizeCall{"Select a recorder", "cd_DLG_102", 0}));
  EXPECT_THAT(host.localize_calls, Contains(LocalizeCall{"CD Burn Error", "cd_DLG_102", 0}));
}

TEST_F(BurnDialog, ASavedDriveThatIsGoneLeavesNoneSelected) {
  windowing.ini["velmor_cd/drive"] = "1";
  albumAnd([this](Window& dialog) {
    EXPECT_EQ(dialog.control(kDrive)->selection, -1);
    press(dialog, kOk);
    EXPECT_THAT(calls("MessageBox"), ElementsAre(error("Select a recorder")));
  });
  EXPECT_EQ(windowing.ini["velmor_cd/drive"], "-1") << "what is selected is what is saved";
  EXPECT_EQ(m_recorders.panels, 0);
}

TEST_F(BurnDialog, AnEntryWithoutARecorderIsNone) {
  albumAnd([this](Window& dialog) {
    dialog.control(kDrive)->item_data[0] = 0;
    press(dialog, kOk);
    EXPECT_THAT(calls("MessageBox"), ElementsAre(error("Select a recorder")));
  });
  EXPECT_EQ(m_recorders.panels, 0);
}

TEST_F(BurnDialog, AnImageThatHasVanishedIsToldOfAndCanComeBack) {
  albumAnd([this](Window& dialog) {
    std::filesystem::rename(file("disc.bin"), file("elsewhere"));
    press(dialog, kOk);
    EXPECT_THAT(calls("MessageBox"), ElementsAre(error("Error opening .bin file")));
    EXPECT_FALSE(dialog.ended);
    EXPECT_EQ(m_recorders.panels, 0);
    std::filesystem::rename(file("elsewhere"), file("disc.bin"));
    press(dialog, kOk);
    EXPECT_EQ(m_recorders.panels, 1);
    EXPECT_THAT(calls("MessageBox"), SizeIs(1));
  });
  EXPECT_THAT(host.localize_calls,
              Contains(LocalizeCall{"Error opening .bin file", "cd_DLG_102", 0}));
}

TEST_F(BurnDialog, ItsMessagesAreTranslated) {
  host.translations = {{"Select a recorder", "Brenner w\xC3\xA4hlen"},
                       {"CD Burn Error", "Fehler"},
                       {"Native CD Burning", "Eigenes"}};
  m_recorders.devices.clear();
  albumAnd([this](Window& dialog) {
    EXPECT_THAT(dialog.control(kMethod)->items, ElementsAre("Eigenes"));
    press(dialog, kOk);
    EXPECT_THAT(calls("MessageBox"),
                ElementsAre("MessageBox(\"Brenner w\xC3\xA4hlen\", \"Fehler\", 0)"));
  });
}

// Pressing the buttons.

TEST_F(BurnDialog, BurnsWhateverTheNotification) {
  albumAnd([this](Window& dialog) {
    for (const int code : {0, 1, 5, 0x7FFF}) press(dialog, kOk, code);
    EXPECT_EQ(m_recorders.panels, 4);
  });
}

TEST_F(BurnDialog, StaysOpenForAnotherCopy) {
  albumAnd([this](Window& dialog) {
    for (int copy = 1; copy <= 3; ++copy) {
      std::string disc;
      m_recorders.on_panel = [&disc](const DiscTrack* tracks, int count) {
        for (int i = 0; i < count; ++i) disc += produce(tracks[i]);
      };
      press(dialog, kOk);
      EXPECT_FALSE(dialog.ended);
      EXPECT_EQ(disc, image()) << "copy " << copy;
    }
  });
  EXPECT_TRUE(fileExists(file("disc.bin")));
}

TEST_F(BurnDialog, ClosesWithZero) {
  albumAnd([](Window& dialog) {
    press(dialog, kCancel);
    EXPECT_TRUE(dialog.ended);
    EXPECT_EQ(dialog.result, 0);
  });
  EXPECT_THAT(calls("EndDialog"), ElementsAre("EndDialog(0)"));
}

// The end.

TEST_F(BurnDialog, SavesItsSettingsInOrderWhenItEnds) {
  m_recorders.add("ACME", "OTHER");
  albumAnd([](Window& dialog) {
    dialog.control(kEject)->checked = 0;
    dialog.control(kDrive)->selection = 1;
  });
  const auto written = [](const std::string& key, const std::string& value) {
    return "WritePrivateProfileString(\"velmor_cd\", \"" + key + "\", \"" + value +
           "\", \"/home/somebody/velmor.ini\")";
  };
  EXPECT_THAT(calls("WritePrivateProfileString"),
              ElementsAre(written("eject", "0"), written("deletefiles", "0"),
                          written("method", "0"), written("drive", "1")));
}

TEST_F(BurnDialog, DeletesBothFilesAlsoWhenNothingWasBurned) {
  albumAnd([this](Window& dialog) {
    dialog.control(kDelete)->checked = 1;
    EXPECT_TRUE(fileExists(file("disc.cue")));
  });
  EXPECT_FALSE(fileExists(file("disc.cue")));
  EXPECT_FALSE(fileExists(file("disc.bin")));
  EXPECT_EQ(m_recorders.panels, 0);
  EXPECT_EQ(windowing.ini["velmor_cd/deletefiles"], "1");
}

TEST_F(BurnDialog, KeepsTheFilesWhileItIsOpenForFurtherCopies) {
  albumAnd([this](Window& dialog) {
    dialog.control(kDelete)->checked = 1;
    press(dialog, kOk);
    press(dialog, kCancel);
    EXPECT_TRUE(fileExists(file("disc.cue")));
    EXPECT_TRUE(fileExists(file("disc.bin")));
  });
  EXPECT_FALSE(fileExists(file("disc.bin")));
}

TEST_F(BurnDialog, FilesThatCannotBeDeletedAreNotMentioned) {
  albumAnd([this](Window& dialog) {
    dialog.control(kDelete)->checked = 1;
    std::filesystem::remove(file("disc.cue"));
    std::filesystem::remove(file("disc.bin"));
    std::filesystem::create_directory(file("disc.bin"));
  });
  EXPECT_TRUE(fileExists(file("disc.bin")));
  EXPECT_THAT(calls("MessageBox"), IsEmpty());
  EXPECT_EQ(windowing.ini["velmor_cd/deletefiles"], "1");
}

}  // namespace
}  // namespace burn_test
