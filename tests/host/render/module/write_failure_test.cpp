#include "host/render/module/write_failure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/render/module/host_callbacks.h"
#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

using testing::HasSubstr;

/// The module counts `written` bytes, or reports that writing has failed.
void report(int written) {
  reinterpret_cast<UpdateDiskCountersFn>(hostFunction("update_disk_counters"))(0, written);
}

class WriteFailures : public testing::Test {
 protected:
  WriteFailures() { openProject(m_project); }
  std::string sentence() const {
    return errorOf([this] { stopOnWriteFailure(m_folder.path("album.bin")); });
  }

  Folder m_folder;
  HostProject m_project;
};

TEST_F(WriteFailures, AreNoneWhileBytesAreCounted) {
  report(131072);
  report(0);
  EXPECT_EQ(sentence(), "");
}

TEST_F(WriteFailures, TellOfAFullDisk) {
  report(kDiskOutOfSpace);
  EXPECT_THAT(sentence(), HasSubstr("the disk is full: the image could not be written"));
}

TEST_F(WriteFailures, TellOfEveryOther) {
  report(kDiskOtherError);
  EXPECT_THAT(sentence(), HasSubstr("the system reports a write error on the disk of the output"));
}

TEST_F(WriteFailures, StayWhatTheFirstOneWas) {
  report(kDiskOutOfSpace);
  report(kDiskOtherError);
  report(131072);
  EXPECT_THAT(sentence(), HasSubstr("the disk is full"));
}

TEST_F(WriteFailures, AreForgottenForTheNextRender) {
  report(kDiskOtherError);
  openProject(m_project);
  EXPECT_EQ(sentence(), "");
}

}  // namespace
}  // namespace velmor::render::test
