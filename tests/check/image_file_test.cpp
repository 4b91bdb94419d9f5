#include "check/image/image_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <array>

#include "tests/check/test_images.h"

namespace velmor::check::test {
namespace {

/// The flags of every descriptor of this process that has `file` open.
std::vector<int> flagsOfThoseOn(const std::filesystem::path& file) {
  std::vector<int> flags;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code closed;
    if (std::filesystem::read_symlink(entry, closed) == file)
      flags.push_back(fcntl(std::stoi(entry.path().filename()), F_GETFD));
  }
  return flags;
}

TEST(ImageFile, IsNotLeftOpenInProgramsThatAreStarted) {
  const TemporaryFolder folder;
  TestImage(10).write(folder / "image.bin");
  const auto file = std::filesystem::canonical(folder / "image.bin");
  {
    const ImageFile image(file, "BINARY");
    EXPECT_EQ(flagsOfThoseOn(file), std::vector<int>{FD_CLOEXEC});
  }
  EXPECT_TRUE(flagsOfThoseOn(file).empty());
}

TEST(ImageFile, IsReadFromWhateverFrameInWhateverOrder) {
  const TemporaryFolder folder;
  std::string frames;
  for (int f = 0; f < 588; ++f) frames += test_kit::little32(static_cast<uint32_t>(f));
  writeFile(folder / "image.wav", wavHeader(frames.size()) + frames);
  const ImageFile image(folder / "image.wav", "WAVE");
  for (const int64_t first : {0, 200, 100, 300, 50, 488}) {
    std::array<int16_t, 200> read{};
    ASSERT_EQ(image.readFrames(first, read.data(), 100), 100U);
    for (int64_t f = 0; f < 100; ++f)
      ASSERT_EQ(read[static_cast<size_t>(2 * f)], first + f) << "from " << first;
  }
}

}  // namespace
}  // namespace velmor::check::test
