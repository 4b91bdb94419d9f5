// The pair of files: complete or not there.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sched.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "tests/host/render/program/program.h"

namespace render_test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using Names = std::vector<std::string>;

class Output : public testing::Test {
 protected:
  void SetUp() override { writeWav(m_input, 6); }
  Scratch m_folder;
  const std::string m_input = m_folder / "in.wav";
};

TEST_F(Output, ANameWithoutItsEndingGetsIt) {
  ASSERT_EQ(render({m_input, "-o", m_folder / "disc"}).status, 0);
  EXPECT_EQ(m_folder.names(), (Names{"disc.bin", "disc.cue", "in.wav"}));
}

TEST_F(Output, AnExistingPairIsNotTouchedWithoutForce) {
  writeFile(m_folder / "disc.bin", "old");
  const Ended ended = render({m_input, "-o", m_folder / "disc.cue"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.err, HasSubstr("--force"));
  EXPECT_EQ(readFile(m_folder / "disc.bin"), "old");
  EXPECT_EQ(m_folder.names(), (Names{"disc.bin", "in.wav"}));
}

TEST_F(Output, ForceReplacesThePair) {
  writeFile(m_folder / "disc.bin", "old");
  writeFile(m_folder / "disc.cue", "old");
  ASSERT_EQ(render({m_input, "--force", "-o", m_folder / "disc.cue"}).status, 0);
  EXPECT_EQ(readFile(m_folder / "disc.bin").size(), 6U * 176400U);
  EXPECT_THAT(readFile(m_folder / "disc.cue"), HasSubstr("TRACK 01"));
  EXPECT_EQ(m_folder.names(), (Names{"disc.bin", "disc.cue", "in.wav"}));
}

TEST_F(Output, ASecondSheetOfAnOlderImageIsNamedAndStays) {
  ASSERT_EQ(render({m_input, "--portable-cue", "-o", m_folder / "disc"}).status, 0);
  const std::string second = readFile(m_folder / "disc.portable.cue");
  const Ended ended = render({m_input, "--force", "--end", "5", "-o", m_folder / "disc"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err,
            "velmor-render: warning: \"" + m_folder / "disc.portable.cue" +
                "\" was made for an older \"disc.bin\" and need not fit the new one; delete "
                "it, or replace it with --portable-cue\n");
  EXPECT_EQ(readFile(m_folder / "disc.portable.cue"), second);
  EXPECT_EQ(render({m_input, "--force", "--portable-cue", "-o", m_folder / "disc"}).err, "");
  writeFile(m_folder / "disc.portable.cue", "FILE \"disc.portable.bin\" BINARY\r\n");
  EXPECT_EQ(render({m_input, "--force", "-o", m_folder / "disc"}).err, "") << "another disc's";
}

void limitFileSize() {
  const rlimit limit{500000, 500000};
  setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(Output, AFailedWriteStopsTheRenderAndLeavesTheOldPairWhole) {
  writeFile(m_folder / "disc.bin", "old image");
  writeFile(m_folder / "disc.cue", "old sheet");
  const Ended ended = render({m_input, "--force", "-o", m_folder / "disc.cue"}, limitFileSize);
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.err, HasSubstr("could not be written: no file may grow beyond 500000 bytes"));
  EXPECT_THAT(ended.err, HasSubstr("ulimit -f"));
  EXPECT_EQ(readFile(m_folder / "disc.bin"), "old image");
  EXPECT_EQ(readFile(m_folder / "disc.cue"), "old sheet");
  EXPECT_EQ(m_folder.names(), (Names{"disc.bin", "disc.cue", "in.wav"}));
}

/// Leaves the last, unreported flush alone without room: six seconds are 1,058,400 bytes, eight
/// buffers and a rest.
void limitToTheLastFlush() {
  const rlimit limit{8 * 131072 + 100, 8 * 131072 + 100};
  setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(Output, ALastWriteThatFailsUnreportedIsFound) {
  const Ended ended = render({m_input, "-o", m_folder / "disc.cue"}, limitToTheLastFlush);
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.err, HasSubstr("not complete: no file may grow beyond 1048676 bytes"));
  EXPECT_EQ(m_folder.names(), (Names{"in.wav"}));
}

/// Mounts a small file system over /mnt, seen by this process alone.
void mountSmallDisk() {
  if (unshare(CLONE_NEWNS) != 0) _exit(77);
  mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
  if (mount("tmpfs", "/mnt", "tmpfs", 0, "size=512k") != 0) _exit(77);
}

TEST_F(Output, AFullDiskIsNamed) {
  const Ended ended = render({m_input, "-o", "/mnt/disc.cue"}, mountSmallDisk);
  if (ended.status == 77) GTEST_SKIP() << "mounting is not permitted here";
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.err, HasSubstr("the disk is full"));
}

TEST_F(Output, OneThatAnotherProgramHoldsIsRefused) {
  writeFile(m_folder / "disc.bin", "old");
  const int fd = open((m_folder / "disc.bin").c_str(), O_RDWR);
  ASSERT_EQ(flock(fd, LOCK_EX), 0);
  const Ended ended = render({m_input, "--force", "-o", m_folder / "disc.cue"});
  close(fd);
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.err, HasSubstr("in use by another program"));
}

class Interruption : public testing::TestWithParam<int> {};

