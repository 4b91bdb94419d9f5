// The file classes' fields that nobody in the module reads: their layout is fixed, so they stay,
// and what they hold is to be right for whoever looks.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "module/support/file_read.h"
#include "module/support/file_write.h"
#include "tests/fake_host/files.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/module/support/private_field.h"

namespace support_test {

struct WrittenEnd {
  friend constexpr auto fieldOf(WrittenEnd);
};
struct Reserved {
  friend constexpr auto fieldOf(Reserved);
};
struct Flag {
  friend constexpr auto fieldOf(Flag);
};
template struct Field<&YDK_FileWrite::end_pos, WrittenEnd>;
template struct Field<&YDK_FileRead::m_reserved, Reserved>;
template struct Field<&YDK_FileRead::m_flag, Flag>;

namespace {

class FixedLayout : public testing::Test {
 protected:
  static int64_t endOf(const YDK_FileWrite& writer) { return writer.*fieldOf(WrittenEnd()); }

  const fake_host::TempFolder m_folder;
  const std::string m_path = m_folder.file("disc.bin");
};

TEST_F(FixedLayout, ABufferedWriterCountsWhatWaits) {
  YDK_FileWrite writer(m_path.c_str(), 0, 8192, 2, 2, false, false);
  EXPECT_EQ(endOf(writer), 0);
  for (const int64_t end : {1000, 16384, 40000}) {
    const std::string bytes = fake_host::noise(static_cast<size_t>(end - endOf(writer)));
    writer.Write(bytes.data(), static_cast<int>(bytes.size()));
    EXPECT_EQ(endOf(writer), end);
  }
}

TEST_F(FixedLayout, AWriterKeepsTheLargestEndThoughALaterWriteIsLost) {
  YDK_FileWrite writer(m_path.c_str(), 0, 8192, 2, 2, false, false);
  const std::string bytes = fake_host::noise(16384);
  {
    test_kit::SystemCalls calls;
    calls.fail(test_kit::Call::kPwrite, ENOSPC);
    writer.Write(bytes.data(), 16384);
  }
  EXPECT_EQ(writer.GetPosition(), 0);
  writer.Write(bytes.data(), 1);
  EXPECT_EQ(endOf(writer), 16384);
}

TEST_F(FixedLayout, AnUnbufferedWriterCountsWhatTheFileTook) {
  YDK_FileWrite writer(m_path.c_str(), 0, 8192, 1, 1, false, false);
  writer.Write("12345", 5);
  EXPECT_EQ(endOf(writer), 5);
  test_kit::SystemCalls calls;
  calls.shorten(test_kit::Call::kPwrite, 1, 2);
  writer.Write("67890", 5);
  EXPECT_EQ(endOf(writer), 7);
}

TEST_F(FixedLayout, AnAppendingWriterBeginsAtTheFilesEnd) {
  fake_host::writeText(m_path, "what was there");
  const YDK_FileWrite writer(m_path.c_str(), 0, 8192, 2, 2, true, false);
  EXPECT_EQ(endOf(writer), 14);
}

TEST_F(FixedLayout, AReadersSpareFieldsStayEmpty) {
  fake_host::writeText(m_path, fake_host::noise(100000));
  YDK_FileRead reader(m_path.c_str());
  reader.*fieldOf(Flag()) = true;
  char byte = 0;
  reader.Read(&byte, 1);
  EXPECT_TRUE(reader.*fieldOf(Flag()));
  reader.SetPosition(50000);
  EXPECT_FALSE(reader.*fieldOf(Flag())) << "a seek clears it";
  EXPECT_EQ(reader.*fieldOf(Reserved()), 0);
}

}  // namespace
}  // namespace support_test
