// File calls that fail, through the sink: what the host is told and what is left behind.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <cerrno>

#include "tests/fake_host/system_call_script.h"
#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

using fake_host::openDescriptors;
using fake_host::sizeOfFile;
using fake_host::SystemCall;
using fake_host::SystemCallScript;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr int kOutOfSpace = -101010111;
constexpr int kOtherError = -101010110;
constexpr int64_t kBufferFrames = 32768;

class SystemFailures : public BoundSession, public testing::Test {
 protected:
  Sink create() { return createSink("disc.cue", {.track_mode = kOneTrack}); }

  // What the host is told of one failing flush of the image.
  std::vector<std::pair<int, int>> countersAfter(int error) {
    host.disk_counters.clear();
    Sink sink = create();
    SystemCallScript calls;
    calls.failAt(SystemCall::kPwrite, 1, error);
    sink.writeSame(kBufferFrames);
    EXPECT_EQ(calls.count(SystemCall::kPwrite), 1);
    return host.disk_counters;
  }
};

TEST_F(SystemFailures, BothFilesAreOpenedForWritingAndClosedOnExec) {
  SystemCallScript calls;
  Sink sink = create();
  ASSERT_EQ(calls.opens.size(), 2U);
  EXPECT_EQ(calls.opens[0].path, file("disc.cue"));
  EXPECT_EQ(calls.opens[1].path, file("disc.bin"));
  for (const SystemCallScript::Open& open : calls.opens) {
    EXPECT_EQ(open.flags, O_WRONLY | O_CREAT | O_CLOEXEC);
    EXPECT_EQ(open.mode, 0644U);
  }
  EXPECT_THAT(calls.flock_operations, ElementsAre(LOCK_EX | LOCK_NB, LOCK_EX | LOCK_NB));
  EXPECT_EQ(calls.count(SystemCall::kFtruncate), 2);
  EXPECT_EQ(calls.count(SystemCall::kFstat), 0) << "only appending asks for the size";
  calls.flock_operations.clear();
  sink.finish();
  EXPECT_THAT(calls.flock_operations, ElementsAre(LOCK_UN, LOCK_UN));
}

TEST_F(SystemFailures, AFileThatDoesNotOpenMakesNoSink) {
  const int before = openDescriptors();
  for (const int nth : {1, 2}) {
    for (const int error : {EACCES, EMFILE, ENOSPC, EROFS}) {
      SystemCallScript calls;
      calls.failAt(SystemCall::kOpen, nth, error);
      EXPECT_FALSE(create()) << nth << " " << error;
      EXPECT_EQ(calls.count(SystemCall::kOpen), nth) << "the image is not opened without a sheet";
      EXPECT_EQ(openDescriptors(), before);
    }
  }
  EXPECT_THAT(host.disk_counters, IsEmpty());
}

TEST_F(SystemFailures, AFileHeldByAnotherMakesNoSinkAndKeepsItsContents) {
  const int before = openDescriptors();
  for (const int nth : {1, 2}) {
    fake_host::writeText(file("disc.cue"), "sheet");
    fake_host::writeText(file("disc.bin"), "image");
    SystemCallScript calls;
    calls.failAt(SystemCall::kFlock, nth, EWOULDBLOCK);
    EXPECT_FALSE(create());
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(readText(file("disc.bin")), "image") << nth;
    EXPECT_EQ(readText(file("disc.cue")), nth == 1 ? "sheet" : "") << nth;
    EXPECT_EQ(calls.count(SystemCall::kFtruncate), nth - 1);
  }
}

TEST_F(SystemFailures, AFileSystemWithoutExclusiveLocksGetsASharedOne) {
  SystemCallScript calls;
  calls.failAt(SystemCall::kFlock, 1, ENOLCK);
  Sink sink = create();
  ASSERT_TRUE(sink);
  EXPECT_THAT(calls.flock_operations,
              ElementsAre(LOCK_EX | LOCK_NB, LOCK_SH | LOCK_NB, LOCK_EX | LOCK_NB));
  calls.flock_operations.clear();
  sink.destroy();
  EXPECT_THAT(calls.flock_operations, ElementsAre(LOCK_UN, LOCK_UN));
}

