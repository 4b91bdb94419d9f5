// Every allocation and every system call from the end of a render to the end of its burn fails in
// turn, once and from then on, until a run passes without a failure: the dialog goes on, nothing is
// kept back, and no wrong byte is given to the recorder.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "tests/kit/faults/live_blocks.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/kit/whole_files.h"
#include "tests/module/burn/open_dialog_case.h"

namespace burn_test {
namespace {

using fake_host::Sink;
using fake_host::Window;
using test_kit::Call;
using test_kit::SystemCalls;
using test_kit::Times;

constexpr uint32_t kBlock = 4 * 2352;
constexpr int kTries = 4;  ///< of a recorder that asks again for what it was not given

class BurnFaults : public OpenDialogCase, public testing::WithParamInterface<Times> {
 protected:
  BurnFaults() {
    host.marks = {fake_host::marker(0.0, "One"), fake_host::marker(5.0, "Two")};
    m_recorders.on_panel = [this](const DiscTrack* tracks, int count) { record(tracks, count); };
    windowing.on_modal = [](Window& dialog) {
      dialog.control(kDelete)->checked = 1;
      press(dialog, kOk);
    };
  }

  /// All tracks, one after the other, as a recorder takes them. A block that is not given whole is
  /// asked for again, from where it broke off.
  void record(const DiscTrack* tracks, int count) {
    const std::string image = test_kit::contentOf(file("disc.bin"));
    size_t at = 0;
    for (int i = 0; i < count; ++i) {
      const size_t track_end = at + static_cast<size_t>(tracks[i].track_length) * 2352;
      const size_t end = std::min(track_end, image.size());
      int tries = kTries;
      while (at < end && tries > 0) {
        std::string block(kBlock, '?');
        const uint32_t got = tracks[i].producer->ProduceData(block.data(), kBlock);
        if (got > kBlock || got == 0) {
          --tries;
          continue;
        }
        EXPECT_TRUE(image.compare(at, got, block, 0, got) == 0) << "wrong audio at byte " << at;
        at += got;
      }
      if (at < end) {
        ++m_broken_off;
        return;
      }
    }
  }

  /// From the finish of a render to the sink's end; made beforehand without a fault.
  void finishUnder(SystemCalls& calls) {
    calls.watchOnly("/module.so");
    m_blocks = test_kit::liveBlocks();
    Sink sink = createSink("disc.cue", {.burn_after_render = 1});
    ASSERT_TRUE(sink);
    m_audio.writeTo(*sink.get());
    m_broken_off = 0;
    m_recorders.journal.clear();
    m_recorders.panels = 0;
    windowing.calls.clear();
    windowing.requests.clear();
    windowing.ini.clear();
    m_prepare(calls);
    EXPECT_EQ(sink.finish(parent()), 1);
    sink.destroy();
  }

  int journalled(const std::string& call) const {
    return static_cast<int>(
        std::count(m_recorders.journal.begin(), m_recorders.journal.end(), call));
  }

  void expectGoodEnd(const SystemCalls& calls, int descriptors, const std::string& about) {
    EXPECT_EQ(fake_host::openDescriptors(), descriptors) << about;
    EXPECT_EQ(test_kit::liveBlocks(), m_blocks) << about;
    EXPECT_EQ(windowing.requests.size(), 1U) << about;
    EXPECT_EQ(journalled("AcquireExclusiveAccess 0"), journalled("ReleaseExclusiveAccess 0"))
        << about;
    EXPECT_LE(m_recorders.panels, 1) << about;
    if (m_recorders.panels == 0) {
      EXPECT_EQ(journalled("BurnForDevice 0"), 0) << about;
    }
    const std::vector<test_kit::CallRecord> unlinks = calls.records(Call::kUnlink);
    ASSERT_EQ(unlinks.size(), 2U) << about;
    EXPECT_EQ(fake_host::fileExists(file("disc.cue")), unlinks[0].result != 0) << about;
    EXPECT_EQ(fake_host::fileExists(file("disc.bin")), unlinks[1].result != 0) << about;
    for (const char* const key : {"eject", "deletefiles", "method", "drive"}) {
      EXPECT_EQ(windowing.ini.count(std::string("velmor_cd/") + key), 1U) << about;
    }
  }

  bool isOnce() const { return GetParam() == Times::kOnce; }

  std::function<void(SystemCalls&)> m_prepare;
  fake_host::SignalBlock m_audio{9 * 44100 + 100};
  int m_blocks = 0;
  int m_broken_off = 0;
};

INSTANTIATE_TEST_SUITE_P(Faults, BurnFaults, testing::Values(Times::kOnce, Times::kFromThenOn),
                         [](const auto& parameter) {
                           return parameter.param == Times::kOnce ? "Once" : "FromThenOn";
                         });

TEST_P(BurnFaults, WhicheverSystemCallFailsNoWrongAudioIsBurnedAndTheDialogGoesOn) {
  const int descriptors = fake_host::openDescriptors();
  for (int nth = 1;; ++nth) {
    ASSERT_LT(nth, 300) << "no end of calls";
    SystemCalls calls;
    m_prepare = [&](SystemCalls& all) {
      all.forget();
      all.failSystemCall(nth, GetParam(), EIO);
    };
    finishUnder(calls);
    const std::string about = "call " + std::to_string(nth);
    expectGoodEnd(calls, descriptors, about);
    const bool opened = calls.records(Call::kOpen).at(0).result >= 0;
    EXPECT_EQ(m_recorders.panels, opened ? 1 : 0) << about;
    EXPECT_EQ(this->calls("MessageBox").size(), opened ? 0U : 1U) << about;
    if (isOnce()) {
      EXPECT_EQ(m_broken_off, 0) << about << ": what failed once is given when asked for again";
    }
    if (calls.systemCallCount() >= nth) continue;
    EXPECT_GT(nth, 30) << "the files are finished, and the image is opened, read and closed";
    break;
  }
}

TEST_P(BurnFaults, WhicheverAllocationFailsNoWrongAudioIsBurnedAndTheDialogGoesOn) {
  const int descriptors = fake_host::openDescriptors();
  for (int nth = 1;; ++nth) {
    ASSERT_LT(nth, 100) << "no end of allocations";
    SystemCalls calls;
    m_prepare = [&](SystemCalls& all) {
      all.forget();
      all.failAllocation(nth, GetParam());
    };
    finishUnder(calls);
    const std::string about = "allocation " + std::to_string(nth);
    expectGoodEnd(calls, descriptors, about);
    EXPECT_EQ(m_broken_off, 0) << about;
    if (calls.allocations() >= nth) continue;
    EXPECT_EQ(m_recorders.panels, 1);
    EXPECT_GT(nth, 5) << "paths, offsets, tracks and the reader's buffer take memory";
    break;
  }
}

}  // namespace
}  // namespace burn_test
