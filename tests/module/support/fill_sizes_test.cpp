// How much a reader reads at a time with buffers of other sizes than the one that it makes itself.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "module/support/file_read.h"
#include "tests/fake_host/files.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/module/support/private_field.h"

namespace support_test {
struct Buffer {
  friend constexpr auto fieldOf(Buffer);
};
template struct Field<&YDK_FileRead::m_bufspace, Buffer>;

namespace {

using test_kit::Call;
using test_kit::SystemCalls;

/// The bytes that each of eight fills asks for, every one after a seek, with a block of `size`
/// bytes.
std::vector<int64_t> fillsOf(int size) {
  const fake_host::TempFolder folder;
  fake_host::writeText(folder.file("disc.bin"), fake_host::noise(1 << 20));
  YDK_FileRead reader(folder.file("disc.bin").c_str());
  (reader.*fieldOf(Buffer())).Resize(size + 8191);
  SystemCalls calls;
  std::vector<int64_t> fills;
  for (int i = 0; i < 8; ++i) {
    char byte = 0;
    reader.SetPosition((i % 2 + 1) * 400000);
    EXPECT_EQ(reader.Read(&byte, 1), 1);
    fills.push_back(calls.last(Call::kPread).size);
  }
  return fills;
}

TEST(FillSizes, SmallBlocksAreAlwaysReadWhole) {
  for (const int size : {8192, 16383}) {
    EXPECT_EQ(fillsOf(size), std::vector<int64_t>(8, size));
  }
}

TEST(FillSizes, BlocksFrom16384BytesAreWholeAndHalfInTurn) {
  for (const int size : {16384, 32768, 65535}) {
    const std::vector<int64_t> fills = fillsOf(size);
    for (size_t i = 0; i < fills.size(); ++i) {
      EXPECT_TRUE(fills[i] == size || fills[i] == size / 2) << fills[i];
      if (i > 0) {
        EXPECT_NE(fills[i], fills[i - 1]);
      }
    }
  }
}

TEST(FillSizes, BlocksFrom65536BytesGoDownToAnEighth) {
  const int size = 65536;
  const std::vector<int64_t> fills = fillsOf(size);
  for (size_t i = 1; i < fills.size(); ++i) {
    const int64_t after = fills[i - 1] == size / 8 ? size : fills[i - 1] / 2;
    EXPECT_EQ(fills[i], after);
  }
}

}  // namespace
}  // namespace support_test
