#include "module/support/file_write.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "abi/host_functions.h"
#include "tests/fake_host/files.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/kit/other_process.h"
#include "tests/module/support/closed_standard_input.h"
#include "tests/module/support/recorded_releases.h"

namespace support_test {
namespace {

using test_kit::anotherProcessCanLock;
using test_kit::Call;
using test_kit::LockHolder;
using test_kit::startedProgramInherits;
using test_kit::SystemCalls;

using fake_host::noise;
using fake_host::readText;
using fake_host::writeText;

using Reports = std::vector<std::pair<int, int>>;
Reports g_reports;

/// Parameters of a writer; those of the CD image unless said otherwise.
struct Options {
  int async_mode = 0;
  int block_size = 8192;
  int min_blocks = 16;
  int max_blocks = 16;
  bool append = false;
  bool no_lock = false;
};

constexpr Options kUnbuffered{.min_blocks = 1};
constexpr Options kAppending{.append = true};
constexpr Options kUnlocked{.no_lock = true};
constexpr Options kSmallestBuffer{.min_blocks = 2};

class FileWrite : public testing::Test {
 protected:
  FileWrite() {
    g_reports.clear();
    update_disk_counters = [](int read, int written) { g_reports.emplace_back(read, written); };
  }
  ~FileWrite() override { update_disk_counters = nullptr; }

  std::unique_ptr<YDK_FileWrite> open(const Options& o = {}) {
    return std::make_unique<YDK_FileWrite>(m_path.c_str(), o.async_mode, o.block_size, o.min_blocks,
                                           o.max_blocks, o.append, o.no_lock);
  }

