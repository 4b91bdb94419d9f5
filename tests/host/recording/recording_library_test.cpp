// The library as the program meets it: loaded from a file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/recording/recording_loader.h"
#include "tests/host/recording/emulated_drive_folder.h"
#include "tests/host/recording/scripted_attendant.h"

namespace velmor::recording::testing {
namespace {

using ::testing::HasSubstr;

TEST(RecordingLibrary, IsLoadedFromTheFolderOfTheProgramAndBurns) {
  const EmulatedDriveFolder drives;
  ScriptedAttendant person;
  Options options;
  options.attendant = &person;
  std::string why;
  Service* service = loadRecording(VELMOR_BINARY_DIR, options, why);
  ASSERT_NE(service, nullptr) << why;
  const Programme programme({300, 300});
  DiscRecordingService* recording = service;
  ASSERT_EQ(recording->DeviceCount(), 2);
  void* device = recording->DeviceAt(1);
  EXPECT_STREQ(recording->ProductName(device), "BURNER TWO");
  ASSERT_TRUE(recording->IsValid(device));
  ASSERT_TRUE(recording->AcquireExclusiveAccess(device));
  void* burn = recording->BurnForDevice(device);
  const DiscBurnProperties properties{false, false, true, false, kDiscActionMount, kDiscActionNone};
  recording->SetProperties(burn, &properties);
  recording->RunProgressPanel(burn, programme.tracks.data(), programme.count());
  recording->ReleaseExclusiveAccess(device);
  EXPECT_TRUE(service->outcome().written) << service->outcome().failure;
  EXPECT_EQ(drives.audio(1), programme.image());
  service->close();
}

TEST(RecordingLibrary, ThatIsMissingIsNamedWithWhatItNeeds) {
  std::string why;
  EXPECT_EQ(loadRecording("/nowhere", {}, why), nullptr);
  EXPECT_THAT(why, HasSubstr("/nowhere/velmor_recording.so"));
  EXPECT_THAT(why, HasSubstr("libburn4"));
}

TEST(RecordingLibrary, OnAMachineWithoutRecordersThereAreNone) {
  const EmulatedDriveFolder drives;
  std::filesystem::remove_all(drives.folder(0));
  std::filesystem::remove_all(drives.folder(1));
  std::string why;
  Service* service = loadRecording(VELMOR_BINARY_DIR, {}, why);
  ASSERT_NE(service, nullptr) << why;
  EXPECT_EQ(service->DeviceCount(), 0);
  EXPECT_TRUE(service->drives().empty());
  service->close();
}

}  // namespace
}  // namespace velmor::recording::testing
