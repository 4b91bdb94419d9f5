// One burn of the loaded module against a recording service that remembers every call.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/file.h>

#include <filesystem>
#include <stdexcept>

#include "tests/kit/other_process.h"
#include "tests/module/burn/open_dialog_case.h"

namespace burn_test {
namespace {

using fake_host::fileExists;
using fake_host::openDescriptors;
using fake_host::Window;
using fake_host::WindowingLayer;
using test_kit::anotherProcessCanLock;
using test_kit::LockHolder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int kSector = 2352;

class Burn : public OpenDialogCase {
 protected:
  /// Presses "Burn CD" once on an album of three tracks and returns the calls that this made.
  std::vector<std::string> journalOfOneBurn() {
    std::vector<std::string> journal;
    albumAnd([&](Window& dialog) {
      m_recorders.journal.clear();
      press(dialog, kOk);
      journal = m_recorders.journal;
    });
    return journal;
  }
};

std::vector<int> lengths(const std::vector<DiscTrack>& tracks) {
  std::vector<int> lengths;
  lengths.reserve(tracks.size());
  for (const DiscTrack& track : tracks) lengths.push_back(track.track_length);
  return lengths;
}

// The order of calls.

TEST_F(Burn, AsksTheServiceInOrder) {
  m_recorders.devices.clear();
  m_recorders.add("OTHER", "ONE");
  m_recorders.add("ACME", "BURNER");
  m_recorders.add("THIRD", "ONE");
  windowing.ini["velmor_cd/drive"] = "1";
  EXPECT_THAT(journalOfOneBurn(),
              ElementsAre("DeviceCount", "DeviceAt 0", "DeviceCount", "DeviceAt 1", "IsValid 1",
                          "AcquireExclusiveAccess 1", "BurnForDevice 1", "SetProperties",
                          "RunProgressPanel", "ReleaseExclusiveAccess 1"));
  EXPECT_EQ(m_recorders.lookups, 2) << "once to list, once to burn";
}

TEST_F(Burn, AnInvalidRecorderIsNotTouchedAndNothingIsSaid) {
  m_recorders.devices[0].valid = false;
  EXPECT_THAT(journalOfOneBurn(),
              ElementsAre("DeviceCount", "DeviceAt 0", "IsValid 0", "DeviceCount"));
  EXPECT_THAT(calls("MessageBox"), IsEmpty());
}

TEST_F(Burn, ARecorderThatIsGoneIsLookedForToTheEndOfTheList) {
  m_recorders.add("ACME", "OTHER");
  albumAnd([this](Window& dialog) {
    m_recorders.devices[0].is_null = true;
    m_recorders.journal.clear();
    press(dialog, kOk);
    EXPECT_THAT(m_recorders.journal, ElementsAre("DeviceCount", "DeviceAt 0", "DeviceCount",
                                                 "DeviceAt 1", "DeviceCount"));
    m_recorders.devices.clear();
    m_recorders.journal.clear();
    press(dialog, kOk);
    EXPECT_THAT(m_recorders.journal, ElementsAre("DeviceCount"));
    m_recorders.is_there = false;
    press(dialog, kOk);
    EXPECT_THAT(calls("MessageBox"), IsEmpty());
    EXPECT_FALSE(dialog.ended);
  });
}

TEST_F(Burn, WithoutExclusiveAccessNothingIsBurnedOrReleased) {
  m_recorders.grants_access = false;
  EXPECT_THAT(journalOfOneBurn(),
              ElementsAre("DeviceCount", "DeviceAt 0", "IsValid 0", "AcquireExclusiveAccess 0"));
  EXPECT_THAT(calls("MessageBox"), IsEmpty());
}

TEST_F(Burn, WithoutABurnTheRecorderIsReleased) {
  m_recorders.gives_burn = false;
  EXPECT_THAT(journalOfOneBurn(),
              ElementsAre("DeviceCount", "DeviceAt 0", "IsValid 0", "AcquireExclusiveAccess 0",
                          "BurnForDevice 0", "ReleaseExclusiveAccess 0"));
  EXPECT_THAT(calls("MessageBox"), IsEmpty());
}

TEST_F(Burn, AServiceThatComesUpAfterTheListIsAskedForTheBurn) {
  m_recorders.is_there = false;
  albumAnd([this](Window& dialog) {
    m_recorders.is_there = true;
    Window& drives = *dialog.control(kDrive);
    drives.items = {"ACME BURNER"};
    drives.item_data = {reinterpret_cast<intptr_t>(m_recorders.handle(0))};
    drives.selection = 0;
    press(dialog, kOk);
  });
  EXPECT_EQ(m_recorders.panels, 1);
}

// The properties.

TEST_F(Burn, OverwritesAndClosesTheDiscForGood) {
  journalOfOneBurn();
  EXPECT_FALSE(m_recorders.properties.testing);
  EXPECT_FALSE(m_recorders.properties.appendable);
  EXPECT_TRUE(m_recorders.properties.overwrite);
  EXPECT_FALSE(m_recorders.properties.verify);
}

TEST_F(Burn, WithEjectTheDiscComesOutOnSuccessAndOnFailure) {
  windowing.ini["velmor_cd/eject"] = "1";
  journalOfOneBurn();
  EXPECT_EQ(m_recorders.properties.completion_action, 1);
  EXPECT_EQ(m_recorders.properties.failure_action, 1) << "the same as on success, on purpose";
}

TEST_F(Burn, WithoutEjectTheDiscIsMountedOnSuccessAndLeftOnFailure) {
  windowing.ini["velmor_cd/eject"] = "0";
  journalOfOneBurn();
  EXPECT_EQ(m_recorders.properties.completion_action, 2);
  EXPECT_EQ(m_recorders.properties.failure_action, 0);
}

TEST_F(Burn, TheEjectBoxCountsAsItIsWhenTheButtonIsPressed) {
  albumAnd([this](Window& dialog) {
    dialog.control(kEject)->checked = 0;
    press(dialog, kOk);
    EXPECT_EQ(m_recorders.properties.completion_action, 2);
    dialog.control(kEject)->checked = 1;
    press(dialog, kOk);
    EXPECT_EQ(m_recorders.properties.completion_action, 1);
  });
}

// The tracks.

TEST_F(Burn, TracksAreAudioOfWholeSectorsWithoutPregap) {
  journalOfOneBurn();
  ASSERT_THAT(m_recorders.tracks, SizeIs(3));
  for (const DiscTrack& track : m_recorders.tracks) {
    EXPECT_NE(track.producer, nullptr);
    EXPECT_EQ(track.pregap_length, 0);
    EXPECT_EQ(track.data_form, 0);
    EXPECT_EQ(track.track_mode, 0);
    EXPECT_EQ(track.block_type, 0);
    EXPECT_EQ(track.session_format, 0);
    EXPECT_EQ(track.block_size, kSector);
    EXPECT_EQ(track.track_length, 375);
  }
}

TEST_F(Burn, TracksBeginInTheSectorThatHoldsTheirStart) {
  host.marks = {fake_host::marker(0.0, "One"), fake_host::marker(5.0, "Two"),
                fake_host::marker(10.01, "Three")};
  renderAnd(15.0, [this](Window& dialog) {
    press(dialog, kOk);
    EXPECT_THAT(lengths(m_recorders.tracks), ElementsAre(375, 375, 375))
        << "10.01 s lies in sector 750";
  });
}

TEST_F(Burn, TrackOneBeginsWithTheLeadInOfTheDisc) {
  m_recorders.on_panel = [this](const DiscTrack* tracks, int) {
    EXPECT_EQ(produce(tracks[0]), image().substr(0, 525 * kSector));
  };
  albumAnd(
      [this](Window& dialog) {
        EXPECT_EQ(dialog.control(kTracks)->rows[0][2], "5.000") << "its duration is shown without";
        press(dialog, kOk);
        EXPECT_THAT(lengths(m_recorders.tracks), ElementsAre(525, 375, 375));
      },
      {.disc_leadin_ms = 2000});
  EXPECT_EQ(m_recorders.panels, 1);
}

TEST_F(Burn, TheTracksTogetherAreTheImage) {
  albumAnd(
      [this](Window& dialog) {
        std::string disc;
        m_recorders.on_panel = [&disc](const DiscTrack* tracks, int count) {
          for (int i = 0; i < count; ++i) {
            const std::string audio = produce(tracks[i], 30576);
            EXPECT_EQ(audio.size(), static_cast<size_t>(tracks[i].track_length) * kSector);
            EXPECT_EQ(tracks[i].producer->EstimateLengthOfTrack(),
                      static_cast<uint64_t>(tracks[i].track_length));
            disc += audio;
          }
        };
        press(dialog, kOk);
        EXPECT_EQ(disc, image());
      },
      {.disc_leadin_ms = 1234, .track_leadin_ms = 567});
}

TEST_F(Burn, ProducersAgreeToEverythingElse) {
  bool asked = false;
  m_recorders.on_panel = [&asked](const DiscTrack* tracks, int) {
    asked = true;
    DiscTrackProducer& producer = *tracks[0].producer;
    EXPECT_TRUE(producer.PrepareTrack());
    std::string gap(4704, 'x');
    EXPECT_EQ(producer.ProducePreGap(gap.data(), 4704), 4704u);
    EXPECT_EQ(gap, std::string(4704, '\0'));
    producer.CleanupTrackAfterBurn();
    EXPECT_TRUE(producer.PrepareTrackForVerification());
    EXPECT_TRUE(producer.VerifyPreGap("other", 5));
    EXPECT_TRUE(producer.VerifyData("other", 5));
    EXPECT_TRUE(producer.CleanupTrackAfterVerification());
  };
  journalOfOneBurn();
  EXPECT_TRUE(asked);
}

// Images that change under the dialog.

TEST_F(Burn, AnImageThatGrewBySomeBytesEndsWithAShortRead) {
  albumAnd([this](Window& dialog) {
    fake_host::writeText(file("disc.bin"), image() + std::string(100, 'z'));
    m_recorders.on_panel = [this](const DiscTrack* tracks, int) {
      EXPECT_EQ(tracks[2].track_length, 376) << "rounded up to a whole sector";
      const std::string audio = produce(tracks[2]);
      EXPECT_EQ(audio, image().substr(750 * kSector)) << "and not filled up by the module";
    };
    press(dialog, kOk);
    EXPECT_EQ(m_recorders.panels, 1);
  });
}

TEST_F(Burn, AnImageThatShrankGivesWhatItStillHas) {
  albumAnd([this](Window& dialog) {
    std::filesystem::resize_file(file("disc.bin"), 400 * kSector + 10);
    m_recorders.on_panel = [](const DiscTrack* tracks, int) {
      EXPECT_EQ(tracks[0].track_length, 375);
      EXPECT_EQ(tracks[1].track_length, 375);
      EXPECT_EQ(tracks[2].track_length, 401 - 750)
          << "a negative length is for the service to refuse";
      EXPECT_EQ(produce(tracks[0]).size(), size_t{375 * kSector});
      EXPECT_EQ(produce(tracks[1]).size(), size_t{25 * kSector + 10});
      EXPECT_EQ(produce(tracks[2]), "");
    };
    press(dialog, kOk);
    EXPECT_EQ(m_recorders.panels, 1);
  });
}

TEST_F(Burn, AnEmptiedImageGivesNothing) {
  albumAnd([this](Window& dialog) {
    fake_host::writeText(file("disc.bin"), "");
    m_recorders.on_panel = [](const DiscTrack* tracks, int count) {
      for (int i = 0; i < count; ++i) EXPECT_EQ(produce(tracks[i]), "");
    };
    press(dialog, kOk);
    EXPECT_EQ(m_recorders.panels, 1);
  });
}

// Locks and descriptors.

TEST_F(Burn, HoldsTheImageUnderASharedLockForAsLongAsItLasts) {
  albumAnd([this](Window& dialog) {
    EXPECT_TRUE(anotherProcessCanLock(file("disc.bin"), LOCK_EX)) << "before";
    m_recorders.on_panel = [this](const DiscTrack*, int) {
      EXPECT_TRUE(anotherProcessCanLock(file("disc.bin"), LOCK_SH));
      EXPECT_FALSE(anotherProcessCanLock(file("disc.bin"), LOCK_EX));
    };
    press(dialog, kOk);
    EXPECT_EQ(m_recorders.panels, 1);
    EXPECT_TRUE(anotherProcessCanLock(file("disc.bin"), LOCK_EX)) << "after";
  });
}

TEST_F(Burn, ReleasesTheLockAlsoWhenThereIsNoBurn) {
  m_recorders.gives_burn = false;
  albumAnd([this](Window& dialog) {
    press(dialog, kOk);
    EXPECT_TRUE(anotherProcessCanLock(file("disc.bin"), LOCK_EX));
  });
}

TEST_F(Burn, AnImageThatAnotherProcessHoldsIsBurnedAllTheSame) {
  albumAnd([this](Window& dialog) {
    const LockHolder other(file("disc.bin"), LOCK_EX);
    std::string disc;
    m_recorders.on_panel = [&disc](const DiscTrack* tracks, int count) {
      for (int i = 0; i < count; ++i) disc += produce(tracks[i]);
    };
    press(dialog, kOk);
    EXPECT_EQ(disc, image());
  });
}

TEST_F(Burn, AThousandBurnsLeaveNoDescriptorOpen) {
  m_recorders.on_panel = [](const DiscTrack* tracks, int) {
    char sector[kSector];
    EXPECT_EQ(tracks[1].producer->ProduceData(sector, kSector), uint32_t{kSector});
  };
  albumAnd([this](Window& dialog) {
    const int before = openDescriptors();
    for (int i = 0; i < 1000; ++i) {
      m_recorders.gives_burn = i % 4 != 1;
      m_recorders.grants_access = i % 4 != 2;
      press(dialog, kOk);
      m_recorders.journal.clear();
      windowing.calls.clear();
    }
    EXPECT_EQ(m_recorders.panels, 500);
    EXPECT_EQ(openDescriptors(), before);
  });
}

// What the host throws passes through.

struct Thrown : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class BurnThrown : public OpenDialogCase {
 protected:
  /// Finishes a render whose dialog acts so; the exception is to arrive.
  void expectThrownFrom(const std::function<void(Window&)>& act) {
    fake_host::Sink sink = createSink(std::string(80, 'n') + ".cue", {.burn_after_render = 1});
    ASSERT_TRUE(sink);
    sink.writeSignal(588);
    windowing.on_modal = act;
    EXPECT_THROW(sink.finish(), Thrown);
    EXPECT_EQ(sink.finish(), 1) << "the render is finished, once and for all";
    windowing.dialogs.clear();
  }
};

TEST_F(BurnThrown, ByTheDialogReachesTheHostAndLeavesTheImage) {
  expectThrownFrom([](Window&) { throw Thrown("by the dialog"); });
  EXPECT_TRUE(fileExists(file(std::string(80, 'n') + ".bin")));
}

TEST_F(BurnThrown, LeavesNothingOfTheDialogBehind) {
  const auto in_use = [] { return mallinfo2().uordblks; };
  const auto round = [this] {
    expectThrownFrom([](Window&) { throw Thrown("by the dialog"); });
    windowing.calls.clear();
    windowing.lookups.clear();
    windowing.requests.clear();
    windowing.layouts.clear();
    host.journal.clear();
    host.marker_calls.clear();
    host.metadata_calls.clear();
    host.localize_calls.clear();
    host.prepare_calls.clear();
    m_recorders.journal.clear();
  };
  for (int i = 0; i < 20; ++i) round();
  const size_t before = in_use();
  constexpr size_t kRounds = 400;
  for (size_t i = 0; i < kRounds; ++i) round();
  // The two paths alone, of over a hundred bytes each, would be more; the leak checker of the
  // sanitizer build sees a single one.
  EXPECT_LT(in_use(), before + kRounds * 100);
}

TEST_F(BurnThrown, ByThePanelGivesTheRecorderAndTheImageBack) {
  const std::string image = file(std::string(80, 'n') + ".bin");
  m_recorders.on_panel = [](const DiscTrack*, int) { throw Thrown("by the panel"); };
  const int before = openDescriptors();
  expectThrownFrom([](Window& dialog) { press(dialog, kOk); });
  EXPECT_EQ(m_recorders.journal.back(), "ReleaseExclusiveAccess 0");
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_TRUE(anotherProcessCanLock(image, LOCK_EX));
}

TEST_F(BurnThrown, ByTheBurnLeavesTheDialogUsable) {
  m_recorders.on_panel = [](const DiscTrack*, int) { throw Thrown("by the panel"); };
  albumAnd([this](Window& dialog) {
    EXPECT_THROW(WindowingLayer::send(dialog, WM_COMMAND, kOk), Thrown);
    m_recorders.on_panel = nullptr;
    press(dialog, kOk);
    EXPECT_EQ(m_recorders.panels, 2);
  });
}

}  // namespace
}  // namespace burn_test
