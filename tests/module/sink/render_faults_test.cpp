// Every allocation and every system call of a render fails in turn, once and from then on, until a
// run passes without a failure: the module keeps running, gives everything back, tells the host
// what is to be told, and leaves exactly what reached the disk.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <filesystem>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/fake_host/files.h"
#include "tests/kit/faults/live_blocks.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

using fake_host::SignalBlock;
using test_kit::Call;
using test_kit::CallRecord;
using test_kit::SystemCalls;
using test_kit::Times;
using testing::Each;
using testing::HasSubstr;
using testing::Pair;

constexpr int64_t kBuffer = 131072;
constexpr const char* kLong = "a text that is longer than a short string would hold";
constexpr const char* kOldImage = "the image of an older album";
constexpr const char* kOldSheet = "the sheet of an older album";

/// The bytes that were in the buffer when it was written out: whole buffers, and a rest.
std::vector<std::string> pieces(const std::string& image) {
  std::vector<std::string> found;
  for (size_t at = 0; at < image.size(); at += kBuffer) found.push_back(image.substr(at, kBuffer));
  return found;
}

class RenderFaults : public RenderCase, public testing::WithParamInterface<std::tuple<Times, int>> {
 protected:
  RenderFaults() {
    host.metadata = {{"CUE:DISC_TITLE", kLong}, {"CUE:DISC_PERFORMER", "p"}};
    host.marks = {marker(0.0, kLong), region(0.0, 4.5, kLong), marker(5.0, kLong),
                  region(5.0, 30.0, kLong), marker(6.0, std::string("PERF=") + kLong)};
    lookAtAGoodRender();
  }
  void lookAtAGoodRender() {
    EXPECT_TRUE(renderOnce());
    m_image = readText(m_image_path);
    m_sheet = readText(m_sheet_path);
  }

  bool isOnce() const { return std::get<0>(GetParam()) == Times::kOnce; }
  Times times() const { return std::get<0>(GetParam()); }

  /// A whole render; whether there was a sink. What the test itself needs is made beforehand.
  bool renderOnce() {
    PCM_sink* const made = registration().CreateSink(m_sheet_path.c_str(), &m_config,
                                                     sizeof m_config, 2, 44100, false);
    if (made == nullptr) return false;
    for (SignalBlock& block : m_audio) block.writeTo(*made);
    m_unpadded = static_cast<size_t>(std::llround(made->GetLength() * 44100.0)) * 4;
    EXPECT_EQ(made->Extended(kSinkRenderFinished, nullptr, nullptr, nullptr), 1);
    delete made;
    return true;
  }

  void prepare(bool old_album) {
    std::filesystem::remove(m_image_path);
    std::filesystem::remove(m_sheet_path);
    if (old_album) {
      fake_host::writeText(m_image_path, kOldImage);
      fake_host::writeText(m_sheet_path, kOldSheet);
    }
    host.disk_counters.clear();
  }

  static std::string left(const std::string& path) {
    return fake_host::fileExists(path) ? readText(path) : "";
  }

  /// The writes to one of the two files, which are opened in a fixed order.
  static std::vector<CallRecord> writesTo(const SystemCalls& calls, size_t file) {
    const std::vector<CallRecord> opens = calls.records(Call::kOpen);
    std::vector<CallRecord> found;
    for (const CallRecord& write : calls.records(Call::kPwrite)) {
      if (file < opens.size() && write.fd == opens[file].fd) found.push_back(write);
    }
    return found;
  }

  /// What the image holds when these writes were made: the pieces that the system took, one behind
  /// the other, and the padding of what really lies there.
  std::string imageOf(const std::vector<CallRecord>& writes) const {
    const std::vector<std::string> whole = pieces(m_image);
    EXPECT_EQ(writes.size(), whole.size());
    std::string image;
    for (size_t i = 0; i < std::min(writes.size(), whole.size()); ++i) {
      std::string piece = whole[i];
      if (i + 1 == whole.size()) {
        piece.resize(m_unpadded % kBuffer);
        const size_t beyond = (image.size() + piece.size()) % 2352;
        if (beyond > 0) piece.append(2352 - beyond, '\0');
      }
      if (writes[i].result >= 0) image += piece;
    }
    return image;
  }

  /// Each whole buffer that was lost has been told, the rest at the end is told by nobody.
  void expectTold(const std::vector<CallRecord>& writes, const std::string& about) const {
    const auto lost = std::count_if(writes.begin(), writes.end(), [](const CallRecord& write) {
      return write.result < 0 && write.size == kBuffer;
    });
    EXPECT_EQ(host.disk_counters.size(), static_cast<size_t>(lost)) << about;
    EXPECT_THAT(host.disk_counters, Each(Pair(0, -101010110))) << about;
  }

  /// Without a sink: the host is told by the null alone, and a file is at most emptied.
  void expectNothingWritten(const SystemCalls& calls, bool old_album,
                            const std::string& about) const {
    EXPECT_THAT(host.disk_counters, testing::IsEmpty()) << about;
    const std::vector<CallRecord> emptied = calls.records(Call::kFtruncate);
    const auto expected = [&](size_t file, const char* old) {
      const bool is_empty = file < emptied.size() && emptied[file].result == 0;
      return is_empty || !old_album ? "" : old;
    };
    EXPECT_EQ(left(m_sheet_path), expected(0, kOldSheet)) << about;
    EXPECT_EQ(left(m_image_path), expected(1, kOldImage)) << about;
  }

