// A burn that runs out of memory before it begins.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "abi/track_source.h"
#include "module/burn/burn_engine.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/module/burn/image_file.h"
#include "tests/module/burn/scripted_recording_service.h"

namespace burn_test {
namespace {

using test_kit::Call;
using test_kit::SystemCalls;

constexpr int kAlbumTracks = 50;

class BurnWithoutMemory : public testing::Test {
 protected:
  BurnWithoutMemory() {
    m_recorders.add("ACME", "BURNER");
    // From the second burn on the record has its memory, so that all take the same.
    run();
    forget();
  }

  void run() {
    const std::vector<int> offsets(kAlbumTracks, 0);
    CDBurn_Run(reinterpret_cast<long>(m_recorders.handle(0)), kAlbumTracks, offsets.data(),
               &m_reader, false, false);
  }
  /// Which of the calls of operator new asks for the producers of all tracks.
  int producersAllocation() {
    const SystemCalls calls;
    run();
    const auto records = calls.records(Call::kNew);
    const auto found = std::find_if(records.begin(), records.end(), [](const auto& record) {
      return record.size >= static_cast<int64_t>(kAlbumTracks * sizeof(CDBurnTrackSource));
    });
    EXPECT_NE(found, records.end());
    return static_cast<int>(found - records.begin()) + 1;
  }
  void forget() {
    m_recorders.panels = 0;
    m_recorders.journal.clear();
  }
  void expectNothingBurned() {
    EXPECT_EQ(m_recorders.panels, 0);
    EXPECT_EQ(std::count(m_recorders.journal.begin(), m_recorders.journal.end(), "BurnForDevice 0"),
              0);
    EXPECT_EQ(m_recorders.journal.back(), "ReleaseExclusiveAccess 0");
  }

  ScriptedRecordingService m_recorders;
  const ImageFile m_image{static_cast<size_t>(kSector)};
  YDK_FileRead m_reader{m_image.path.c_str()};
};

TEST_F(BurnWithoutMemory, ForTheTracksProducersGivesTheRecorderBack) {
  const int nth = producersAllocation();
  ASSERT_EQ(m_recorders.panels, 1);
  forget();
  SystemCalls calls;
  calls.failAt(Call::kNew, nth, ENOMEM);
  run();
  expectNothingBurned();
}

TEST_F(BurnWithoutMemory, ForTheListOfTracksGivesTheRecorderBack) {
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);
  calls.fail(Call::kMalloc, ENOMEM);
  run();
  expectNothingBurned();
}

}  // namespace
}  // namespace burn_test
