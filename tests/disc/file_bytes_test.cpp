// Looks into files that say of themselves where their parts lie.
#include "disc/audio/file_bytes.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/kit/scratch_folder.h"
#include "tests/kit/whole_files.h"

namespace velmor::disc::test {
namespace {

class TenBytes : public testing::Test {
 protected:
  TenBytes() {
    test_kit::writeFile(m_folder / "ten", "0123456789");
    m_descriptor = ::open((m_folder / "ten").c_str(), O_RDONLY | O_CLOEXEC);
  }
  ~TenBytes() override { ::close(m_descriptor); }
  FileBytes bytes() { return {m_descriptor, 10, m_failure}; }

  test_kit::ScratchFolder m_folder;
  int m_descriptor = -1;
  int m_failure = 0;
};

TEST_F(TenBytes, EndWithTheLastOfThem) {
  EXPECT_FALSE(bytes().runsOver(0, 10));
  EXPECT_TRUE(bytes().runsOver(0, 11));
  EXPECT_FALSE(bytes().runsOver(4, 6));
  EXPECT_TRUE(bytes().runsOver(4, 7));
  EXPECT_FALSE(bytes().runsOver(10, 0));
  EXPECT_TRUE(bytes().runsOver(10, 1));
  EXPECT_TRUE(bytes().runsOver(11, 0));
  EXPECT_TRUE(bytes().runsOver(4, UINT64_MAX));
}

TEST_F(TenBytes, HoldNumbersInBothOrders) {
  EXPECT_EQ(bytes().little(8, 2), 0x3938U);
  EXPECT_EQ(bytes().big(8, 2), 0x3839U);
  EXPECT_FALSE(bytes().little(9, 2));
  EXPECT_TRUE(bytes().has(7, "789"));
  EXPECT_FALSE(bytes().has(7, "789 "));
  EXPECT_EQ(m_failure, 0);
}

}  // namespace
}  // namespace velmor::disc::test
