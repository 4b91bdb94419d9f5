// A burn from the render's end to the recorder's last block, through nothing but the module's
// binary interfaces. Run on the module of this system and on the dylib, which must do the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "abi/disc_recording.h"
#include "tests/fake_host/session.h"

namespace {

using fake_host::marker;
using fake_host::Window;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kDriveBox = 1015;
constexpr int kEjectBox = 1016;
constexpr int kSector = 2352;

// A recording service that takes every track whole, block by block, in the order its test wants.
class TrackTakingService final : public DiscRecordingService {
 public:
  struct Track {
    int length;
    std::string data;
    bool operator==(const Track&) const = default;
  };

  int DeviceCount() override { return 2; }
  void* DeviceAt(int index) override { return &m_devices[index]; }
  const char* VendorName(void* device) override {
    return device == &m_devices[0] ? "ACME" : nullptr;
  }
  const char* ProductName(void* /*device*/) override { return "CD-1"; }
  bool IsValid(void* device) override { return note("IsValid", device) && valid; }
  bool AcquireExclusiveAccess(void* device) override { return note("Acquire", device) && grants; }
  void ReleaseExclusiveAccess(void* device) override { note("Release", device); }
  void* BurnForDevice(void* device) override {
    return note("Burn", device) && gives_burn ? &m_burn : nullptr;
  }
  void SetProperties(void* burn, const DiscBurnProperties* given) override {
    EXPECT_EQ(burn, &m_burn);
    properties = *given;
  }
  void RunProgressPanel(void* burn, const DiscTrack* given, int count) override {
    EXPECT_EQ(burn, &m_burn);
    for (int i = 0; i < count; ++i) tracks.push_back(record(given[i]));
    // Verification starts the track anew, whichever was read last.
    for (int i = 0; i < count; ++i) {
      EXPECT_TRUE(given[i].producer->PrepareTrackForVerification());
      EXPECT_EQ(record(given[i]), tracks[static_cast<size_t>(i)]);
      EXPECT_TRUE(given[i].producer->VerifyPreGap(nullptr, 0));
      EXPECT_TRUE(given[i].producer->VerifyData(nullptr, 0));
      EXPECT_TRUE(given[i].producer->CleanupTrackAfterVerification());
    }
    ++panels;
  }

  bool valid = true, grants = true, gives_burn = true;
  std::vector<std::string> calls;
  DiscBurnProperties properties{};
  std::vector<Track> tracks;
  int panels = 0;

 private:
  bool note(const std::string& call, const void* device) {
    calls.push_back(call + (device == &m_devices[0] ? " first" : " second"));
    return true;
  }
  static Track record(const DiscTrack& track) {
    EXPECT_EQ(track.pregap_length, 0);
    EXPECT_EQ(track.data_form, 0);
    EXPECT_EQ(track.track_mode, 0);
    EXPECT_EQ(track.block_type, 0);
    EXPECT_EQ(track.session_format, 0);
    EXPECT_EQ(track.block_size, kSector);
    EXPECT_TRUE(track.producer->PrepareTrack());
    EXPECT_EQ(track.producer->EstimateLengthOfTrack(), static_cast<uint64_t>(track.track_length));
    std::string gap(kSector, 'x');
    EXPECT_EQ(track.producer->ProducePreGap(gap.data(), kSector), static_cast<uint32_t>(kSector));
    EXPECT_EQ(gap, std::string(kSector, '\0'));
    Track recorded{track.track_length, {}};
    std::string buffer(size_t{10} * kSector, '\0');
    while (const uint32_t n =
               track.producer->ProduceData(buffer.data(), static_cast<uint32_t>(buffer.size()))) {
      recorded.data.append(buffer, 0, n);
    }
    track.producer->CleanupTrackAfterBurn();
    return recorded;
  }

  char m_devices[2] = {};
  char m_burn = 0;
};

TrackTakingService* g_recorder;

}  // namespace

extern "C" DiscRecordingService* velmorGetDiscRecording();
DiscRecordingService* velmorGetDiscRecording() {
  return g_recorder;
}

namespace {

class HostedBurn : public fake_host::BoundSession, public testing::Test {
 protected:
  HostedBurn() { g_recorder = &m_recorder; }
  ~HostedBurn() override { g_recorder = nullptr; }

  // Renders ten seconds in two tracks, picks a recorder in the dialog and presses its button.
  void renderAndBurn(int drive, bool eject) {
    host.marks = {marker(0.0, "One"), marker(6.0, "Two")};
    windowing.on_modal = [=, this](Window& dialog) {
      Window& drives = *dialog.control(kDriveBox);
      m_entries = drives.items;
      drives.selection = drive;
      dialog.control(kEjectBox)->checked = eject ? 1 : 0;
      fake_host::WindowingLayer::send(dialog, WM_COMMAND, IDOK);
    };
    fake_host::Sink sink = createSink("disc.cue", {.burn_after_render = 1});
    sink.writeSignal(10 * 44100);
    sink.finish();
  }

  TrackTakingService m_recorder;
  std::vector<std::string> m_entries;
};

TEST_F(HostedBurn, PutsTheImageOnTheDiscTrackByTrack) {
  renderAndBurn(1, false);
  EXPECT_THAT(m_entries, ElementsAre("ACME CD-1", "CD-1"));
  EXPECT_THAT(m_recorder.calls,
              ElementsAre("IsValid second", "Acquire second", "Burn second", "Release second"));
  const std::string image = fake_host::readText(file("disc.bin"));
  ASSERT_EQ(image.size(), size_t{750} * kSector);
  ASSERT_EQ(m_recorder.tracks.size(), 2U);
  EXPECT_EQ(m_recorder.tracks[0].length, 450);
  EXPECT_EQ(m_recorder.tracks[1].length, 300);
  EXPECT_TRUE(m_recorder.tracks[0].data + m_recorder.tracks[1].data == image);
}

TEST_F(HostedBurn, TellsTheRecorderWhatToDoWithTheDisc) {
  for (const bool eject : {false, true}) {
    renderAndBurn(0, eject);
    EXPECT_FALSE(m_recorder.properties.testing);
    EXPECT_FALSE(m_recorder.properties.appendable);
    EXPECT_TRUE(m_recorder.properties.overwrite);
    EXPECT_FALSE(m_recorder.properties.verify);
    EXPECT_EQ(m_recorder.properties.completion_action, eject ? kDiscActionEject : kDiscActionMount);
    EXPECT_EQ(m_recorder.properties.failure_action, eject ? kDiscActionEject : kDiscActionNone);
  }
  EXPECT_EQ(m_recorder.panels, 2);
}

TEST_F(HostedBurn, EndsSilentlyAtTheFirstStepThatFails) {
  m_recorder.gives_burn = false;
  renderAndBurn(0, false);
  EXPECT_THAT(m_recorder.calls,
              ElementsAre("IsValid first", "Acquire first", "Burn first", "Release first"));
  m_recorder.calls.clear();
  m_recorder.grants = false;
  renderAndBurn(0, false);
  EXPECT_THAT(m_recorder.calls, ElementsAre("IsValid first", "Acquire first"));
  m_recorder.calls.clear();
  m_recorder.valid = false;
  renderAndBurn(0, false);
  EXPECT_THAT(m_recorder.calls, ElementsAre("IsValid first"));
  EXPECT_EQ(m_recorder.panels, 0);
}

TEST_F(HostedBurn, WithoutAServiceNoRecorderIsListed) {
  g_recorder = nullptr;
  renderAndBurn(-1, false);
  EXPECT_THAT(m_entries, IsEmpty());
}

}  // namespace