TEST_F(SystemFailures, AFileSystemWithoutLocksIsWrittenWithoutThem) {
  for (const int error : {ENOLCK, EOPNOTSUPP, EBADF, EINVAL}) {
    SystemCallScript calls;
    calls.failFrom(SystemCall::kFlock, 1, error);
    Sink sink = create();
    ASSERT_TRUE(sink) << error;
    EXPECT_THAT(calls.flock_operations, ElementsAre(LOCK_EX | LOCK_NB, LOCK_SH | LOCK_NB,
                                                    LOCK_EX | LOCK_NB, LOCK_SH | LOCK_NB));
    calls.flock_operations.clear();
    sink.writeSignal(588);
    sink.finish();
    EXPECT_THAT(calls.flock_operations, IsEmpty()) << "nothing is held";
    expectImage(file("disc.bin"), Image().signal(0, 588));
  }
}

TEST_F(SystemFailures, ASharedLockThatIsHeldElsewhereStillLetsTheFileBeWritten) {
  SystemCallScript calls;
  calls.failAt(SystemCall::kFlock, 1, ENOLCK);
  calls.failAt(SystemCall::kFlock, 2, EWOULDBLOCK);
  EXPECT_TRUE(create());
}

TEST_F(SystemFailures, AFileThatCannotBeEmptiedIsWrittenAllTheSame) {
  SystemCallScript calls;
  calls.failFrom(SystemCall::kFtruncate, 1, EINVAL);
  Sink sink = create();
  ASSERT_TRUE(sink);
  sink.writeSignal(588);
  sink.finish();
  expectImage(file("disc.bin"), Image().signal(0, 588));
  EXPECT_THAT(host.disk_counters, IsEmpty());
}

TEST_F(SystemFailures, AFailedWriteIsReportedByItsKind) {
  EXPECT_THAT(countersAfter(ENOSPC), ElementsAre(Pair(0, kOutOfSpace)));
  EXPECT_THAT(countersAfter(EDQUOT), ElementsAre(Pair(0, kOutOfSpace)));
  for (const int error : {EIO, EFBIG, EBADF, EINTR, EPIPE}) {
    EXPECT_THAT(countersAfter(error), ElementsAre(Pair(0, kOtherError))) << error;
  }
}

TEST_F(SystemFailures, AShortWriteIsOutOfSpaceAndWhatFollowsGoesBehindWhatLanded) {
  for (const int64_t taken : {int64_t{0}, int64_t{1000}, 4 * kBufferFrames - 4}) {
    host.disk_counters.clear();
    Sink sink = create();
    SystemCallScript calls;
    calls.shortenWrite(1, taken);
    sink.writeSignal(2 * kBufferFrames);
    sink.destroy();
    EXPECT_THAT(host.disk_counters, ElementsAre(Pair(0, kOutOfSpace))) << taken;
    expectImage(file("disc.bin"),
                Image().signal(0, taken / 4).signal(kBufferFrames, 2 * kBufferFrames));
  }
}

TEST_F(SystemFailures, AFailedBufferIsLostAndTheNextTakesItsPlace) {
  Sink sink = create();
  SystemCallScript calls;
  calls.failAt(SystemCall::kPwrite, 2, EIO);
  sink.writeSignal(3 * kBufferFrames);
  sink.destroy();
  expectImage(file("disc.bin"),
              Image().signal(0, kBufferFrames).signal(2 * kBufferFrames, 3 * kBufferFrames));
}

