#include "host/recording/service/drive_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disc/failure.h"
#include "tests/host/recording/scripted_recorder.h"
#include "tests/host/recording/scripted_user_interface.h"

namespace velmor::recording::testing {
namespace {

using ::testing::HasSubstr;

/// A machine with drives that come and go.
struct Machine {
  std::vector<DriveRecord> drives;
  ScriptedDrive state;
  std::string refusal;  // of the next attempt to take a drive
  int scans = 0;
};

class ScriptedRecorderBus final : public RecorderBus {
 public:
  explicit ScriptedRecorderBus(Machine& machine) : m_machine(machine) {}
  std::vector<DriveRecord> scan() override {
    ++m_machine.scans;
    return m_machine.drives;
  }
  std::unique_ptr<Recorder> grab(const std::string&, bool) override {
    if (!m_machine.refusal.empty()) throw Failure(m_machine.refusal);
    return std::make_unique<ScriptedRecorder>(m_machine.state);
  }

 private:
  Machine& m_machine;
};

class TheService : public ::testing::Test {
 protected:
  TheService() {
    m_machine.drives = {{"/dev/sr0", "ACME", "Burner", "1.0"}, {"/dev/sr1", "", "Other", ""}};
    m_options.user_interface = &m_person;
    m_service = new DriveService(std::make_unique<ScriptedRecorderBus>(m_machine), m_options);
  }
  ~TheService() override { m_service->close(); }

  /// The calls of the burn engine, in its order.
  void burn(void* device, const Programme& programme, DiscBurnProperties properties) {
    ASSERT_TRUE(m_service->IsValid(device));
    if (!m_service->AcquireExclusiveAccess(device)) return;
    void* handle = m_service->BurnForDevice(device);
    ASSERT_NE(handle, nullptr);
    m_service->SetProperties(handle, &properties);
    m_service->RunProgressPanel(handle, programme.tracks.data(), programme.count());
    m_service->ReleaseExclusiveAccess(device);
  }

