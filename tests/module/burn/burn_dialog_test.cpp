// The burn dialog of the loaded module, used as a person would.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/module/burn/open_dialog_case.h"

namespace burn_test {
namespace {

using fake_host::FileExists;
using fake_host::LocalizeCall;
using fake_host::Window;
using fake_host::WindowingLayer;
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
  AlbumAnd([](Window&) {});
  ASSERT_THAT(windowing.requests, SizeIs(1));
  EXPECT_TRUE(windowing.requests[0].modal);
  EXPECT_EQ(windowing.requests[0].id, 102);
  EXPECT_EQ(windowing.requests[0].parent, parent());
  ASSERT_THAT(host.prepare_calls, SizeIs(1));
  EXPECT_EQ(host.prepare_calls[0].resource_id, 102);
  EXPECT_EQ(host.prepare_calls[0].fifth_slot, "cd_102");
}

TEST_F(BurnDialog, StandsBeforeTheMainWindowWhereNoParentIsGiven) {
  fake_host::Sink sink = CreateSink("disc.cue", {.burn_after_render = 1});
  sink.WriteSignal(588);
  sink.Finish();
  ASSERT_THAT(windowing.requests, SizeIs(1));
  EXPECT_EQ(windowing.requests[0].parent, host.main_window);
}

TEST_F(BurnDialog, TheProgressDialogIsThereAndNobodyOpensIt) {
  AlbumAnd([](Window& dialog) { Press(dialog, kOk); });
  ASSERT_THAT(windowing.requests, SizeIs(1)) << "the recording service shows its own panel";
  bool listed = false;
  for (auto* link = windowing.requests[0].head; link != nullptr; link = link->next) {
    listed = listed || link->id == 103;
  }
  EXPECT_TRUE(listed);
}

TEST_F(BurnDialog, OffersOneMethodWhateverWasSaved) {
  windowing.ini["velmor_cd/method"] = "3";
  AlbumAnd([](Window& dialog) {
    EXPECT_THAT(dialog.Control(kMethod)->items, ElementsAre("Native CD Burning"));
    EXPECT_EQ(dialog.Control(kMethod)->selection, 0);
  });
  EXPECT_THAT(Calls("GetPrivateProfileInt"), Each(Not(HasSubstr("\"method\""))))
      << "the method is written and never read: there is one";
  EXPECT_THAT(host.localize_calls, Contains(LocalizeCall{"Native CD Burning", "cdburn", 0}));
}

TEST_F(BurnDialog, EjectsAndKeepsTheFilesUnlessToldOtherwise) {
  AlbumAnd([](Window& dialog) {
    EXPECT_EQ(dialog.Control(kEject)->checked, 1);
    EXPECT_EQ(dialog.Control(kDelete)->checked, 0);
  });
  EXPECT_THAT(
      Calls("GetPrivateProfileInt"),
      ElementsAre(
          R"(GetPrivateProfileInt("velmor_cd", "eject", 1, "/home/somebody/velmor.ini"))",
          R"(GetPrivateProfileInt("velmor_cd", "deletefiles", 0, "/home/somebody/velmor.ini"))",
          R"(GetPrivateProfileInt("velmor_cd", "drive", 0, "/home/somebody/velmor.ini"))"));
}

TEST_F(BurnDialog, RemembersBoxesAndDrive) {
  recorders.Add("ACME", "OTHER");
  windowing.ini = {
      {"velmor_cd/eject", "0"}, {"velmor_cd/deletefiles", "1"}, {"velmor_cd/drive", "1"}};
  AlbumAnd([](Window& dialog) {
    EXPECT_EQ(dialog.Control(kEject)->checked, 0);
    EXPECT_EQ(dialog.Control(kDelete)->checked, 1);
    EXPECT_EQ(dialog.Control(kDrive)->selection, 1);
    dialog.Control(kDelete)->checked = 0;
  });
}

TEST_F(BurnDialog, WithoutAnInstanceNothingHappens) {
  AlbumAnd([this](Window& dialog) {
    Window stranger;
    stranger.procedure = dialog.procedure;
    const size_t calls = windowing.calls.size();
    for (const UINT message : {UINT{kInitDialog}, UINT{WM_COMMAND}, UINT{WM_DESTROY},
                               UINT{kRefreshDrives}, UINT{0x113}}) {
      EXPECT_EQ(WindowingLayer::Send(stranger, message, kOk), 0) << message;
    }
    const std::vector<std::string> made(windowing.calls.begin() + static_cast<ptrdiff_t>(calls),
                                        windowing.calls.end());
    EXPECT_THAT(made, Each(AnyOf(HasSubstr("GetWindowLong"), HasSubstr("SetWindowLong"))));
  });
}

TEST_F(BurnDialog, OtherMessagesAreAnsweredWithZero) {
  AlbumAnd([this](Window& dialog) {
    for (const UINT message : {0x1u, 0x5u, 0x10u, 0x113u, kRefreshDrives + 1}) {
      EXPECT_EQ(WindowingLayer::Send(dialog, message, 1, 1), 0);
    }
    Press(dialog, kTracks);
    EXPECT_THAT(Calls("MessageBox"), IsEmpty());
  });
}

// The tracks.

TEST_F(BurnDialog, ListsTheTracksWithNamesAndDurations) {
  AlbumAnd([](Window& dialog) {
    const Window& list = *dialog.Control(kTracks);
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

TEST_F(BurnDialog, TheLastTrackLastsToTheEndOfTheImagePaddingIncluded) {
  host.marks = {fake_host::Marker(0.0, "One"), fake_host::Marker(5.0, "Two")};
  RenderAnd(10.001, [](Window& dialog) {
    EXPECT_EQ(dialog.Control(kTracks)->rows[1][2], "5.013") << "376 sectors";
  });
}

TEST_F(BurnDialog, ATrackWithoutANameHasAnEmptyCell) {
  RenderAnd(5.0,
            [](Window& dialog) {
              ASSERT_THAT(dialog.Control(kTracks)->rows, SizeIs(1));
              EXPECT_THAT(dialog.Control(kTracks)->rows[0], ElementsAre("1", "", "5.000"));
            },
            {.track_mode = kOneTrack});
  EXPECT_THAT(Calls("ListView_SetItemText(0, 1"), IsEmpty()) << "the list of names is shorter";
}

TEST_F(BurnDialog, AnEmptyNameIsAnEmptyCellToo) {
  host.marks = {fake_host::Marker(0.0, ""), fake_host::Marker(5.0, "Two")};
  RenderAnd(10.0, [](Window& dialog) {
    EXPECT_THAT(dialog.Control(kTracks)->rows[0], ElementsAre("1", "", "5.000"));
    EXPECT_THAT(dialog.Control(kTracks)->rows[1], ElementsAre("2", "Two", "5.000"));
  });
}

// The recorders.

TEST_F(BurnDialog, NamesRecordersByVendorAndProduct) {
  recorders.devices.clear();
  recorders.Add("ACME", "BURNER");
  recorders.Add(std::nullopt, "PRODUCT ONLY");
  recorders.Add("VENDOR ONLY", std::nullopt);
  recorders.Add(std::nullopt, std::nullopt);
  recorders.Add("", "EMPTY VENDOR");
  recorders.Add("", "");
  recorders.Add("NULL", "HANDLE").is_null = true;
  recorders.Add("LAST", "ONE").valid = false;
  AlbumAnd([this](Window& dialog) {
    const Window& drives = *dialog.Control(kDrive);
    EXPECT_THAT(drives.items, ElementsAre("ACME BURNER", "PRODUCT ONLY", "VENDOR ONLY",
                                          "EMPTY VENDOR", "LAST ONE"));
    const auto handle = [this](size_t i) {
      return reinterpret_cast<intptr_t>(recorders.Handle(i));
    };
    EXPECT_THAT(drives.item_data,
                ElementsAre(handle(0), handle(1), handle(2), handle(4), handle(7)));
  });
  EXPECT_THAT(recorders.journal, Not(Contains("IsValid 7"))) << "only a chosen recorder is asked";
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
  recorders.devices.clear();
  for (const auto& each : cases) {
    recorders.Add(each.name, "P");
    recorders.Add(std::nullopt, each.name);
  }
  recorders.Add(std::string(600, 'v'), std::string(600, 'p'));
  AlbumAnd([&](Window& dialog) {
    const std::vector<std::string>& items = dialog.Control(kDrive)->items;
    ASSERT_THAT(items, SizeIs(2 * std::size(cases) + 1));
    for (size_t i = 0; i < std::size(cases); ++i) {
      const std::string kept = cases[i].name.substr(0, cases[i].kept);
      EXPECT_EQ(items[2 * i], kept + " P") << i;
      EXPECT_EQ(items[2 * i + 1], kept) << i;
    }
    EXPECT_EQ(items.back(), std::string(496, 'v') + " " + std::string(496, 'p'));
  });
}

TEST_F(BurnDialog, TheNumberOfRecordersIsAskedForOnEveryRound) {
  recorders.Add("ACME", "OTHER");
  AlbumAnd([](Window&) {});
  EXPECT_THAT(recorders.journal, ElementsAre("DeviceCount", "DeviceAt 0", "VendorName 0",
                                             "ProductName 0", "DeviceCount", "DeviceAt 1",
                                             "VendorName 1", "ProductName 1", "DeviceCount"));
}

TEST_F(BurnDialog, ARecorderThatIsPluggedInLaterIsListedWhenTheMethodIsChosen) {
  recorders.is_there = false;
  AlbumAnd([this](Window& dialog) {
    EXPECT_THAT(dialog.Control(kDrive)->items, IsEmpty());
    EXPECT_EQ(dialog.Control(kDrive)->selection, -1);
    recorders.is_there = true;
    Press(dialog, kMethod, kSelectionChanged);
    EXPECT_THAT(dialog.Control(kDrive)->items, ElementsAre("ACME BURNER"));
    EXPECT_EQ(dialog.Control(kDrive)->selection, 0);
  });
  EXPECT_EQ(recorders.lookups, 2) << "the service is asked for whenever recorders are listed";
}

TEST_F(BurnDialog, ChoosingTheMethodSelectsTheSavedDriveNotTheCurrentOne) {
  recorders.Add("ACME", "OTHER");
  windowing.ini["velmor_cd/drive"] = "1";
  AlbumAnd([](Window& dialog) {
    dialog.Control(kDrive)->selection = 0;
    Press(dialog, kMethod, kSelectionChanged);
    EXPECT_EQ(dialog.Control(kDrive)->selection, 1);
  });
}

TEST_F(BurnDialog, OtherNotificationsOfTheMethodAreIgnored) {
  AlbumAnd([this](Window& dialog) {
    const size_t calls = recorders.journal.size();
    for (const int code : {0, 2, 7, 8, 0x101}) Press(dialog, kMethod, code);
    EXPECT_EQ(recorders.journal.size(), calls);
  });
}

// Messages to the person.

TEST_F(BurnDialog, WithoutARecorderOneIsToBeSelected) {
  recorders.devices.clear();
  AlbumAnd([this](Window& dialog) {
    Press(dialog, kOk);
    EXPECT_THAT(Calls("MessageBox"), ElementsAre(Error("Select a recorder")));
    EXPECT_FALSE(dialog.ended);
  });
  EXPECT_THAT(host.localize_calls, Contains(LocalizeCall{"Select a recorder", "cd_DLG_102", 0}));
  EXPECT_THAT(host.localize_calls, Contains(LocalizeCall{"CD Burn Error", "cd_DLG_102", 0}));
}

TEST_F(BurnDialog, ASavedDriveThatIsGoneLeavesNoneSelected) {
  windowing.ini["velmor_cd/drive"] = "1";
  AlbumAnd([this](Window& dialog) {
    EXPECT_EQ(dialog.Control(kDrive)->selection, -1);
    Press(dialog, kOk);
    EXPECT_THAT(Calls("MessageBox"), ElementsAre(Error("Select a recorder")));
  });
  EXPECT_EQ(windowing.ini["velmor_cd/drive"], "-1") << "what is selected is what is saved";
  EXPECT_EQ(recorders.panels, 0);
}

TEST_F(BurnDialog, AnEntryWithoutARecorderIsNone) {
  AlbumAnd([this](Window& dialog) {
    dialog.Control(kDrive)->item_data[0] = 0;
    Press(dialog, kOk);
    EXPECT_THAT(Calls("MessageBox"), ElementsAre(Error("Select a recorder")));
  });
  EXPECT_EQ(recorders.panels, 0);
}

TEST_F(BurnDialog, AnImageThatHasVanishedIsToldOfAndCanComeBack) {
  AlbumAnd([this](Window& dialog) {
    std::filesystem::rename(File("disc.bin"), File("elsewhere"));
    Press(dialog, kOk);
    EXPECT_THAT(Calls("MessageBox"), ElementsAre(Error("Error opening .bin file")));
    EXPECT_FALSE(dialog.ended);
    EXPECT_EQ(recorders.panels, 0);
    std::filesystem::rename(File("elsewhere"), File("disc.bin"));
    Press(dialog, kOk);
    EXPECT_EQ(recorders.panels, 1);
    EXPECT_THAT(Calls("MessageBox"), SizeIs(1));
  });
  EXPECT_THAT(host.localize_calls,
              Contains(LocalizeCall{"Error opening .bin file", "cd_DLG_102", 0}));
}

TEST_F(BurnDialog, ItsMessagesAreTranslated) {
  host.translations = {{"Select a recorder", "Brenner w\xC3\xA4hlen"},
                       {"CD Burn Error", "Fehler"},
                       {"Native CD Burning", "Eigenes"}};
  recorders.devices.clear();
  AlbumAnd([this](Window& dialog) {
    EXPECT_THAT(dialog.Control(kMethod)->items, ElementsAre("Eigenes"));
    Press(dialog, kOk);
    EXPECT_THAT(Calls("MessageBox"),
                ElementsAre("MessageBox(\"Brenner w\xC3\xA4hlen\", \"Fehler\", 0)"));
  });
}

// Pressing the buttons.

TEST_F(BurnDialog, BurnsWhateverTheNotification) {
  AlbumAnd([this](Window& dialog) {
    for (const int code : {0, 1, 5, 0x7FFF}) Press(dialog, kOk, code);
    EXPECT_EQ(recorders.panels, 4);
  });
}

TEST_F(BurnDialog, StaysOpenForAnotherCopy) {
  AlbumAnd([this](Window& dialog) {
    for (int copy = 1; copy <= 3; ++copy) {
      std::string disc;
      recorders.on_panel = [&disc](const DiscTrack* tracks, int count) {
        for (int i = 0; i < count; ++i) disc += Produce(tracks[i]);
      };
      Press(dialog, kOk);
      EXPECT_FALSE(dialog.ended);
      EXPECT_EQ(disc, Image()) << "copy " << copy;
    }
  });
  EXPECT_TRUE(FileExists(File("disc.bin")));
}

TEST_F(BurnDialog, ClosesWithZero) {
  AlbumAnd([](Window& dialog) {
    Press(dialog, kCancel);
    EXPECT_TRUE(dialog.ended);
    EXPECT_EQ(dialog.result, 0);
  });
  EXPECT_THAT(Calls("EndDialog"), ElementsAre("EndDialog(0)"));
}

// The end.

TEST_F(BurnDialog, SavesItsSettingsInOrderWhenItEnds) {
  recorders.Add("ACME", "OTHER");
  AlbumAnd([](Window& dialog) {
    dialog.Control(kEject)->checked = 0;
    dialog.Control(kDrive)->selection = 1;
  });
  const auto written = [](const std::string& key, const std::string& value) {
    return "WritePrivateProfileString(\"velmor_cd\", \"" + key + "\", \"" + value +
           "\", \"/home/somebody/velmor.ini\")";
  };
  EXPECT_THAT(Calls("WritePrivateProfileString"),
              ElementsAre(written("eject", "0"), written("deletefiles", "0"),
                          written("method", "0"), written("drive", "1")));
}

TEST_F(BurnDialog, DeletesBothFilesAlsoWhenNothingWasBurned) {
  AlbumAnd([this](Window& dialog) {
    dialog.Control(kDelete)->checked = 1;
    EXPECT_TRUE(FileExists(File("disc.cue")));
  });
  EXPECT_FALSE(FileExists(File("disc.cue")));
  EXPECT_FALSE(FileExists(File("disc.bin")));
  EXPECT_EQ(recorders.panels, 0);
  EXPECT_EQ(windowing.ini["velmor_cd/deletefiles"], "1");
}

TEST_F(BurnDialog, KeepsTheFilesWhileItIsOpenForFurtherCopies) {
  AlbumAnd([this](Window& dialog) {
    dialog.Control(kDelete)->checked = 1;
    Press(dialog, kOk);
    Press(dialog, kCancel);
    EXPECT_TRUE(FileExists(File("disc.cue")));
    EXPECT_TRUE(FileExists(File("disc.bin")));
  });
  EXPECT_FALSE(FileExists(File("disc.bin")));
}

TEST_F(BurnDialog, FilesThatCannotBeDeletedAreNotMentioned) {
  AlbumAnd([this](Window& dialog) {
    dialog.Control(kDelete)->checked = 1;
    std::filesystem::remove(File("disc.cue"));
    std::filesystem::remove(File("disc.bin"));
    std::filesystem::create_directory(File("disc.bin"));
  });
  EXPECT_TRUE(FileExists(File("disc.bin")));
  EXPECT_THAT(Calls("MessageBox"), IsEmpty());
  EXPECT_EQ(windowing.ini["velmor_cd/deletefiles"], "1");
}

}  // namespace
}  // namespace burn_test
