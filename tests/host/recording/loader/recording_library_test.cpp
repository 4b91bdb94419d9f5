// The library as the program meets it: loaded from a file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disc/failure.h"
#include "host/recording/loader/load_recording.h"
#include "tests/host/recording/emulated_drive_folder.h"
#include "tests/host/recording/loader/library_file.h"
#include "tests/host/recording/scripted_user_interface.h"

namespace velmor::recording::testing {
namespace {

using ::testing::HasSubstr;

TEST(RecordingLibrary, IsLoadedFromItsFileAndBurns) {
  const EmulatedDriveFolder drives;
  ScriptedUserInterface person;
  RecordingOptions options;
  options.user_interface = &person;
  Service* service = loadRecording(kLibrary, options);
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
  try {
    loadRecording("/nowhere/velmor_recording.so", {});
    FAIL() << "nothing was thrown";
  } catch (const Failure& failure) {
    EXPECT_THAT(failure.what(), HasSubstr("/nowhere/velmor_recording.so"));
    EXPECT_THAT(failure.what(), HasSubstr("libburn4"));
  }
}

TEST(RecordingLibrary, OnAMachineWithoutRecordersThereAreNone) {
  const EmulatedDriveFolder drives;
  std::filesystem::remove_all(drives.folder(0));
  std::filesystem::remove_all(drives.folder(1));
  Service* service = loadRecording(kLibrary, {});
  EXPECT_EQ(service->DeviceCount(), 0);
  EXPECT_TRUE(service->drives().empty());
  service->close();
}

}  // namespace
}  // namespace velmor::recording::testing