  Machine m_machine;
  ScriptedUserInterface m_person;
  RecordingOptions m_options;
  DriveService* m_service = nullptr;
  const DiscBurnProperties m_plain{false, false, true, false, kDiscActionMount, kDiscActionNone};
};

TEST_F(TheService, LooksForDrivesOncePerWalk) {
  for (int i = 0; i < m_service->DeviceCount(); ++i) m_service->DeviceAt(i);
  EXPECT_EQ(m_machine.scans, 1);
  m_service->refresh();
  EXPECT_EQ(m_service->DeviceCount(), 2);
  EXPECT_EQ(m_machine.scans, 2);
}

TEST_F(TheService, NamesDrivesAndAnswersNullForWhatItDoesNotKnow) {
  ASSERT_EQ(m_service->DeviceCount(), 2);
  void* first = m_service->DeviceAt(0);
  void* second = m_service->DeviceAt(1);
  EXPECT_STREQ(m_service->VendorName(first), "ACME");
  EXPECT_STREQ(m_service->ProductName(first), "Burner");
  EXPECT_EQ(m_service->VendorName(second), nullptr);
  EXPECT_STREQ(m_service->ProductName(second), "Other");
  EXPECT_EQ(m_service->DeviceAt(-1), nullptr);
  EXPECT_EQ(m_service->DeviceAt(2), nullptr);
  int stranger = 0;
  EXPECT_EQ(m_service->VendorName(&stranger), nullptr);
  EXPECT_FALSE(m_service->IsValid(&stranger));
}

TEST_F(TheService, ADriveKeepsItsHandleOverEveryLook) {
  m_service->DeviceCount();
  void* second = m_service->DeviceAt(1);
  m_machine.drives.erase(m_machine.drives.begin());
  m_service->refresh();
  EXPECT_EQ(m_service->DeviceCount(), 1);
  EXPECT_EQ(m_service->DeviceAt(0), second);
  EXPECT_TRUE(m_service->IsValid(second));
}

TEST_F(TheService, ADriveThatIsGoneIsNotValid) {
  m_service->DeviceCount();
  void* first = m_service->DeviceAt(0);
  m_machine.drives.clear();
  m_service->refresh();
  EXPECT_EQ(m_service->DeviceCount(), 0);
  EXPECT_FALSE(m_service->IsValid(first));
  EXPECT_FALSE(m_service->AcquireExclusiveAccess(first));
  EXPECT_THAT(m_service->outcome().failure, HasSubstr("not there any more"));
}

TEST_F(TheService, BurnsOnTheDriveThatWasChosen) {
  m_service->DeviceCount();
  const Programme programme({300, 300});
  burn(m_service->DeviceAt(0), programme, m_plain);
  EXPECT_TRUE(m_service->outcome().written);
  EXPECT_EQ(m_machine.state.disc, programme.image());
  EXPECT_EQ(m_machine.state.releases, std::vector<bool>{false});
}

TEST_F(TheService, ABusyDriveIsToldOfAndNothingIsWritten) {
  m_service->DeviceCount();
  m_machine.refusal = "\"/dev/sr0\" is in use by another program";
  burn(m_service->DeviceAt(0), Programme({300}), m_plain);
  EXPECT_EQ(m_service->outcome().failure, m_machine.refusal);
  EXPECT_THAT(m_person.failures,
              ::testing::ElementsAre(m_machine.refusal + "; nothing was written"));
  EXPECT_EQ(m_machine.state.writings, 0);
}

struct Action {
  bool good;
  int on_success, on_failure;
  bool ejected;
};
class TheEnd : public TheService, public ::testing::WithParamInterface<Action> {};

TEST_P(TheEnd, EjectsAsTheBurnAsks) {
  m_service->DeviceCount();
  if (!GetParam().good) m_machine.state.flaw_at = 10;
  burn(m_service->DeviceAt(0), Programme({300}),
       {false, false, true, false, GetParam().on_success, GetParam().on_failure});
  EXPECT_EQ(m_service->outcome().written, GetParam().good);
  EXPECT_EQ(m_machine.state.releases, std::vector<bool>{GetParam().ejected});
}

INSTANTIATE_TEST_SUITE_P(Actions, TheEnd,
                         ::testing::Values(Action{true, kDiscActionEject, kDiscActionNone, true},
                                           Action{true, kDiscActionMount, kDiscActionEject, false},
                                           Action{true, kDiscActionNone, kDiscActionEject, false},
                                           Action{false, kDiscActionEject, kDiscActionNone, false},
                                           Action{false, kDiscActionMount, kDiscActionEject,
                                                  true}));

TEST_F(TheService, AnEmptyLayoutIsToldOfAndTheDriveGivenBack) {
  m_service->DeviceCount();
  void* device = m_service->DeviceAt(0);
  ASSERT_TRUE(m_service->AcquireExclusiveAccess(device));
  m_service->RunProgressPanel(m_service->BurnForDevice(device), nullptr, 0);
  m_service->ReleaseExclusiveAccess(device);
  EXPECT_THAT(m_service->outcome().failure, HasSubstr("no tracks"));
  EXPECT_EQ(m_machine.state.releases.size(), 1U);
}

TEST_F(TheService, HandlesOutOfPlaceDoNothing) {
  m_service->DeviceCount();
  void* device = m_service->DeviceAt(0);
  EXPECT_EQ(m_service->BurnForDevice(device), nullptr) << "without exclusive access";
  m_service->SetProperties(nullptr, &m_plain);
  m_service->RunProgressPanel(nullptr, nullptr, 0);
  m_service->ReleaseExclusiveAccess(device);
  EXPECT_EQ(m_service->outcome().failure, "");
}

TEST_F(TheService, ADriveIsHeldByOneBurnAtATime) {
  m_service->DeviceCount();
  ASSERT_TRUE(m_service->AcquireExclusiveAccess(m_service->DeviceAt(0)));
  EXPECT_FALSE(m_service->AcquireExclusiveAccess(m_service->DeviceAt(1)));
  m_service->ReleaseExclusiveAccess(m_service->DeviceAt(0));
  EXPECT_TRUE(m_service->AcquireExclusiveAccess(m_service->DeviceAt(1)));
  m_service->ReleaseExclusiveAccess(m_service->DeviceAt(1));
}

TEST_F(TheService, ForgetsTheLastOutcomeWhenItIsHandedOutAgain) {
  m_service->DeviceCount();
  burn(m_service->DeviceAt(0), Programme({300}), m_plain);
  m_service->refresh();
  EXPECT_FALSE(m_service->outcome().written);
}

TEST_F(TheService, DescribesTheDiscInADrive) {
  EXPECT_EQ(m_service->describeDisc({"/dev/sr0", "", "", "", true, ""}),
            "a blank CD-R, 79:57:74 free");
}

}  // namespace
}  // namespace velmor::recording::testing
