// Reading from a mapping or a copy of the whole file. Nothing in the module makes either yet; the
// reader honours them all the same, so the tests put them where it looks.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "module/support/file_read.h"
#include "tests/fake_host/files.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/module/support/private_field.h"
#include "tests/module/support/recorded_releases.h"

namespace support_test {
struct Mapping {
  friend constexpr auto fieldOf(Mapping);
};
struct Copy {
  friend constexpr auto fieldOf(Copy);
};
struct Size {
  friend constexpr auto fieldOf(Size);
};
template struct Field<&YDK_FileRead::m_mmap, Mapping>;
template struct Field<&YDK_FileRead::m_mem, Copy>;
template struct Field<&YDK_FileRead::m_fsize, Size>;

namespace {

using fake_host::noise;
using test_kit::Call;
using test_kit::SystemCalls;

std::string take(YDK_FileRead& reader, int count) {
  std::string bytes(static_cast<size_t>(count), '\0');
  const int read = reader.Read(bytes.data(), count);
  EXPECT_GE(read, 0);
  bytes.resize(static_cast<size_t>(read));
  return bytes;
}

class WholeFileRead : public testing::Test {
 protected:
  WholeFileRead() { fake_host::writeText(m_path, m_content); }

  /// The file open and mapped.
  std::unique_ptr<YDK_FileRead> openMapped() {
    auto reader = std::make_unique<YDK_FileRead>(m_path.c_str());
    EXPECT_TRUE(reader->IsOpen());
    const int fd = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
    void* const mapping = mmap(nullptr, m_content.size(), PROT_READ, MAP_PRIVATE, fd, 0);
    close(fd);
    EXPECT_NE(mapping, MAP_FAILED);
    (*reader).*fieldOf(Mapping()) = mapping;
    return reader;
  }
  /// No file, but a copy of `size` bytes, of which `bytes` are there.
  std::unique_ptr<YDK_FileRead> makeCopied(const std::string& bytes, int64_t size) {
    auto reader = std::make_unique<YDK_FileRead>(m_folder.file("none.bin").c_str());
    EXPECT_FALSE(reader->IsOpen());
    void* const copy = malloc(bytes.size());
    memcpy(copy, bytes.data(), bytes.size());
    (*reader).*fieldOf(Copy()) = copy;
    (*reader).*fieldOf(Size()) = size;
    return reader;
  }
  std::unique_ptr<YDK_FileRead> makeCopied() {
    return makeCopied(m_content, static_cast<int64_t>(m_content.size()));
  }
  /// What any reader of the content does, however the content is held.
  void expectContent(YDK_FileRead& reader) {
    EXPECT_EQ(reader.GetSize(), 100000);
    EXPECT_EQ(reader.GetPosition(), 0);
    EXPECT_TRUE(take(reader, 40000) == m_content.substr(0, 40000));
    EXPECT_EQ(reader.GetPosition(), 40000);
    char untouched = 'x';
    for (const int nothing : {0, -1, INT_MIN}) EXPECT_EQ(reader.Read(&untouched, nothing), 0);
    EXPECT_EQ(untouched, 'x');
    EXPECT_EQ(reader.GetPosition(), 40000);
    EXPECT_FALSE(reader.SetPosition(99990));
    EXPECT_EQ(take(reader, 500), m_content.substr(99990));
    EXPECT_EQ(take(reader, 500), "");
    EXPECT_EQ(reader.GetPosition(), 100000);
    EXPECT_FALSE(reader.SetPosition(INT64_MIN));
    EXPECT_EQ(take(reader, 3), m_content.substr(0, 3));
    EXPECT_FALSE(reader.SetPosition(INT64_MAX));
    EXPECT_EQ(reader.GetPosition(), 100000);
    EXPECT_FALSE(reader.SetPosition(2352));
    EXPECT_EQ(take(reader, 1), m_content.substr(2352, 1));
  }