TEST_P(Interruption, StopsTheRenderAndLeavesNothing) {
  const Scratch folder;
  writeSparseWav(folder / "long.wav", 5900);
  Running running(VELMOR_BINARY_DIR "/velmor-render", {folder / "long.wav", "--allow-overlong",
                                                       "--block", "4", "-o", folder / "disc.cue"});
  // The working folder shows that the render has begun.
  for (int i = 0; i < 3000 && folder.names().size() < 2; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  kill(running.pid(), GetParam());
  const Ended ended = running.wait();
  EXPECT_EQ(ended.status, 128 + GetParam());
  EXPECT_THAT(ended.err, HasSubstr("interrupted; nothing was written"));
  EXPECT_EQ(folder.names(), (Names{"long.wav"}));
}

off_t sizeOf(int fd) {
  struct stat info {};
  return fstat(fd, &info) == 0 ? info.st_size : -1;
}

/// The image that a render is making in `folder`, as soon as it holds six seconds; -1 when it never
/// does.
int openUnfinishedImage(const Scratch& folder) {
  for (int i = 0; i < 3000; ++i) {
    for (const std::string& name : folder.names()) {
      const int fd = open((folder / name + "/files/disc.bin").c_str(), O_RDONLY | O_CLOEXEC);
      if (sizeOf(fd) > 6 * 176400) return fd;
      close(fd);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return -1;
}

TEST_P(Interruption, CutsASilenceOfHoursShort) {
  const Scratch folder;
  writeSparseWav(folder / "a.wav", 20);
  for (const char* const lead_in : {"--disc-leadin", "--track-leadin"}) {
    Running running(VELMOR_BINARY_DIR "/velmor-render",
                    {folder / "a.wav", "--allow-overlong", "--marker", "5=b", lead_in, "4799986",
                     "-o", folder / "disc.cue"});
    const int image = openUnfinishedImage(folder);
    kill(running.pid(), GetParam());
    const Ended ended = running.wait();
    const off_t written = sizeOf(image);
    close(image);
    ASSERT_GT(written, 0) << ended.err;
    EXPECT_EQ(ended.status, 128 + GetParam());
    EXPECT_THAT(ended.err, HasSubstr("interrupted; nothing was written\n"));
    EXPECT_LT(written, 4799 * 176400LL) << "the silence was written to its end";
    EXPECT_EQ(folder.names(), (Names{"a.wav"}));
  }
}

TEST(AKilledRun, IsCleanedUpAfterByTheNextToTheSamePlace) {
  const Scratch folder;
  writeSparseWav(folder / "a.wav", 20);
  Running running(VELMOR_BINARY_DIR "/velmor-render",
                  {folder / "a.wav", "--allow-overlong", "--marker", "5=b", "--track-leadin",
                   "4799986", "-o", folder / "disc.cue"});
  const int image = openUnfinishedImage(folder);
  close(image);
  kill(running.pid(), SIGSTOP);  // lest it be done before it is killed
  ASSERT_GE(image, 0);
  const Ended beside = render({folder / "a.wav", "-o", folder / "beside"});
  EXPECT_EQ(beside.err, "") << "while the other one still runs";
  kill(running.pid(), SIGKILL);
  running.wait();
  EXPECT_EQ(folder.names().size(), 4U);
  const Ended next = render({folder / "a.wav", "--quiet", "--json", "-o", folder / "disc.cue"});
  EXPECT_EQ(next.status, 0);
  EXPECT_THAT(next.out, AllOf(HasSubstr(folder / ".velmor-render-"),
                              HasSubstr("which a killed run has left, was removed")));
  EXPECT_EQ(folder.names(), (Names{"a.wav", "beside.bin", "beside.cue", "disc.bin", "disc.cue"}));
}

TEST(InterruptionOfAReplacement, LeavesTheOldPairWhole) {
  const Scratch folder;
  writeSparseWav(folder / "long.wav", 5900);
  writeFile(folder / "disc.bin", "old image");
  writeFile(folder / "disc.cue", "old sheet");
  Running running(VELMOR_BINARY_DIR "/velmor-render",
                  {folder / "long.wav", "--allow-overlong", "--block", "4", "--force", "-o",
                   folder / "disc.cue"});
  for (int i = 0; i < 3000 && folder.names().size() < 4; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  kill(running.pid(), SIGINT);
  EXPECT_EQ(running.wait().status, 130);
  EXPECT_EQ(readFile(folder / "disc.bin"), "old image");
  EXPECT_EQ(readFile(folder / "disc.cue"), "old sheet");
  EXPECT_EQ(folder.names(), (Names{"disc.bin", "disc.cue", "long.wav"}));
}

INSTANTIATE_TEST_SUITE_P(Signals, Interruption, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_F(Output, TheProgressBarIsForTerminals) {
  writeSparseWav(m_folder / "long.wav", 1800);
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) {
    const std::string program = VELMOR_BINARY_DIR "/velmor-render";
    const std::string in = m_folder / "long.wav";
    const std::string out = m_folder / "disc.cue";
    execl(program.c_str(), program.c_str(), in.c_str(), "--block", "64", "-o", out.c_str(),
          nullptr);
    _exit(127);
  }
  std::string shown;
  char piece[4096];
  for (ssize_t n = 0; (n = read(terminal, piece, sizeof(piece))) > 0;) {
    shown.append(piece, static_cast<size_t>(n));
  }
  int status = 0;
  waitpid(child, &status, 0);
  close(terminal);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_THAT(shown, HasSubstr("Rendering ["));
  EXPECT_THAT(shown, HasSubstr("real time"));
}

TEST_F(Output, QuietPrintsNothing) {
  const Ended ended = render({m_input, "--quiet", "--meta", "GENRE=x", "-o", m_folder / "disc"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.out + ended.err, "");
}

}  // namespace
}  // namespace render_test
