#include "module/support/file_read.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/fake_host/files.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/kit/other_process.h"
#include "tests/module/support/closed_standard_input.h"

namespace support_test {
namespace {

using test_kit::anotherProcessCanLock;
using test_kit::Call;
using test_kit::CallRecord;
using test_kit::LockHolder;
using test_kit::startedProgramInherits;
using test_kit::SystemCalls;

using fake_host::noise;

constexpr int kFill = 32768;
constexpr int kStaggeredFill = 16384;
constexpr int64_t kStep = 4 << 20;
constexpr uint32_t kExt4 = 0xEF53;

std::string readPiece(YDK_FileRead& reader, int count) {
  std::string bytes(static_cast<size_t>(count), '\0');
  const int read = reader.Read(bytes.data(), count);
  EXPECT_GE(read, 0);
  bytes.resize(static_cast<size_t>(std::max(read, 0)));
  return bytes;
}

class FileRead : public testing::Test {
 protected:
  void write(const std::string& bytes) {
    m_content = bytes;
    fake_host::writeText(m_path, bytes);
  }
  std::unique_ptr<YDK_FileRead> open() { return std::make_unique<YDK_FileRead>(m_path.c_str()); }

  fake_host::TempFolder m_folder;
  const std::string m_path = m_folder.file("disc.bin");
  std::string m_content;
};

std::vector<int64_t> fills(const SystemCalls& calls) {
  std::vector<int64_t> sizes;
  for (const CallRecord& record : calls.records(Call::kPread)) sizes.push_back(record.size);
  return sizes;
}

TEST_F(FileRead, ReadsTheBytesInOrderWhateverTheRequests) {
  write(noise(300001));
  for (const int request : {1, 7, 2352, 16384, 32768, 32769, 100000, 400000}) {
    auto reader = open();
    std::string all;
    for (std::string piece = readPiece(*reader, request); !piece.empty();
         piece = readPiece(*reader, request)) {
      all += piece;
      ASSERT_EQ(reader->GetPosition(), static_cast<int64_t>(all.size()));
    }
    EXPECT_TRUE(all == m_content) << request;
  }
}

TEST_F(FileRead, TellsTheSize) {
  for (const size_t size : {size_t{0}, size_t{1}, size_t{100000}}) {
    write(std::string(size, 'x'));
    auto reader = open();
    EXPECT_TRUE(reader->IsOpen());
    EXPECT_EQ(reader->GetSize(), static_cast<int64_t>(size));
    EXPECT_EQ(reader->GetPosition(), 0);
  }
}

TEST_F(FileRead, AMissingFileGivesAReaderThatAnswersNothing) {
  YDK_FileRead reader(m_folder.file("none.bin").c_str());
  EXPECT_FALSE(reader.IsOpen());
  EXPECT_TRUE(reader.SetPosition(0)) << "true tells of the failure";
  EXPECT_TRUE(reader.SetPosition(5));
  EXPECT_EQ(reader.GetSize(), -1);
  EXPECT_EQ(reader.GetPosition(), -1);
  char byte = 'x';
  EXPECT_EQ(reader.Read(&byte, 1), 0);
  EXPECT_EQ(byte, 'x');
}

TEST_F(FileRead, ReadsThroughTheVeryFirstDescriptor) {
  write(noise(100));
  const ClosedStandardInput closed;
  auto reader = open();
  EXPECT_TRUE(ClosedStandardInput::isTaken());
  EXPECT_TRUE(reader->IsOpen());
  EXPECT_EQ(reader->GetSize(), 100);
  EXPECT_FALSE(reader->SetPosition(10));
  EXPECT_EQ(readPiece(*reader, 20), m_content.substr(10, 20));
  EXPECT_EQ(reader->GetPosition(), 30);
  reader.reset();
  EXPECT_FALSE(ClosedStandardInput::isTaken());
}

TEST_F(FileRead, OpensForReadingOnly) {
  write("x");
  SystemCalls calls;
  auto reader = open();
  EXPECT_EQ(calls.last(Call::kOpen).size, O_RDONLY | O_CLOEXEC);
  EXPECT_FALSE(startedProgramInherits(m_path));
}

struct SeekCase {
  int64_t to;
  int64_t position;
};

class Seeking : public FileRead, public testing::WithParamInterface<SeekCase> {};

TEST_P(Seeking, StaysInsideTheFile) {
  write(noise(1000));
  auto reader = open();
  readPiece(*reader, 10);
  EXPECT_FALSE(reader->SetPosition(GetParam().to));
  EXPECT_EQ(reader->GetPosition(), GetParam().position);
  EXPECT_EQ(readPiece(*reader, 2000), m_content.substr(static_cast<size_t>(GetParam().position)));
  EXPECT_EQ(readPiece(*reader, 1), "");
}

INSTANTIATE_TEST_SUITE_P(Clamps, Seeking,
                         testing::Values(SeekCase{-5, 0}, SeekCase{INT64_MIN, 0}, SeekCase{0, 0},
                                         SeekCase{10, 10}, SeekCase{999, 999}, SeekCase{1000, 1000},
                                         SeekCase{1001, 1000}, SeekCase{INT64_MAX, 1000}));

TEST_F(FileRead, ReadsUpToTheEndAndThenNothing) {
  write(noise(100));
  auto reader = open();
  reader->SetPosition(90);
  EXPECT_EQ(readPiece(*reader, 50), m_content.substr(90));
  EXPECT_EQ(readPiece(*reader, 50), "");
  EXPECT_EQ(reader->GetPosition(), 100);
}

TEST_F(FileRead, RequestsOfNoBytesReachNoFile) {
  write(noise(100));
  auto reader = open();
  SystemCalls calls;
  char byte = 'x';
  EXPECT_EQ(reader->Read(&byte, 0), 0);
  EXPECT_EQ(reader->Read(&byte, -1), 0);
  EXPECT_EQ(calls.systemCallCount(), 0);
}

TEST_F(FileRead, AfterASeekTheFirstFillIsWholeAndHalfInTurn) {
  write(noise(1000000));
  auto reader = open();
  SystemCalls calls;
  for (int i = 0; i < 8; ++i) {
    ASSERT_FALSE(reader->SetPosition(100000 * (i + 1)));
    readPiece(*reader, 1);
  }
  const std::vector<int64_t> sizes = fills(calls);
  ASSERT_EQ(sizes.size(), 8u);
  EXPECT_EQ(sizes[0] + sizes[1], kFill + kStaggeredFill);
  for (size_t i = 2; i < sizes.size(); ++i) EXPECT_EQ(sizes[i], sizes[i - 2]) << i;
  for (const int64_t fill : sizes) EXPECT_TRUE(fill == kFill || fill == kStaggeredFill);
}

TEST_F(FileRead, TheTurnIsSharedByAllReaders) {
  write(noise(1000000));
  auto first = open();
  auto second = open();
  SystemCalls calls;
  for (int i = 1; i <= 4; ++i) {
    (i % 2 != 0 ? first : second)->SetPosition(100000 * i);
    readPiece(i % 2 != 0 ? *first : *second, 1);
  }
  const std::vector<int64_t> sizes = fills(calls);
  ASSERT_EQ(sizes.size(), 4u);
  EXPECT_NE(sizes[0], sizes[1]);
  EXPECT_EQ(sizes[0], sizes[2]);
  EXPECT_EQ(sizes[1], sizes[3]);
}

/// The first two fills of a process, told by its exit status.
[[noreturn]] void exitTellingTheFirstFills() {
  bool as_ruled = false;
  {
    fake_host::TempFolder own;
    fake_host::writeText(own.file("disc.bin"), std::string(100000, 'x'));
    YDK_FileRead first(own.file("disc.bin").c_str());
    YDK_FileRead second(own.file("disc.bin").c_str());
    SystemCalls calls;
    readPiece(first, 1);
    readPiece(second, 1);
    as_ruled = fills(calls) == std::vector<int64_t>{kFill, kStaggeredFill};
  }
  _exit(as_ruled ? 7 : 1);
}

TEST(FileReadDeathTest, TheTurnBeginsWithAWholeFill) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process in which nothing has been read
  EXPECT_EXIT(exitTellingTheFirstFills(), testing::ExitedWithCode(7), "");
}

TEST_F(FileRead, FillsThatFollowOnAreWhole) {
  write(noise(200000));
  auto reader = open();
  SystemCalls calls;
  readPiece(*reader, 150000);
  const auto fills = calls.records(Call::kPread);
  ASSERT_GE(fills.size(), 5u);
  int64_t offset = 0;
  for (size_t i = 0; i < fills.size(); ++i) {
    EXPECT_EQ(fills[i].offset, offset);
    offset += fills[i].size;
    if (i > 0) {
      EXPECT_EQ(fills[i].size, kFill);
    }
    EXPECT_EQ(fills[i].length % 8192, 0) << "the block is not aligned";
  }
}

TEST_F(FileRead, ASeekInsideTheBufferReachesNoFile) {
  write(noise(200000));
  auto reader = open();
  reader->SetPosition(50000);
  readPiece(*reader, 100);
  SystemCalls calls;
  const int64_t last = 50000 + kStaggeredFill - 1;  // the shorter of the two fills
  for (const int64_t to : {int64_t{50000}, int64_t{50001}, last, int64_t{60000}, int64_t{50000}}) {
    ASSERT_FALSE(reader->SetPosition(to));
    EXPECT_EQ(reader->GetPosition(), to);
    EXPECT_EQ(readPiece(*reader, 1), m_content.substr(static_cast<size_t>(to), 1));
  }
  EXPECT_EQ(calls.systemCallCount(), 0);
}

TEST_F(FileRead, TheByteBeforeAndTheByteAfterTheBufferAreReadAnew) {
  write(noise(200000));
  for (const bool before : {true, false}) {
    SystemCalls calls;
    auto reader = open();
    reader->SetPosition(50000);
    readPiece(*reader, 100);
    const int64_t to = before ? 49999 : 50000 + calls.last(Call::kPread).size;
    calls.forget();
    ASSERT_FALSE(reader->SetPosition(to));
    EXPECT_EQ(readPiece(*reader, 1), m_content.substr(static_cast<size_t>(to), 1));
    ASSERT_EQ(calls.count(Call::kPread), 1);
    EXPECT_EQ(calls.last(Call::kPread).offset, to);
  }
}

TEST_F(FileRead, AfterASeekInsideTheBufferTheNextFillFollowsTheBuffer) {
  write(noise(200000));
  SystemCalls calls;
  auto reader = open();
  readPiece(*reader, 100);
  const int64_t end = calls.last(Call::kPread).size;
  reader->SetPosition(10);
  calls.forget();
  EXPECT_EQ(readPiece(*reader, 40000), m_content.substr(10, 40000));
  ASSERT_FALSE(calls.records(Call::kPread).empty());
  EXPECT_EQ(calls.records(Call::kPread)[0].offset, end);
  EXPECT_EQ(calls.records(Call::kPread)[0].size, kFill) << "such a seek staggers nothing";
}

TEST_F(FileRead, ASeekToThePositionItHasChangesNothing) {
  write(noise(200000));
  auto reader = open();
  readPiece(*reader, 100);
  SystemCalls calls;
  ASSERT_FALSE(reader->SetPosition(100));
  EXPECT_EQ(readPiece(*reader, 100), m_content.substr(100, 100));
  EXPECT_EQ(calls.systemCallCount(), 0);
}

TEST_F(FileRead, AnyMixOfSeeksAndReadsGivesTheFilesBytes) {
  write(noise(150000));
  std::mt19937 random(11);
  auto reader = open();
  int64_t position = 0;
  for (int i = 0; i < 3000; ++i) {
    if (random() % 2 != 0) {
      const int64_t reach = random() % 2 != 0 ? 170000 : 20000;
      int64_t to = static_cast<int64_t>(random() % static_cast<unsigned>(reach));
      if (reach == 20000) to += position - 10000;
      ASSERT_FALSE(reader->SetPosition(to));
      position = std::clamp<int64_t>(to, 0, 150000);
    }
    const int count = static_cast<int>(random() % (random() % 8 == 0 ? 70000 : 3000));
    ASSERT_EQ(reader->GetPosition(), position);
    const std::string piece = readPiece(*reader, count);
    ASSERT_TRUE(piece ==
                m_content.substr(static_cast<size_t>(position), static_cast<size_t>(count)))
        << i << " at " << position;
    position += static_cast<int64_t>(piece.size());
  }
}

TEST_F(FileRead, HoldsASharedLockWhileOpen) {
  write("x");
  {
    auto first = open();
    auto second = open();
    EXPECT_TRUE(first->IsOpen() && second->IsOpen());
    EXPECT_TRUE(anotherProcessCanLock(m_path, LOCK_SH));
    EXPECT_FALSE(anotherProcessCanLock(m_path, LOCK_EX));
  }
  EXPECT_TRUE(anotherProcessCanLock(m_path, LOCK_EX));
}

TEST_F(FileRead, LocksWithoutWaitingAndUnlocks) {
  write("x");
  SystemCalls calls;
  open().reset();
  const auto locks = calls.records(Call::kFlock);
  ASSERT_EQ(locks.size(), 2u);
  EXPECT_EQ(locks[0].size, LOCK_SH | LOCK_NB);
  EXPECT_EQ(locks[1].size, LOCK_UN);
}

TEST_F(FileRead, FollowsTheSizeOfAFileThatAnotherProcessWrites) {
  write(noise(1000));
  LockHolder writer(m_path, LOCK_EX);
  auto reader = open();
  ASSERT_TRUE(reader->IsOpen());
  EXPECT_EQ(reader->GetSize(), 1000);
  write(noise(5000));
  EXPECT_FALSE(reader->SetPosition(4000));
  EXPECT_EQ(reader->GetPosition(), 4000) << "the size was not read again before the seek";
  EXPECT_EQ(readPiece(*reader, 2000), m_content.substr(4000));
  EXPECT_EQ(reader->GetSize(), 5000);

  SystemCalls calls;
  readPiece(*reader, 1);
  EXPECT_EQ(calls.count(Call::kFstat), 1);
  reader->SetPosition(3);
  EXPECT_EQ(calls.count(Call::kFstat), 2);
  calls.fail(Call::kFstat, EIO);
  EXPECT_EQ(reader->GetSize(), 5000) << "the last size known";
  calls.forget();
  reader.reset();
  EXPECT_EQ(calls.count(Call::kFlock), 0) << "there is no lock to release";
}

TEST_F(FileRead, ReadsTheSizeOnceWhenItHoldsTheLock) {
  write(noise(1000));
  auto reader = open();
  write(noise(5000));
  SystemCalls calls;
  EXPECT_EQ(reader->GetSize(), 1000);
  reader->SetPosition(4000);
  EXPECT_EQ(reader->GetPosition(), 1000);
  EXPECT_EQ(calls.count(Call::kFstat), 0);
}

class UnbufferedRead : public FileRead {
 protected:
  UnbufferedRead() {
    m_calls.fail(Call::kRealloc, ENOMEM);
    m_calls.fail(Call::kMalloc, ENOMEM);
  }
  SystemCalls m_calls;
};

TEST_F(UnbufferedRead, AsksTheFileForEveryRequest) {
  write(noise(1000));
  auto reader = open();
  EXPECT_EQ(readPiece(*reader, 10), m_content.substr(0, 10));
  EXPECT_EQ(readPiece(*reader, 10), m_content.substr(10, 10));
  EXPECT_FALSE(reader->SetPosition(500));
  EXPECT_EQ(readPiece(*reader, 2000), m_content.substr(500));
  EXPECT_EQ(readPiece(*reader, 1), "");
  EXPECT_EQ(fills(m_calls), (std::vector<int64_t>{10, 10, 2000, 1}));
  EXPECT_EQ(reader->GetPosition(), 1000);
}

TEST_F(UnbufferedRead, OfNoBytesReachesNoFile) {
  write(noise(100));
  auto reader = open();
  m_calls.fail(Call::kPread, EIO);
  char byte = 'x';
  EXPECT_EQ(reader->Read(&byte, 0), 0);
  EXPECT_EQ(reader->Read(&byte, -1), 0);
  EXPECT_EQ(fills(m_calls), std::vector<int64_t>{});
  EXPECT_EQ(reader->GetPosition(), 0);
}

TEST_F(UnbufferedRead, AFailedOneMovesThePositionBackByOne) {
  write(noise(1000));
  auto reader = open();
  readPiece(*reader, 10);
  m_calls.fail(Call::kPread, EIO, 2, 3);
  char byte = 'x';
  EXPECT_EQ(reader->Read(&byte, 1), -1);
  EXPECT_EQ(reader->GetPosition(), 9);
  EXPECT_EQ(reader->Read(&byte, 1), -1);
  EXPECT_EQ(reader->GetPosition(), 8);
  // The position in the file has not moved: the next byte is the one after those read.
  EXPECT_EQ(readPiece(*reader, 1), m_content.substr(10, 1));
  EXPECT_EQ(reader->GetPosition(), 9);
}

TEST_F(FileRead, AFailedFillEndsTheRequestWithWhatThereIs) {
  write(noise(200000));
  auto reader = open();
  SystemCalls calls;
  calls.fail(Call::kPread, EIO, 2, 2);
  const std::string piece = readPiece(*reader, 100000);
  EXPECT_EQ(static_cast<int64_t>(piece.size()), calls.records(Call::kPread)[0].size);
  EXPECT_TRUE(piece == m_content.substr(0, piece.size()));
  EXPECT_EQ(reader->GetPosition(), static_cast<int64_t>(piece.size()));
  EXPECT_EQ(readPiece(*reader, 10), m_content.substr(piece.size(), 10))
      << "reading goes on afterwards";
}

TEST_F(FileRead, AFailedFirstFillGivesNothing) {
  write(noise(1000));
  auto reader = open();
  SystemCalls calls;
  calls.fail(Call::kPread, EIO);
  char byte = 'x';
  EXPECT_EQ(reader->Read(&byte, 1), 0);
  EXPECT_EQ(reader->GetPosition(), 0);
}

TEST_F(FileRead, ShortFillsAreContinued) {
  write(noise(100000));
  auto reader = open();
  SystemCalls calls;
  calls.shorten(Call::kPread, 1, 13);
  EXPECT_TRUE(readPiece(*reader, 70000) == m_content.substr(0, 70000));
  EXPECT_EQ(calls.records(Call::kPread)[1].offset, 13);
}

TEST_F(FileRead, WithoutAnEndToSeekToTheSizeIsZero) {
  write(noise(1000));
  SystemCalls calls;
  calls.fail(Call::kLseek, ESPIPE, 1, 1);
  auto reader = open();
  EXPECT_TRUE(reader->IsOpen());
  EXPECT_EQ(reader->GetSize(), 0);
}

/// The advice given, as (advice, offset, length).
std::vector<CallRecord> advice(const SystemCalls& calls, int advice) {
  std::vector<CallRecord> records;
  for (const CallRecord& record : calls.records(Call::kFadvise)) {
    if (record.size == advice) records.push_back(record);
  }
  return records;
}

TEST_F(FileRead, GivesPagesOfALocalFileBackInWholeStepsBehindIt) {
  write("");
  ASSERT_EQ(truncate(m_path.c_str(), 3 * kStep), 0);
  SystemCalls calls;
  calls.pretendFileSystem(kExt4);
  auto reader = open();
  ASSERT_EQ(advice(calls, POSIX_FADV_SEQUENTIAL).size(), 1u);
  EXPECT_EQ(advice(calls, POSIX_FADV_SEQUENTIAL)[0].offset, 0);
  EXPECT_EQ(advice(calls, POSIX_FADV_SEQUENTIAL)[0].length, 0) << "the whole file is meant";
  std::vector<char> piece(2352 * 13);
  int64_t given_back = 0;
  while (reader->Read(piece.data(), static_cast<int>(piece.size())) > 0) {
    const auto given = advice(calls, POSIX_FADV_DONTNEED);
    int64_t end = 0;
    for (const CallRecord& record : given) {
      EXPECT_EQ(record.offset % kStep, 0);
      EXPECT_EQ(record.length % kStep, 0);
      EXPECT_GT(record.length, 0);
      EXPECT_EQ(record.offset, end) << "a step was left out";
      end = record.offset + record.length;
    }
    const CallRecord last = calls.last(Call::kPread);
    ASSERT_LE(end, last.offset + last.result) << "pages ahead of the position were given back";
    given_back = end;
  }
  EXPECT_GE(given_back, 2 * kStep);
  EXPECT_LE(advice(calls, POSIX_FADV_DONTNEED).size(), 3u);
}

TEST_F(FileRead, GivesNothingBackOfAFileThatWasJumpedOver) {
  write("");
  ASSERT_EQ(truncate(m_path.c_str(), 8 * kStep), 0);
  SystemCalls calls;
  calls.pretendFileSystem(kExt4);
  auto reader = open();
  readPiece(*reader, 100);
  reader->SetPosition(7 * kStep + 100);
  readPiece(*reader, 100);
  for (const CallRecord& record : advice(calls, POSIX_FADV_DONTNEED)) {
    EXPECT_LE(record.offset + record.length, 7 * kStep + 100 + kFill);
  }
}

struct FileSystemCase {
  uint32_t magic;
  bool local;
};

class ReadCaching : public FileRead, public testing::WithParamInterface<FileSystemCase> {};

TEST_P(ReadCaching, IsLeftToTheSystemOnTheNetwork) {
  write(noise(1000));
  SystemCalls calls;
  calls.pretendFileSystem(GetParam().magic);
  auto reader = open();
  readPiece(*reader, 1000);
  EXPECT_EQ(calls.count(Call::kFadvise) > 0, GetParam().local) << std::hex << GetParam().magic;
}

INSTANTIATE_TEST_SUITE_P(
    FileSystems, ReadCaching,
    testing::Values(FileSystemCase{kExt4, true}, FileSystemCase{0x01021994, true},
                    FileSystemCase{0x58465342, true}, FileSystemCase{0x9123683E, true},
                    FileSystemCase{0x6969, false}, FileSystemCase{0x517B, false},
                    FileSystemCase{0xFF534D42, false}, FileSystemCase{0xFE534D42, false},
                    FileSystemCase{0x00C36400, false}, FileSystemCase{0x5346414F, false},
                    FileSystemCase{0x6B414653, false}, FileSystemCase{0x73757245, false},
                    FileSystemCase{0x01021997, false}, FileSystemCase{0x564C, false},
                    FileSystemCase{0x7461636F, false}, FileSystemCase{0x01161970, false},
                    FileSystemCase{0x0BD00BD0, false}, FileSystemCase{0x65735546, false}));

TEST_F(FileRead, AFileSystemThatCannotBeAskedCountsAsLocal) {
  write(noise(1000));
  SystemCalls calls;
  calls.fail(Call::kFstatfs, EIO);
  auto reader = open();
  EXPECT_GT(calls.count(Call::kFadvise), 0);
}

TEST_F(FileRead, NoFailingCallLeavesADescriptorOpen) {
  write(noise(100000));
  const int before = fake_host::openDescriptors();
  for (const Call call : {Call::kOpen, Call::kFlock, Call::kFstat, Call::kFstatfs, Call::kPread,
                          Call::kLseek, Call::kFadvise, Call::kRealloc, Call::kMalloc}) {
    for (int nth = 1;; ++nth) {
      SystemCalls calls;
      calls.fail(call, EIO, nth, nth);
      {
        auto reader = open();
        std::vector<char> piece(60000);
        reader->SetPosition(5);
        reader->Read(piece.data(), 60000);
        reader->SetPosition(90000);
        reader->Read(piece.data(), 60000);
      }
      EXPECT_EQ(fake_host::openDescriptors(), before);
      if (calls.count(call) < nth) break;
      ASSERT_LT(nth, 30);
    }
  }
}

}  // namespace
}  // namespace support_test
