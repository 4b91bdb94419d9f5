#include "host/render/output/finished_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "disc/failure.h"
#include "tests/host/render/input/sound_files.h"

namespace velmor::render {
namespace {

using testing::AllOf;
using testing::HasSubstr;

/// Ten seconds behind a lead-in of 13 ms, whose 2293 bytes count as 573 frames and whose padding of
/// 59 as 14, which is one less than both are together.
class FinishedFilesTest : public testing::Test {
 protected:
  FinishedFilesTest() {
    m_folder.write("disc.cue",
                   "FILE \"disc.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n    INDEX 01 00:00:00\r\n");
    m_folder.write("disc.bin", "");
    std::filesystem::resize_file(m_image, kImageBytes);
  }

  std::string failure(int64_t counted_frames = kCounted) const {
    try {
      readFinishedFiles(m_sheet, m_image, m_project, m_plan, counted_frames);
    } catch (const Failure& error) {
      return error.what();
    }
    return {};
  }

  static constexpr int64_t kCounted = 441000 + 587;
  static constexpr uintmax_t kImageBytes = (441000 + 588) * 4;
  const SinkConfig m_config{static_cast<int32_t>(kIsoFormatCode), 13, 0, 0, kOneTrack, 0};
  HostProject m_project;
  TrackPlan m_plan = planTracks(m_config, {}, 441000);
  test::Folder m_folder;
  const std::string m_sheet = m_folder.path("disc.cue");
  const std::string m_image = m_folder.path("disc.bin");
};

TEST_F(FinishedFilesTest, WholeOnesAreTaken) {
  const FinishedFiles files = readFinishedFiles(m_sheet, m_image, m_project, m_plan, kCounted);
  EXPECT_EQ(files.image_bytes, kImageBytes);
  EXPECT_EQ(files.sheet_bytes, std::filesystem::file_size(m_sheet));
  EXPECT_EQ(files.sheet.tracks.size(), 1U);
}

TEST_F(FinishedFilesTest, AnImageOfAnyOtherLengthIsNot) {
  for (const int off : {-2352, -4, -1, 1, 4, 2352}) {
    std::filesystem::resize_file(m_image, kImageBytes + static_cast<uintmax_t>(off));
    EXPECT_THAT(failure(), HasSubstr("the image is not complete")) << off;
  }
}

TEST_F(FinishedFilesTest, AModuleThatCountsOtherwiseIsNamed) {
  for (const int64_t counted : {kCounted - 1, kCounted + 1}) {
    EXPECT_THAT(failure(counted),
                AllOf(HasSubstr(std::to_string(counted) + " frames where 441587 belong"),
                      HasSubstr("module")));
  }
}

TEST_F(FinishedFilesTest, ASheetThatLacksATextIsNot) {
  const std::string track = "FILE \"disc.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n";
  const std::string index = "    INDEX 01 00:00:00\r\n";
  m_project.metadata = {{"CUE:DISC_TITLE", "Night"}, {"CUE:DISC_MOOD", "no line has it"}};
  EXPECT_THAT(failure(), HasSubstr("lacks a title"));
  m_folder.write("disc.cue", "TITLE \"Night\"\r\n" + track + index);
  EXPECT_EQ(failure(), "");
  m_plan.tracks[0].title = "One";
  EXPECT_THAT(failure(), HasSubstr("lacks a title"));
  m_folder.write("disc.cue", "TITLE \"Night\"\r\n" + track + "    TITLE \"One\"\r\n" + index);
  EXPECT_EQ(failure(), "");
}

TEST_F(FinishedFilesTest, ASheetThatLacksATrackOrItsEndIsNot) {
  m_folder.write("disc.cue", "FILE \"disc.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n    INDEX 01 00:0");
  EXPECT_THAT(failure(), HasSubstr("the cue sheet is not complete"));
  m_folder.write("disc.cue", "FILE \"disc.bin\" BINARY\r\n");
  EXPECT_THAT(failure(), HasSubstr("the cue sheet is not complete"));
}

}  // namespace
}  // namespace velmor::render
