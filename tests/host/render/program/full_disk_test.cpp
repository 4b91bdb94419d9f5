// Renders to a disk that fills up, and to files that may not grow.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>
#include <optional>

#include "tests/host/render/program/program.h"

namespace render_test {
namespace {

using testing::HasSubstr;
using testing::Not;

class FullDisk : public testing::Test {
 protected:
  void SetUp() override {
    writeWav(m_input, 5);
    std::filesystem::create_directory(m_disk);
  }

  /// Renders 882,000 bytes to a disk of its own of that size, after `before`; what is on it then is
  /// printed. Nothing when no disk can be mounted.
  std::optional<Ended> renderOnDiskOf(const std::string& size,
                                      const std::string& before = "true") const {
    const std::string mount = "mount -t tmpfs -o size=" + size + " tmpfs \"$1\"";
    const std::string program = VELMOR_BINARY_DIR "/velmor-render";
    const std::vector<std::string> room = {"-Urm", "sh", "-c"};
    const auto in_room = [&](const std::string& script) {
      std::vector<std::string> arguments = room;
      arguments.insert(arguments.end(), {script, "sh", m_disk, program, m_input});
      return run("unshare", arguments);
    };
    if (in_room(mount).status != 0) return {};
    return in_room(mount + " && cd \"$1\" && " + before +
                   R"( && { "$2" "$3" --force -o disc.cue; echo "status $?"; ls -A; })");
  }

  Scratch m_folder;
  const std::string m_input = m_folder / "in.wav";
  const std::string m_disk = m_folder / "disk";
};

TEST_F(FullDisk, IsNamedAndHoldsNothingAfterwards) {
  const auto ended = renderOnDiskOf("512k");
  if (!ended) GTEST_SKIP() << "mounting is not permitted here";
  EXPECT_THAT(ended->err, HasSubstr("the disk is full"));
  EXPECT_EQ(ended->out, "status 1\n");
}

TEST_F(FullDisk, IsFoundByTheImagesSizeWhenOnlyTheLastFlushMeetsIt) {
  int unreported = 0;
  // Six buffers of 128 KiB are written during the render, the last 95,568 bytes at its end.
  for (const char* const size : {"780k", "820k", "860k"}) {
    const auto ended = renderOnDiskOf(size);
    if (!ended) GTEST_SKIP() << "mounting is not permitted here";
    EXPECT_EQ(ended->out, "status 1\n") << size << ": " << ended->err;
    EXPECT_THAT(ended->err, HasSubstr("free some space")) << size;
    unreported += ended->err.find("last write did not reach the disk") != std::string::npos;
  }
  EXPECT_GT(unreported, 0) << "no size left room for all but the last flush";
}

TEST_F(FullDisk, LeavesTheOldPairWhole) {
  const auto ended = renderOnDiskOf("512k", "echo old >disc.cue && echo old >disc.bin");
  if (!ended) GTEST_SKIP() << "mounting is not permitted here";
  EXPECT_EQ(ended->out, "status 1\ndisc.bin\ndisc.cue\n");
  const auto kept = renderOnDiskOf(
      "512k", "echo old >disc.cue && trap 'cat disc.cue' EXIT && echo old >disc.bin");
  EXPECT_EQ(kept->out, "status 1\ndisc.bin\ndisc.cue\nold\n");
}

template <rlim_t kBytes>
void limitFilesTo() {
  const rlimit limit{kBytes, kBytes};
  setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(FullDisk, AnImageThatLacksAnythingIsNotCalledDone) {
  for (void (*const limit)() :
       {limitFilesTo<881999>, limitFilesTo<882000 - 4>, limitFilesTo<882000 - 2352>,
        limitFilesTo<6 * 131072>, limitFilesTo<6 * 131072 - 1>}) {
    const Ended ended = render({m_input, "-o", m_folder / "disc"}, limit);
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("the image"));
    EXPECT_THAT(ended.err, HasSubstr("ulimit -f"));
    EXPECT_THAT(ended.err, Not(HasSubstr("free some space")));
  }
  EXPECT_EQ(m_folder.names(), (std::vector<std::string>{"disk", "in.wav"}));
  EXPECT_EQ(render({m_input, "-o", m_folder / "disc"}, limitFilesTo<882000>).status, 0);
}

}  // namespace
}  // namespace render_test
