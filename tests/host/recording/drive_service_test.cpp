#include "host/recording/drive_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/recording/attendant_double.h"
#include "tests/host/recording/recorder_double.h"

namespace velmor::recording::testing {
namespace {

using ::testing::HasSubstr;

/// A machine with drives that come and go.
struct Machine {
  std::vector<DriveRecord> drives;
  DriveState state;
  std::string refusal;  // of the next attempt to take a drive
  int scans = 0;
};

class BusDouble final : public RecorderBus {
 public:
  explicit BusDouble(Machine& machine) : machine_(machine) {}
  std::vector<DriveRecord> scan() override {
    ++machine_.scans;
    return machine_.drives;
  }
  std::unique_ptr<Recorder> grab(const std::string&, bool, std::string& why) override {
    why = machine_.refusal;
    if (!why.empty()) return nullptr;
    return std::make_unique<RecorderDouble>(machine_.state);
  }

 private:
  Machine& machine_;
};

class TheService : public ::testing::Test {
 protected:
  TheService() {
    machine.drives = {{"/dev/sr0", "ACME", "Burner", "1.0"}, {"/dev/sr1", "", "Other", ""}};
    options.attendant = &person;
    service = new DriveService(std::make_unique<BusDouble>(machine), options);
  }
  ~TheService() override { service->close(); }

  /// The calls of the burn engine, in its order.
  void burn(void* device, const Programme& programme, DiscBurnProperties properties) {
    ASSERT_TRUE(service->IsValid(device));
    if (!service->AcquireExclusiveAccess(device)) return;
    void* handle = service->BurnForDevice(device);
    ASSERT_NE(handle, nullptr);
    service->SetProperties(handle, &properties);
    service->RunProgressPanel(handle, programme.tracks.data(), programme.count());
    service->ReleaseExclusiveAccess(device);
  }

