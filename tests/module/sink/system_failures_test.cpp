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

using fake_host::OpenDescriptors;
using fake_host::SizeOfFile;
using fake_host::SystemCall;
using fake_host::SystemCallScript;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr int kOutOfSpace = -101010111;
constexpr int kOtherError = -101010110;
constexpr int64_t kBuffer = 131072;
constexpr int64_t kBufferFrames = kBuffer / 4;

class SystemFailures : public BoundSession, public testing::Test {
 protected:
  Sink Create() { return CreateSink("disc.cue", {.track_mode = kOneTrack}); }

  // What the host is told of one failing flush of the image.
  std::vector<std::pair<int, int>> CountersAfter(int error) {
    host.disk_counters.clear();
    Sink sink = Create();
    SystemCallScript calls;
    calls.failAt(SystemCall::kPwrite, 1, error);
    sink.WriteSame(kBufferFrames);
    EXPECT_EQ(calls.count(SystemCall::kPwrite), 1);
    return host.disk_counters;
  }
};

TEST_F(SystemFailures, BothFilesAreOpenedForWritingAndClosedOnExec) {
  SystemCallScript calls;
  Sink sink = Create();
  ASSERT_EQ(calls.opens.size(), 2U);
  EXPECT_EQ(calls.opens[0].path, File("disc.cue"));
  EXPECT_EQ(calls.opens[1].path, File("disc.bin"));
  for (const SystemCallScript::Open& open : calls.opens) {
    EXPECT_EQ(open.flags, O_WRONLY | O_CREAT | O_CLOEXEC);
    EXPECT_EQ(open.mode, 0644U);
  }
  EXPECT_THAT(calls.flock_operations, ElementsAre(LOCK_EX | LOCK_NB, LOCK_EX | LOCK_NB));
  EXPECT_EQ(calls.count(SystemCall::kFtruncate), 2);
  EXPECT_EQ(calls.count(SystemCall::kFstat), 0) << "only appending asks for the size";
  calls.flock_operations.clear();
  sink.Finish();
  EXPECT_THAT(calls.flock_operations, ElementsAre(LOCK_UN, LOCK_UN));
}

TEST_F(SystemFailures, AFileThatDoesNotOpenMakesNoSink) {
  const int before = OpenDescriptors();
  for (const int nth : {1, 2}) {
    for (const int error : {EACCES, EMFILE, ENOSPC, EROFS}) {
      SystemCallScript calls;
      calls.failAt(SystemCall::kOpen, nth, error);
      EXPECT_FALSE(Create()) << nth << " " << error;
      EXPECT_EQ(calls.count(SystemCall::kOpen), nth) << "the image is not opened without a sheet";
      EXPECT_EQ(OpenDescriptors(), before);
    }
  }
  EXPECT_THAT(host.disk_counters, IsEmpty());
}

TEST_F(SystemFailures, AFileHeldByAnotherMakesNoSinkAndKeepsItsContents) {
  const int before = OpenDescriptors();
  for (const int nth : {1, 2}) {
    fake_host::WriteText(File("disc.cue"), "sheet");
    fake_host::WriteText(File("disc.bin"), "image");
    SystemCallScript calls;
    calls.failAt(SystemCall::kFlock, nth, EWOULDBLOCK);
    EXPECT_FALSE(Create());
    EXPECT_EQ(OpenDescriptors(), before);
    EXPECT_EQ(ReadText(File("disc.bin")), "image") << nth;
    EXPECT_EQ(ReadText(File("disc.cue")), nth == 1 ? "sheet" : "") << nth;
    EXPECT_EQ(calls.count(SystemCall::kFtruncate), nth - 1);
  }
}

TEST_F(SystemFailures, AFileSystemWithoutExclusiveLocksGetsASharedOne) {
  SystemCallScript calls;
  calls.failAt(SystemCall::kFlock, 1, ENOLCK);
  Sink sink = Create();
  ASSERT_TRUE(sink);
  EXPECT_THAT(calls.flock_operations,
              ElementsAre(LOCK_EX | LOCK_NB, LOCK_SH | LOCK_NB, LOCK_EX | LOCK_NB));
  calls.flock_operations.clear();
  sink.Delete();
  EXPECT_THAT(calls.flock_operations, ElementsAre(LOCK_UN, LOCK_UN));
}

TEST_F(SystemFailures, AFileSystemWithoutLocksIsWrittenWithoutThem) {
  for (const int error : {ENOLCK, EOPNOTSUPP, EBADF, EINVAL}) {
    SystemCallScript calls;
    calls.failFrom(SystemCall::kFlock, 1, error);
    Sink sink = Create();
    ASSERT_TRUE(sink) << error;
    EXPECT_THAT(calls.flock_operations, ElementsAre(LOCK_EX | LOCK_NB, LOCK_SH | LOCK_NB,
                                                    LOCK_EX | LOCK_NB, LOCK_SH | LOCK_NB));
    calls.flock_operations.clear();
    sink.WriteSignal(588);
    sink.Finish();
    EXPECT_THAT(calls.flock_operations, IsEmpty()) << "nothing is held";
    ExpectImage(File("disc.bin"), Image().Signal(0, 588));
  }
}