  fake_host::TempFolder m_folder;
  const std::string m_path = m_folder.file("disc.bin");
  const std::string m_content = noise(100000);
};

TEST_F(WholeFileRead, OfAMappingReachesNoFile) {
  auto reader = openMapped();
  SystemCalls calls;
  expectContent(*reader);
  EXPECT_EQ(calls.systemCallCount(), 0);
}

TEST_F(WholeFileRead, OfACopyNeedsNoFile) {
  auto reader = makeCopied();
  SystemCalls calls;
  expectContent(*reader);
  EXPECT_EQ(calls.systemCallCount(), 0);
}

TEST_F(WholeFileRead, OfACopyKeepsTheSizeThatItHas) {
  SystemCalls calls;
  calls.fail(Call::kFlock, EWOULDBLOCK);  // the size may change
  YDK_FileRead reader(m_path.c_str());
  reader.*fieldOf(Copy()) = malloc(10);
  memcpy(reader.*fieldOf(Copy()), "0123456789", 10);
  reader.*fieldOf(Size()) = 10;
  EXPECT_EQ(reader.GetSize(), 10);
  EXPECT_EQ(take(reader, 20), "0123456789");
  EXPECT_FALSE(reader.SetPosition(50));
  EXPECT_EQ(reader.GetPosition(), 10);
  EXPECT_EQ(calls.count(Call::kFstat), 0);
}

TEST_F(WholeFileRead, OfAMappingAloneHasNeitherSizeNorPosition) {
  YDK_FileRead reader(m_folder.file("none.bin").c_str());
  char bytes[] = "pregap";
  reader.*fieldOf(Mapping()) = bytes;
  reader.*fieldOf(Size()) = 6;
  EXPECT_EQ(reader.GetSize(), -1);
  EXPECT_EQ(reader.GetPosition(), -1);
  EXPECT_TRUE(reader.SetPosition(3)) << "true tells that no file is open";
  EXPECT_EQ(take(reader, 10), "pregap");
  reader.*fieldOf(Mapping()) = nullptr;
}

TEST_F(WholeFileRead, SeekingInAMappingLeavesTheFilesOwnPositionAlone) {
  auto reader = openMapped();
  EXPECT_FALSE(reader->SetPosition(50000));
  void* const mapping = std::exchange((*reader).*fieldOf(Mapping()), nullptr);
  EXPECT_EQ(munmap(mapping, m_content.size()), 0);
  EXPECT_EQ(take(*reader, 3), m_content.substr(0, 3)) << "nothing of the file had been read";
  EXPECT_EQ(reader->GetPosition(), 50003);
}

TEST_F(WholeFileRead, CountsWhatIsLeftInThirtyTwoBits) {
  const int64_t four_gibibytes = int64_t{1} << 32;
  auto reader = makeCopied("0123456789", four_gibibytes + 10);
  EXPECT_EQ(take(*reader, 50), "0123456789") << "the lower half of what is left";
  EXPECT_EQ(take(*reader, 50), "");
  EXPECT_EQ(reader->GetPosition(), 10);
  EXPECT_FALSE(reader->SetPosition(four_gibibytes + 4));
  EXPECT_EQ(take(*reader, 50), "456789") << "the lower half of the position";
  EXPECT_EQ(reader->GetPosition(), four_gibibytes + 10);
  reader->SetPosition(5);
  (*reader).*fieldOf(Size()) = (int64_t{1} << 31) + 5;
  EXPECT_EQ(take(*reader, 50), "") << "what is left counts as negative";
  EXPECT_EQ(reader->GetPosition(), 5);
}

TEST_F(WholeFileRead, FreesItsCopyOnce) {
  auto reader = makeCopied();
  const void* const copy = (*reader).*fieldOf(Copy());
  const RecordedReleases recorded;
  reader.reset();
  EXPECT_EQ(recorded.timesFreed(copy), 1);
  EXPECT_TRUE(recorded.unmapped().empty());
}

TEST_F(WholeFileRead, UnmapsItsMappingWhole) {
  auto reader = openMapped();
  void* const mapping = (*reader).*fieldOf(Mapping());
  const RecordedReleases recorded;
  reader.reset();
  const std::vector<std::pair<void*, size_t>> expected = {{mapping, m_content.size()}};
  EXPECT_EQ(recorded.unmapped(), expected);
}

}  // namespace
}  // namespace support_test