  Machine machine;
  AttendantDouble person;
  Options options;
  DriveService* service = nullptr;
  const DiscBurnProperties plain{false, false, true, false, kDiscActionMount, kDiscActionNone};
};

TEST_F(TheService, LooksForDrivesOncePerWalk) {
  for (int i = 0; i < service->DeviceCount(); ++i) service->DeviceAt(i);
  EXPECT_EQ(machine.scans, 1);
  service->refresh();
  EXPECT_EQ(service->DeviceCount(), 2);
  EXPECT_EQ(machine.scans, 2);
}

TEST_F(TheService, NamesDrivesAndAnswersNullForWhatItDoesNotKnow) {
  ASSERT_EQ(service->DeviceCount(), 2);
  void* first = service->DeviceAt(0);
  void* second = service->DeviceAt(1);
  EXPECT_STREQ(service->VendorName(first), "ACME");
  EXPECT_STREQ(service->ProductName(first), "Burner");
  EXPECT_EQ(service->VendorName(second), nullptr);
  EXPECT_STREQ(service->ProductName(second), "Other");
  EXPECT_EQ(service->DeviceAt(-1), nullptr);
  EXPECT_EQ(service->DeviceAt(2), nullptr);
  int stranger = 0;
  EXPECT_EQ(service->VendorName(&stranger), nullptr);
  EXPECT_FALSE(service->IsValid(&stranger));
}

TEST_F(TheService, ADriveKeepsItsHandleOverEveryLook) {
  service->DeviceCount();
  void* second = service->DeviceAt(1);
  machine.drives.erase(machine.drives.begin());
  service->refresh();
  EXPECT_EQ(service->DeviceCount(), 1);
  EXPECT_EQ(service->DeviceAt(0), second);
  EXPECT_TRUE(service->IsValid(second));
}

TEST_F(TheService, ADriveThatIsGoneIsNotValid) {
  service->DeviceCount();
  void* first = service->DeviceAt(0);
  machine.drives.clear();
  service->refresh();
  EXPECT_EQ(service->DeviceCount(), 0);
  EXPECT_FALSE(service->IsValid(first));
  EXPECT_FALSE(service->AcquireExclusiveAccess(first));
  EXPECT_THAT(service->outcome().failure, HasSubstr("not there any more"));
}

TEST_F(TheService, BurnsOnTheDriveThatWasChosen) {
  service->DeviceCount();
  const Programme programme({300, 300});
  burn(service->DeviceAt(0), programme, plain);
  EXPECT_TRUE(service->outcome().written);
  EXPECT_EQ(machine.state.disc, programme.image());
  EXPECT_EQ(machine.state.releases, std::vector<bool>{false});
}

TEST_F(TheService, ABusyDriveIsToldOfAndNothingIsWritten) {
  service->DeviceCount();
  machine.refusal = "/dev/sr0 is in use by another program.";
  burn(service->DeviceAt(0), Programme({300}), plain);
  EXPECT_EQ(service->outcome().failure, machine.refusal);
  EXPECT_THAT(person.failures, ::testing::ElementsAre(machine.refusal + " Nothing was written."));
  EXPECT_EQ(machine.state.writings, 0);
}

struct Action {
  bool good;
  int on_success, on_failure;
  bool ejected;
};
class TheEnd : public TheService, public ::testing::WithParamInterface<Action> {};

TEST_P(TheEnd, EjectsAsTheBurnAsks) {
  service->DeviceCount();
  if (!GetParam().good) machine.state.flaw_at = 10;
  burn(service->DeviceAt(0), Programme({300}),
       {false, false, true, false, GetParam().on_success, GetParam().on_failure});
  EXPECT_EQ(service->outcome().written, GetParam().good);
  EXPECT_EQ(machine.state.releases, std::vector<bool>{GetParam().ejected});
}

INSTANTIATE_TEST_SUITE_P(Actions, TheEnd,
                         ::testing::Values(Action{true, kDiscActionEject, kDiscActionNone, true},
                                           Action{true, kDiscActionMount, kDiscActionEject, false},
                                           Action{true, kDiscActionNone, kDiscActionEject, false},
                                           Action{false, kDiscActionEject, kDiscActionNone, false},
                                           Action{false, kDiscActionMount, kDiscActionEject,
                                                  true}));

TEST_F(TheService, AnEmptyLayoutIsToldOfAndTheDriveGivenBack) {
  service->DeviceCount();
  void* device = service->DeviceAt(0);
  ASSERT_TRUE(service->AcquireExclusiveAccess(device));
  service->RunProgressPanel(service->BurnForDevice(device), nullptr, 0);
  service->ReleaseExclusiveAccess(device);
  EXPECT_THAT(service->outcome().failure, HasSubstr("no tracks"));
  EXPECT_EQ(machine.state.releases.size(), 1U);
}

TEST_F(TheService, HandlesOutOfPlaceDoNothing) {
  service->DeviceCount();
  void* device = service->DeviceAt(0);
  EXPECT_EQ(service->BurnForDevice(device), nullptr) << "without exclusive access";
  service->SetProperties(nullptr, &plain);
  service->RunProgressPanel(nullptr, nullptr, 0);
  service->ReleaseExclusiveAccess(device);
  EXPECT_EQ(service->outcome().failure, "");
}

TEST_F(TheService, ADriveIsHeldByOneBurnAtATime) {
  service->DeviceCount();
  ASSERT_TRUE(service->AcquireExclusiveAccess(service->DeviceAt(0)));
  EXPECT_FALSE(service->AcquireExclusiveAccess(service->DeviceAt(1)));
  service->ReleaseExclusiveAccess(service->DeviceAt(0));
  EXPECT_TRUE(service->AcquireExclusiveAccess(service->DeviceAt(1)));
  service->ReleaseExclusiveAccess(service->DeviceAt(1));
}

TEST_F(TheService, ForgetsTheLastOutcomeWhenItIsHandedOutAgain) {
  service->DeviceCount();
  burn(service->DeviceAt(0), Programme({300}), plain);
  service->refresh();
  EXPECT_FALSE(service->outcome().written);
}

TEST_F(TheService, DescribesTheDiscInADrive) {
  EXPECT_EQ(service->describeDisc({"/dev/sr0", "", "", "", true, ""}),
            "a blank CD-R, 79:57:74 free");
}

}  // namespace
}  // namespace velmor::recording::testing