TEST_F(SystemFailures, ASharedLockThatIsHeldElsewhereStillLetsTheFileBeWritten) {
  SystemCallScript calls;
  calls.failAt(SystemCall::kFlock, 1, ENOLCK);
  calls.failAt(SystemCall::kFlock, 2, EWOULDBLOCK);
  EXPECT_TRUE(Create());
}

TEST_F(SystemFailures, AFileThatCannotBeEmptiedIsWrittenAllTheSame) {
  SystemCallScript calls;
  calls.failFrom(SystemCall::kFtruncate, 1, EINVAL);
  Sink sink = Create();
  ASSERT_TRUE(sink);
  sink.WriteSignal(588);
  sink.Finish();
  ExpectImage(File("disc.bin"), Image().Signal(0, 588));
  EXPECT_THAT(host.disk_counters, IsEmpty());
}

TEST_F(SystemFailures, AFailedWriteIsReportedByItsKind) {
  EXPECT_THAT(CountersAfter(ENOSPC), ElementsAre(Pair(0, kOutOfSpace)));
  EXPECT_THAT(CountersAfter(EDQUOT), ElementsAre(Pair(0, kOutOfSpace)));
  for (const int error : {EIO, EFBIG, EBADF, EINTR, EPIPE}) {
    EXPECT_THAT(CountersAfter(error), ElementsAre(Pair(0, kOtherError))) << error;
  }
}

TEST_F(SystemFailures, AShortWriteIsOutOfSpaceAndWhatFollowsGoesBehindWhatLanded) {
  for (const int64_t taken : {int64_t{0}, int64_t{1000}, kBuffer - 4}) {
    host.disk_counters.clear();
    Sink sink = Create();
    SystemCallScript calls;
    calls.shortenWrite(1, taken);
    sink.WriteSignal(2 * kBufferFrames);
    sink.Delete();
    EXPECT_THAT(host.disk_counters, ElementsAre(Pair(0, kOutOfSpace))) << taken;
    ExpectImage(File("disc.bin"),
                Image().Signal(0, taken / 4).Signal(kBufferFrames, 2 * kBufferFrames));
  }
}

TEST_F(SystemFailures, AFailedBufferIsLostAndTheNextTakesItsPlace) {
  Sink sink = Create();
  SystemCallScript calls;
  calls.failAt(SystemCall::kPwrite, 2, EIO);
  sink.WriteSignal(3 * kBufferFrames);
  sink.Delete();
  ExpectImage(File("disc.bin"),
              Image().Signal(0, kBufferFrames).Signal(2 * kBufferFrames, 3 * kBufferFrames));
}

TEST_F(SystemFailures, AFullDiskIsReportedOncePerFlushAndTheCountersRunOn) {
  Sink sink = Create();
  SystemCallScript calls;
  calls.failFrom(SystemCall::kPwrite, 1, ENOSPC);
  sink.WriteSame(5 * kBufferFrames + 7);
  EXPECT_EQ(host.disk_counters.size(), 5U);
  EXPECT_THAT(host.disk_counters, Each(Pair(0, kOutOfSpace)));
  EXPECT_EQ(sink->GetLength(), static_cast<double>(5 * kBufferFrames + 7) / 44100.0);
  EXPECT_EQ(sink.Finish(), 1);
  EXPECT_EQ(host.disk_counters.size(), 5U) << "the last flush reports nothing";
  EXPECT_EQ(SizeOfFile(File("disc.bin")), 0);
  EXPECT_EQ(SizeOfFile(File("disc.cue")), 0);
}

TEST_F(SystemFailures, AFullDiskDuringTheDiscLeadInIsReportedAndTheSinkIsMade) {
  SystemCallScript calls;
  calls.failFrom(SystemCall::kPwrite, 1, ENOSPC);
  Sink sink = CreateSink("disc.cue", {.disc_leadin_ms = 2000});
  ASSERT_TRUE(sink);
  EXPECT_EQ(host.disk_counters.size(), 2U) << "352800 bytes are two buffers and a rest";
  // The two lost buffers leave the rest at the image's beginning: 90656 bytes, 268 frames short of
  // a sector.
  EXPECT_EQ(sink->GetLength(), (88200 + 268) / 44100.0);
}

TEST_F(SystemFailures, ThePositionForTheSectorIsWhereTheNextByteGoes) {
  // Half of the first buffer is lost: the padding closes the sector of what really lies there.
  Sink sink = Create();
  SystemCallScript calls;
  calls.shortenWrite(1, 1000);
  sink.WriteSame(kBufferFrames);
  sink.Finish();
  EXPECT_EQ(SizeOfFile(File("disc.bin")), 2352);
}

TEST_F(SystemFailures, ReadingIsNeverAskedForBytesThatWereWritten) {
  Sink sink = Create();
  sink.WriteSame(4 * kBufferFrames);
  sink.Finish();
  EXPECT_THAT(host.disk_counters, IsEmpty()) << "the counters hear of failures only";
}

}  // namespace
}  // namespace sink_test