  fake_host::TempFolder m_folder;
  const std::string m_path = m_folder.file("disc.bin");
};

int put(YDK_FileWrite& writer, const std::string& bytes) {
  return writer.Write(bytes.data(), static_cast<int>(bytes.size()));
}

TEST_F(FileWrite, CreatesTheFileForWritingOnly) {
  const mode_t mask = umask(0);
  SystemCalls calls;
  auto writer = open();
  umask(mask);
  ASSERT_GE(writer->fd, 0);
  EXPECT_EQ(calls.count(Call::kOpen), 1);
  EXPECT_EQ(calls.last(Call::kOpen).size, O_WRONLY | O_CREAT | O_CLOEXEC);
  struct stat status {};
  ASSERT_EQ(stat(m_path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0644u);
  EXPECT_EQ(writer->GetPosition(), 0);
}

TEST_F(FileWrite, ANullNameLeavesItClosed) {
  SystemCalls calls;
  YDK_FileWrite writer(nullptr, 0, 8192, 16, 16, false, false);
  EXPECT_EQ(writer.fd, -1);
  EXPECT_EQ(writer.GetPosition(), -1);
  EXPECT_EQ(calls.systemCallCount(), 0);
  EXPECT_EQ(calls.count(Call::kRealloc) + calls.count(Call::kMalloc), 0);
}

TEST_F(FileWrite, AClosedOneReachesNoFileWhenItGoes) {
  SystemCalls calls;
  { const YDK_FileWrite writer(nullptr, 0, 8192, 16, 16, false, false); }
  EXPECT_EQ(calls.systemCallCount(), 0);
}

TEST_F(FileWrite, WritesThroughTheVeryFirstDescriptor) {
  const ClosedStandardInput closed;
  for (const Options& options : {Options{}, kUnbuffered}) {
    auto writer = open(options);
    EXPECT_EQ(writer->fd, 0);
    EXPECT_EQ(put(*writer, "abc"), 3);
    EXPECT_EQ(writer->GetPosition(), 3);
    writer.reset();
    EXPECT_FALSE(ClosedStandardInput::isTaken());
    EXPECT_EQ(readText(m_path), "abc");
  }
}

TEST_F(FileWrite, AMissingFolderLeavesItClosed) {
  YDK_FileWrite writer(m_folder.file("none/disc.bin").c_str(), 0, 8192, 16, 16, false, false);
  EXPECT_EQ(writer.fd, -1);
  EXPECT_EQ(writer.GetPosition(), -1);
}

const std::string kOldBytes(100, 'x');

TEST_F(FileWrite, StartsOverUnlessItAppends) {
  writeText(m_path, kOldBytes);
  open().reset();
  EXPECT_EQ(readText(m_path), "");
}

TEST_F(FileWrite, AppendingContinuesAtTheEnd) {
  writeText(m_path, kOldBytes);
  {
    auto writer = open(kAppending);
    EXPECT_EQ(writer->GetPosition(), 100);
    put(*writer, "0123456789");
    EXPECT_EQ(writer->GetPosition(), 110);
  }
  EXPECT_EQ(readText(m_path), kOldBytes + "0123456789");
}

TEST_F(FileWrite, AppendingWithoutKnowingTheSizeStartsAtTheBeginning) {
  writeText(m_path, kOldBytes);
  {
    SystemCalls calls;
    calls.fail(Call::kFstat, EIO);
    auto writer = open(kAppending);
    ASSERT_GE(writer->fd, 0);
    EXPECT_EQ(writer->GetPosition(), 0);
    EXPECT_EQ(calls.count(Call::kFtruncate), 0);
    put(*writer, "0123456789");
  }
  EXPECT_EQ(readText(m_path), "0123456789" + kOldBytes.substr(10));
}

TEST_F(FileWrite, AFileThatCannotBeEmptiedIsStillWritten) {
  writeText(m_path, kOldBytes);
  {
    SystemCalls calls;
    calls.fail(Call::kFtruncate, EIO);
    auto writer = open();
    ASSERT_GE(writer->fd, 0);
    put(*writer, "0123456789");
  }
  EXPECT_EQ(readText(m_path), "0123456789" + kOldBytes.substr(10));
}

TEST_F(FileWrite, KeepsASecondWriterOffAndTheFileWhole) {
  auto first = open(kUnbuffered);
  put(*first, "frames");
  {
    auto second = open();
    EXPECT_EQ(second->fd, -1);
    EXPECT_EQ(second->GetPosition(), -1);
  }
  EXPECT_EQ(readText(m_path), "frames");
  EXPECT_FALSE(anotherProcessCanLock(m_path, LOCK_SH));
  first.reset();
  EXPECT_TRUE(anotherProcessCanLock(m_path, LOCK_EX));
  EXPECT_GE(open()->fd, 0);
}

TEST_F(FileWrite, LeavesAloneWhatAnotherProcessHasLocked) {
  writeText(m_path, "frames");
  {
    LockHolder other(m_path, LOCK_SH);
    EXPECT_EQ(open()->fd, -1);
    EXPECT_EQ(open(kAppending)->fd, -1);
  }
  EXPECT_EQ(readText(m_path), "frames");
}

TEST_F(FileWrite, WithoutALockWritesWhatOthersHaveLocked) {
  writeText(m_path, "frames");
  LockHolder other(m_path, LOCK_EX);
  SystemCalls calls;
  {
    auto writer = open(kUnlocked);
    ASSERT_GE(writer->fd, 0);
    put(*writer, "other");
  }
  EXPECT_EQ(calls.count(Call::kFlock), 0);
  EXPECT_EQ(readText(m_path), "other");
}

TEST_F(FileWrite, LocksExclusivelyWithoutWaitingAndUnlocks) {
  SystemCalls calls;
  open().reset();
  const auto locks = calls.records(Call::kFlock);
  ASSERT_EQ(locks.size(), 2u);
  EXPECT_EQ(locks[0].size, LOCK_EX | LOCK_NB);
  EXPECT_EQ(locks[1].size, LOCK_UN);
}

TEST_F(FileWrite, AFileSystemWithoutExclusiveLocksGetsASharedOne) {
  for (const int error : {ENOLCK, EINVAL, EINTR, EOPNOTSUPP, EBADF}) {
    SystemCalls calls;
    calls.fail(Call::kFlock, error, 1, 1);
    auto writer = open();
    EXPECT_GE(writer->fd, 0) << error;
    EXPECT_TRUE(anotherProcessCanLock(m_path, LOCK_SH));
    EXPECT_FALSE(anotherProcessCanLock(m_path, LOCK_EX));
    calls.forget();
    calls.fail(Call::kFlock, 0, 0, -1);
    writer.reset();
    ASSERT_EQ(calls.count(Call::kFlock), 1) << error;
    EXPECT_EQ(calls.last(Call::kFlock).size, LOCK_UN);
  }
}

TEST_F(FileWrite, AFileSystemWithoutAnyLocksIsWrittenWithoutOne) {
  // Even "would block" from the shared attempt leaves the file open.
  for (const int second_error : {ENOLCK, EWOULDBLOCK}) {
    SystemCalls calls;
    calls.fail(Call::kFlock, second_error == ENOLCK ? ENOLCK : ENOSYS);
    auto writer = open();
    EXPECT_GE(writer->fd, 0);
    const auto locks = calls.records(Call::kFlock);
    ASSERT_EQ(locks.size(), 2u);
    EXPECT_EQ(locks[0].size, LOCK_EX | LOCK_NB);
    EXPECT_EQ(locks[1].size, LOCK_SH | LOCK_NB);
    calls.forget();
    put(*writer, "frames");
    writer.reset();
    EXPECT_EQ(calls.count(Call::kFlock), 0) << "nothing is held that could be released";
    EXPECT_EQ(readText(m_path), "frames");
  }
}

TEST_F(FileWrite, AHeldLockIsNotTriedAgainAsAShared) {
  SystemCalls calls;
  calls.fail(Call::kFlock, EWOULDBLOCK);
  EXPECT_EQ(open()->fd, -1);
  EXPECT_EQ(calls.count(Call::kFlock), 1);
  EXPECT_EQ(calls.count(Call::kFtruncate), 0);
}

TEST_F(FileWrite, SwitchesCachingOffInAsynchronousModesAboveOneOnly) {
  for (const int async_mode : {INT_MIN, -1, 0, 1, 2, 3, INT_MAX}) {
    const RecordedReleases recorded;
    auto writer = open({.async_mode = async_mode});
    ASSERT_GE(writer->fd, 0);
    const std::vector<int> expected(async_mode > 1 ? 1 : 0, writer->fd);
    EXPECT_EQ(recorded.uncached(), expected) << async_mode;
    put(*writer, noise(200000));
    writer.reset();
    EXPECT_EQ(readText(m_path), noise(200000)) << async_mode;
  }
}

TEST_F(FileWrite, LeavesTheCachingOfAFileAloneThatAnotherHolds) {
  auto first = open();
  const RecordedReleases recorded;
  EXPECT_EQ(open({.async_mode = 2})->fd, -1);
  EXPECT_EQ(recorded.uncached(), std::vector<int>());
}

TEST_F(FileWrite, IsNotInheritedByStartedPrograms) {
  const int inheritable = ::open(m_path.c_str(), O_RDONLY | O_CREAT, 0644);
  EXPECT_TRUE(startedProgramInherits(m_path)) << "the look-up itself does not work";
  close(inheritable);
  auto writer = open();
  EXPECT_FALSE(startedProgramInherits(m_path));
}

struct BufferCase {
  int block_size;
  int min_blocks;
  int64_t buffer;  ///< bytes, 0: unbuffered
};

class WriteBuffer : public FileWrite, public testing::WithParamInterface<BufferCase> {};

TEST_P(WriteBuffer, IsWrittenWhenFull) {
  const BufferCase& c = GetParam();
  auto writer = open({.block_size = c.block_size, .min_blocks = c.min_blocks, .max_blocks = 1});
  SystemCalls calls;
  if (c.buffer == 0) {
    EXPECT_EQ(writer->Write("x", 1), 1);
    EXPECT_EQ(calls.count(Call::kPwrite), 1);
    return;
  }
  const std::string all_but_one = noise(static_cast<size_t>(c.buffer) - 1);
  put(*writer, all_but_one);
  EXPECT_EQ(calls.count(Call::kPwrite), 0);
  writer->Write("x", 1);
  EXPECT_EQ(calls.count(Call::kPwrite), 1);
  EXPECT_EQ(calls.last(Call::kPwrite).size, c.buffer);
  EXPECT_EQ(readText(m_path), all_but_one + "x");
}

INSTANTIATE_TEST_SUITE_P(Sizes, WriteBuffer,
                         testing::Values(BufferCase{4096, 3, 0}, BufferCase{16383, 1, 0},
                                         BufferCase{8192, 2, 16384}, BufferCase{5000, 4, 20480},
                                         BufferCase{16385, 1, 20480}, BufferCase{8192, 16, 131072},
                                         BufferCase{0, 0, 0}, BufferCase{-8192, 16, 0},
                                         BufferCase{8192, -16, 0}));

TEST_F(FileWrite, ABufferBeyondAnIntDoesNotOverflow) {
  for (const auto& [size, blocks] : {std::pair{65536, 65536},
                                     {INT_MAX, INT_MAX},
                                     {INT_MAX, 1},
                                     {46341, 46341},
                                     {INT_MAX - 4094, 1}}) {
    {
      SystemCalls calls;
      calls.fail(Call::kRealloc, ENOMEM);
      calls.fail(Call::kMalloc, ENOMEM);
      auto writer = open({.block_size = size, .min_blocks = blocks});
      ASSERT_GE(writer->fd, 0);
      put(*writer, "frames");
    }
    EXPECT_EQ(readText(m_path), "frames");
  }
}

TEST_F(FileWrite, WithoutMemoryForItsBufferWritesAtOnce) {
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);
  calls.fail(Call::kMalloc, ENOMEM);
  auto writer = open();
  ASSERT_GE(writer->fd, 0);
  EXPECT_EQ(put(*writer, "frames"), 6);
  EXPECT_EQ(calls.count(Call::kPwrite), 1);
  EXPECT_EQ(readText(m_path), "frames");
}

TEST_F(FileWrite, OneLongWriteFlushesOnceAndKeepsTheRest) {
  const std::string bytes = noise(200000);
  SystemCalls calls;
  auto writer = open();
  EXPECT_EQ(put(*writer, bytes), 200000);
  ASSERT_EQ(calls.count(Call::kPwrite), 1);
  EXPECT_EQ(calls.last(Call::kPwrite).size, 131072);
  EXPECT_EQ(writer->GetPosition(), 200000);
  EXPECT_EQ(readText(m_path), bytes.substr(0, 131072));
  writer.reset();
  ASSERT_EQ(calls.count(Call::kPwrite), 2);
  EXPECT_EQ(calls.last(Call::kPwrite).size, 68928);
  EXPECT_EQ(calls.last(Call::kPwrite).offset, 131072);
  EXPECT_EQ(readText(m_path), bytes);
  EXPECT_TRUE(g_reports.empty());
}

TEST_F(FileWrite, NothingIsWrittenForNoBytes) {
  for (const Options& options : {Options{}, kUnbuffered}) {
    SystemCalls calls;
    auto writer = open(options);
    EXPECT_EQ(writer->Write("x", 0), 0);
    EXPECT_EQ(writer->Write("x", -7), -7);
    EXPECT_EQ(writer->Write("x", INT_MIN), INT_MIN);
    EXPECT_EQ(writer->Write(nullptr, 0), 0);
    EXPECT_EQ(writer->GetPosition(), 0);
    writer.reset();
    EXPECT_EQ(calls.count(Call::kPwrite), 0);
    EXPECT_TRUE(g_reports.empty());
  }
}

TEST_F(FileWrite, AnySequenceOfLengthsGivesTheBytesInOrder) {
  for (const Options& options : {Options{}, kSmallestBuffer, kUnbuffered}) {
    std::string expected;
    {
      auto writer = open(options);
      unsigned seed = 3;
      for (int i = 0; i < 300; ++i) {
        seed = seed * 1664525u + 1013904223u;
        const std::string piece = noise((seed >> 20) % 3000, seed);
        EXPECT_EQ(put(*writer, piece), static_cast<int>(piece.size()));
        expected += piece;
        ASSERT_EQ(writer->GetPosition(), static_cast<int64_t>(expected.size()));
      }
    }
    EXPECT_EQ(readText(m_path), expected);
  }
}

struct ErrorCase {
  int error;
  int code;
};

class WriteError : public FileWrite, public testing::WithParamInterface<ErrorCase> {};

TEST_P(WriteError, OfAFlushIsToldToTheDiskCountersOnly) {
  SystemCalls calls;
  calls.fail(Call::kPwrite, GetParam().error);
  auto writer = open(kSmallestBuffer);
  EXPECT_EQ(put(*writer, noise(16384 * 3 + 5)), 16384 * 3 + 5);
  EXPECT_EQ(g_reports, Reports(3, {0, GetParam().code}));
  EXPECT_EQ(writer->GetPosition(), 5) << "what did not land is dropped";
  writer.reset();
  EXPECT_EQ(g_reports.size(), 3u) << "the last flush is silent";
  EXPECT_EQ(readText(m_path), "");
}

TEST_P(WriteError, OfAnUnbufferedWriteIsReturnedToo) {
  SystemCalls calls;
  calls.fail(Call::kPwrite, GetParam().error, 2, 2);
  auto writer = open(kUnbuffered);
  EXPECT_EQ(put(*writer, "pre"), 3);
  EXPECT_EQ(put(*writer, "gap"), -1);
  EXPECT_EQ(g_reports, (Reports{{0, GetParam().code}}));
  EXPECT_EQ(writer->GetPosition(), 3);
  EXPECT_EQ(put(*writer, "index"), 5);
  EXPECT_EQ(readText(m_path), "preindex");
}

INSTANTIATE_TEST_SUITE_P(
    Codes, WriteError,
    testing::Values(ErrorCase{ENOSPC, kDiskOutOfSpace}, ErrorCase{EDQUOT, kDiskOutOfSpace},
                    ErrorCase{EIO, kDiskOtherError}, ErrorCase{EFBIG, kDiskOtherError},
                    ErrorCase{EBADF, kDiskOtherError}, ErrorCase{EINTR, kDiskOtherError},
                    ErrorCase{EPERM, kDiskOtherError}));

TEST_F(FileWrite, TheFailureCodesAreThoseOfTheHost) {
  EXPECT_EQ(kDiskOutOfSpace, -101010111);
  EXPECT_EQ(kDiskOtherError, -101010110);
}

TEST_F(FileWrite, AfterAShortFlushLaterBytesFollowWhatLanded) {
  const std::string bytes = noise(16384 * 2);
  SystemCalls calls;
  for (const int landed : {0, 1, 16383}) {
    g_reports.clear();
    calls.forget();
    calls.shorten(Call::kPwrite, 1, landed);
    auto writer = open(kSmallestBuffer);
    EXPECT_EQ(put(*writer, bytes), 16384 * 2);
    EXPECT_EQ(g_reports, (Reports{{0, kDiskOutOfSpace}}));
    EXPECT_EQ(calls.last(Call::kPwrite).offset, landed);
    writer.reset();
    EXPECT_EQ(readText(m_path), bytes.substr(0, static_cast<size_t>(landed)) + bytes.substr(16384));
  }
}

TEST_F(FileWrite, AShortUnbufferedWriteSaysHowMuchLanded) {
  SystemCalls calls;
  calls.shorten(Call::kPwrite, 1, 2);
  auto writer = open(kUnbuffered);
  EXPECT_EQ(put(*writer, "abcdef"), 2);
  EXPECT_EQ(writer->GetPosition(), 2);
  EXPECT_EQ(g_reports, (Reports{{0, kDiskOutOfSpace}}));
  EXPECT_EQ(put(*writer, "XY"), 2);
  EXPECT_EQ(readText(m_path), "abXY");
}

TEST_F(FileWrite, AFullDeviceIsReportedOncePerFlush) {
  YDK_FileWrite writer("/dev/full", 0, 8192, 2, 16, false, true);
  if (writer.fd < 0) GTEST_SKIP() << "no /dev/full";
  EXPECT_EQ(put(writer, noise(16384 * 2)), 16384 * 2);
  EXPECT_EQ(g_reports, Reports(2, {0, kDiskOutOfSpace}));
}

TEST_F(FileWrite, NoFailingCallLeavesADescriptorOpen) {
  const int before = fake_host::openDescriptors();
  for (const Call call : {Call::kOpen, Call::kFlock, Call::kFtruncate, Call::kFstat, Call::kPwrite,
                          Call::kRealloc, Call::kMalloc}) {
    for (const int error : {EIO, EWOULDBLOCK, ENOSPC}) {
      for (int nth = 1;; ++nth) {
        SystemCalls calls;
        calls.fail(call, error, nth, nth);
        for (const bool append : {false, true}) {
          auto writer = open({.append = append});
          put(*writer, noise(140000));
        }
        if (calls.count(call) < nth) break;
        ASSERT_LT(nth, 20);
      }
      EXPECT_EQ(fake_host::openDescriptors(), before);
    }
  }
}

TEST_F(FileWrite, AFailureBeforeAHostIsBoundIsToldToNobody) {
  update_disk_counters = nullptr;
  auto writer = open(kUnbuffered);
  SystemCalls calls;
  calls.fail(Call::kPwrite, ENOSPC);
  EXPECT_EQ(put(*writer, "lost"), -1);
  EXPECT_EQ(writer->GetPosition(), 0);
  EXPECT_TRUE(g_reports.empty());
}

}  // namespace
}  // namespace support_test
