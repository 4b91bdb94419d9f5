// Every allocation that the recording library makes for itself fails in turn, once and from then
// on, from its opening to its end. Either the disc holds the image, or somebody hears why not; the
// drive is given back each time, and records the next disc.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <fstream>
#include <new>
#include <stdexcept>

#include "disc/failure.h"
#include "host/recording/loader/load_recording.h"
#include "tests/host/recording/emulated_drive_folder.h"
#include "tests/host/recording/loader/library_file.h"
#include "tests/host/recording/scripted_user_interface.h"
#include "tests/kit/faults/live_blocks.h"
#include "tests/kit/faults/system_calls.h"

namespace velmor::recording::testing {
namespace {

using test_kit::SystemCalls;
using test_kit::Times;

/// A burn takes a tenth of a second: every test run tries one allocation in so many, and
/// VELMOR_FAULT_STEP says another number.
constexpr int kStep = 3;

/// What came of a burn that may have lacked memory.
struct Ended {
  bool threw = false;  ///< std::bad_alloc, or a `Failure`
  Outcome outcome;
};

constexpr const char* kSheet = R"(TITLE "An Album"
CATALOG 4006381333931
FILE "album.bin" BINARY
  TRACK 01 AUDIO
    TITLE "One"
    ISRC DEABC2000001
    INDEX 01 00:00:00
  TRACK 02 AUDIO
    TITLE "Two"
    INDEX 01 00:04:00
)";

class RecordingFaults : public ::testing::TestWithParam<Times> {
 protected:
  RecordingFaults() {
    m_options.text_sheet = m_drives.folder(0) / "album.cue";
    std::ofstream(m_options.text_sheet) << kSheet;
    m_options.layout = {{std::nullopt, 0}, {300, 302}};
    m_options.verify = true;
    m_options.user_interface = &m_person;
    m_person.blank = true;
  }

  /// What the burn engine does, in its order, with the service closed whatever happens.
  Ended burn() {
    Ended ended;
    Service* service = nullptr;
    try {
      service = loadRecording(kLibrary, m_options);
      burnWith(*service);
    } catch (const std::bad_alloc&) {
      ended.threw = true;
    } catch (const Failure&) {
      ended.threw = true;
    }
    if (service == nullptr) return ended;
    ended.outcome = service->outcome();
    service->close();
    return ended;
  }

  void burnWith(Service& service) {
    service.refresh();
    if (service.DeviceCount() == 0) return;
    void* const device = service.DeviceAt(0);
    if (!service.AcquireExclusiveAccess(device)) return;
    try {
      void* const handle = service.BurnForDevice(device);
      service.SetProperties(handle, &m_properties);
      const Programme programme({300, 310});
      if (m_breaks_off) programme.producers[1]->short_at_sector = 40;
      service.RunProgressPanel(handle, programme.tracks.data(), programme.count());
    } catch (...) {
      service.ReleaseExclusiveAccess(device);
      throw;
    }
    service.ReleaseExclusiveAccess(device);
  }

  /// Burns with each allocation failing, until none is left to fail; how many there were.
  int burnWithFaults() {
    const char* const step = getenv("VELMOR_FAULT_STEP");
    for (int nth = 1;; nth += step != nullptr ? atoi(step) : kStep) {
      m_drives.insert(0, EmulatedDriveFolder::closed(EmulatedDriveFolder::rewritable()));
      m_person.failures.clear();
      const int blocks = test_kit::liveBlocks();
      SystemCalls calls;
      calls.watchOnly("/velmor_recording.so");
      calls.failAllocation(nth, GetParam());
      const Ended ended = burn();
      calls.failAllocation(INT_MAX, GetParam());
      const std::string about = "allocation " + std::to_string(nth);
      expectGoodEnd(ended, about);
      EXPECT_EQ(test_kit::liveBlocks(), blocks) << about << ": memory was kept";
      if (calls.allocations() < nth) return calls.allocations();
      if (nth > 5000) throw std::runtime_error("no end of allocations");
    }
  }

  void expectGoodEnd(const Ended& ended, const std::string& about) {
    if (ended.outcome.written) {
      EXPECT_FALSE(m_breaks_off) << about;
      EXPECT_EQ(m_drives.audio(0), noise(610)) << about;
      EXPECT_EQ(ended.outcome.failure, "") << about;
      return;
    }
    EXPECT_TRUE(ended.threw || !ended.outcome.failure.empty()) << about << ": nobody heard of it";
  }

  const EmulatedDriveFolder m_drives;
  ScriptedUserInterface m_person;
  RecordingOptions m_options;
  bool m_breaks_off = false;  ///< the image
  const DiscBurnProperties m_properties{false,          false, true, false, kDiscActionMount,
                                        kDiscActionNone};
};

INSTANTIATE_TEST_SUITE_P(Allocations, RecordingFaults,
                         ::testing::Values(Times::kOnce, Times::kFromThenOn),
                         [](const auto& parameter) {
                           return parameter.param == Times::kOnce ? "Once" : "FromThenOn";
                         });

TEST_P(RecordingFaults, WhicheverAllocationFailsTheDiscIsGoodOrSomebodyHearsWhyNot) {
  ASSERT_TRUE(burn().outcome.written);  // and the library is loaded from here on
  EXPECT_GT(burnWithFaults(), 30);
  m_drives.insert(0, emulated_drive::EmulatedDisc());
  EXPECT_TRUE(burn().outcome.written);
}

TEST_P(RecordingFaults, WhicheverAllocationFailsAnImageThatEndsEarlyMakesNoGoodDisc) {
  m_breaks_off = true;
  ASSERT_THAT(burn().outcome.failure, ::testing::HasSubstr("00:04:40"));
  EXPECT_GT(burnWithFaults(), 30);
}

}  // namespace
}  // namespace velmor::recording::testing