TEST_F(SystemFailures, AFullDiskIsReportedOncePerFlushAndTheCountersRunOn) {
  Sink sink = create();
  SystemCallScript calls;
  calls.failFrom(SystemCall::kPwrite, 1, ENOSPC);
  sink.writeSame(5 * kBufferFrames + 7);
  EXPECT_EQ(host.disk_counters.size(), 5U);
  EXPECT_THAT(host.disk_counters, Each(Pair(0, kOutOfSpace)));
  EXPECT_EQ(sink->GetLength(), static_cast<double>(5 * kBufferFrames + 7) / 44100.0);
  EXPECT_EQ(sink.finish(), 1);
  EXPECT_EQ(host.disk_counters.size(), 5U) << "the last flush reports nothing";
  EXPECT_EQ(sizeOfFile(file("disc.bin")), 0);
  EXPECT_EQ(sizeOfFile(file("disc.cue")), 0);
}

TEST_F(SystemFailures, AFullDiskDuringTheDiscLeadInIsReportedAndTheSinkIsMade) {
  SystemCallScript calls;
  calls.failFrom(SystemCall::kPwrite, 1, ENOSPC);
  Sink sink = createSink("disc.cue", {.disc_leadin_ms = 2000});
  ASSERT_TRUE(sink);
  EXPECT_EQ(host.disk_counters.size(), 2U) << "352800 bytes are two buffers and a rest";
  // The two lost buffers leave the rest at the image's beginning: 90656 bytes, 268 frames short of
  // a sector.
  EXPECT_EQ(sink->GetLength(), (88200 + 268) / 44100.0);
}

TEST_F(SystemFailures, ThePositionForTheSectorIsWhereTheNextByteGoes) {
  // Half of the first buffer is lost: the padding closes the sector of what really lies there.
  Sink sink = create();
  SystemCallScript calls;
  calls.shortenWrite(1, 1000);
  sink.writeSame(kBufferFrames);
  sink.finish();
  EXPECT_EQ(sizeOfFile(file("disc.bin")), 2352);
}

TEST_F(SystemFailures, ARenderThatSucceedsOnlyWritesAndReportsNothing) {
  SystemCallScript calls;
  Sink sink = create();
  calls.forget();
  sink.writeSame(4 * kBufferFrames + 7);
  EXPECT_EQ(calls.systemCallCount(), 4) << "a write for each full buffer";
  EXPECT_EQ(calls.count(SystemCall::kPwrite), 4);
  sink.finish();
  EXPECT_EQ(calls.count(SystemCall::kPwrite), 6) << "the rest of the image, and the sheet";
  EXPECT_EQ(calls.count(SystemCall::kFlock), 2);
  EXPECT_EQ(calls.count(SystemCall::kClose), 2);
  EXPECT_EQ(calls.systemCallCount(), 10) << "the image's position is known without asking for it";
  EXPECT_THAT(host.disk_counters, IsEmpty());
}

/// Whose lock is released first, as file descriptors.
std::vector<int> unlockedInOrder(const SystemCallScript& calls) {
  std::vector<int> descriptors;
  for (const test_kit::CallRecord& record : calls.records(SystemCall::kFlock)) {
    if (record.size == LOCK_UN) descriptors.push_back(record.fd);
  }
  return descriptors;
}

TEST_F(SystemFailures, TheFinishCompletesTheImageBeforeTheSheet) {
  SystemCallScript calls;
  Sink sink = create();
  ASSERT_EQ(calls.opens.size(), 2U);
  const int sheet = calls.opens[0].fd;
  const int image = calls.opens[1].fd;
  sink.writeSignal(100);
  sink.finish();
  ASSERT_EQ(calls.pwrites.size(), 2U);
  EXPECT_EQ(calls.pwrites[0].fd, image);
  EXPECT_EQ(calls.pwrites[1].fd, sheet);
  EXPECT_THAT(unlockedInOrder(calls), ElementsAre(image, sheet));
}

TEST_F(SystemFailures, ADeletedSinkGivesItsSheetBackBeforeItsImage) {
  SystemCallScript calls;
  Sink sink = create();
  ASSERT_EQ(calls.opens.size(), 2U);
  sink.writeSignal(100);
  sink.destroy();
  EXPECT_THAT(unlockedInOrder(calls), ElementsAre(calls.opens[0].fd, calls.opens[1].fd));
}

}  // namespace
}  // namespace sink_test