  void expectLeft(const SystemCalls& calls, const std::string& about) const {
    const std::vector<CallRecord> image_writes = writesTo(calls, 1);
    const std::vector<CallRecord> sheet_writes = writesTo(calls, 0);
    expectTold(image_writes, about);
    const std::string image = imageOf(image_writes);
    EXPECT_TRUE(left(m_image_path).substr(0, image.size()) == image) << about;
    ASSERT_EQ(sheet_writes.size(), 1U) << about;
    const std::string sheet = sheet_writes[0].result >= 0 ? m_sheet : "";
    EXPECT_EQ(left(m_sheet_path).substr(0, sheet.size()), sheet) << about;
    if (calls.records(Call::kFtruncate)[0].result == 0) {
      EXPECT_EQ(left(m_sheet_path).size(), sheet.size()) << about;
    }
    if (calls.records(Call::kFtruncate)[1].result == 0) {
      EXPECT_EQ(left(m_image_path).size(), image.size()) << about;
    }
  }

  void loopOverSystemCalls(bool old_album) {
    const int descriptors = fake_host::openDescriptors();
    const int blocks = test_kit::liveBlocks();
    for (int nth = 1;; ++nth) {
      ASSERT_LT(nth, 200) << "no end of calls";
      prepare(old_album);
      SystemCalls calls;
      calls.watchOnly("/module.so");
      calls.failSystemCall(nth, times(), EIO);
      const bool made = renderOnce();
      const std::string about = "call " + std::to_string(nth);
      EXPECT_EQ(fake_host::openDescriptors(), descriptors) << about;
      EXPECT_EQ(test_kit::liveBlocks(), blocks) << about;
      if (made) {
        expectLeft(calls, about);
      } else {
        expectNothingWritten(calls, old_album, about);
      }
      if (calls.systemCallCount() >= nth) continue;
      EXPECT_TRUE(left(m_image_path) == m_image);
      EXPECT_GT(nth, 20) << "two files are opened, locked, emptied, written and closed";
      break;
    }
  }

  /// With a piece of silence or of the audio missing the host has been told; the rest is as ever.
  void expectLeftWithoutMemory(const std::string& about) const {
    const bool whole = left(m_image_path) == m_image;
    EXPECT_EQ(host.disk_counters.empty(), whole) << about;
    EXPECT_THAT(host.disk_counters, Each(Pair(0, -101010110))) << about;
    if (isOnce()) {
      EXPECT_TRUE(whole) << about;
    }
    const std::string sheet = left(m_sheet_path);
    EXPECT_THAT(sheet, HasSubstr("FILE \"disc.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n")) << about;
    EXPECT_TRUE(!whole || lacksOnlyLines(sheet)) << about << "\n" << sheet;
  }
  /// Texts without memory are left out of the sheet; all that stands there stands in its place.
  bool lacksOnlyLines(const std::string& sheet) const {
    std::istringstream all(m_sheet);
    std::istringstream some(sheet);
    std::string wanted;
    for (std::string line; std::getline(some, line);) {
      do {
        if (!std::getline(all, wanted)) return false;
        const bool may_lack = wanted.find("TITLE") != std::string::npos ||
                              wanted.find("PERFORMER") != std::string::npos || !isOnce();
        if (wanted != line && !may_lack) return false;
      } while (wanted != line);
    }
    return true;
  }

  void loopOverAllocations() {
    m_config.disc_leadin_ms = 2000;
    m_config.track_leadin_ms = 1000;
    lookAtAGoodRender();
    const int descriptors = fake_host::openDescriptors();
    const int blocks = test_kit::liveBlocks();
    for (int nth = 1;; ++nth) {
      ASSERT_LT(nth, 300) << "no end of allocations";
      prepare(true);
      SystemCalls calls;
      calls.watchOnly("/module.so");
      calls.failAllocation(nth, times());
      bool made = false;
      EXPECT_NO_THROW(made = renderOnce());
      const std::string about = "allocation " + std::to_string(nth);
      EXPECT_EQ(fake_host::openDescriptors(), descriptors) << about;
      EXPECT_EQ(test_kit::liveBlocks(), blocks) << about;
      if (made) {
        expectLeftWithoutMemory(about);
      } else {
        expectNothingWritten(calls, true, about);
      }
      if (calls.allocations() >= nth) continue;
      EXPECT_EQ(left(m_sheet_path), m_sheet);
      EXPECT_GT(nth, 15);
      break;
    }
  }

  SinkConfig m_config = fake_host::makeConfig({.track_mode = std::get<1>(GetParam())});
  std::vector<SignalBlock> m_audio = {SignalBlock(4 * 44100), SignalBlock(5 * 44100 + 100)};
  const std::string m_sheet_path = file("disc.cue");
  const std::string m_image_path = file("disc.bin");
  std::string m_image;
  std::string m_sheet;
  size_t m_unpadded = 0;
};

INSTANTIATE_TEST_SUITE_P(
    Faults, RenderFaults,
    testing::Combine(testing::Values(Times::kOnce, Times::kFromThenOn),
                     testing::Values(int{kTracksFromMarkers}, int{kTracksFromRegions})),
    [](const auto& parameter) {
      return std::string(std::get<0>(parameter.param) == Times::kOnce ? "Once" : "FromThenOn") +
             (std::get<1>(parameter.param) == kTracksFromMarkers ? "Markers" : "Regions");
    });

TEST_P(RenderFaults, WhicheverSystemCallFailsANewAlbumIsWhatReachedTheDiskAndTheHostIsTold) {
  loopOverSystemCalls(false);
}

TEST_P(RenderFaults, WhicheverSystemCallFailsAnOldAlbumIsReplacedByWhatReachedTheDisk) {
  loopOverSystemCalls(true);
}

TEST_P(RenderFaults, WhicheverAllocationFailsNothingLeaksAndWhatIsMissingIsTold) {
  loopOverAllocations();
}

}  // namespace
}  // namespace sink_test
