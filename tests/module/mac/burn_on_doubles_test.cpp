// The macOS burn, run on GNUstep with doubles of the application object and of DiscRecording. The
// module is loaded once: a class registers itself with the runtime once per process.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "disc/failure.h"
#include "tests/fake_host/files.h"
#include "tests/fake_host/sink.h"
#include "tests/fake_host/windowing_layer.h"
#include "tests/module/mac/doubles/objective_c_calls.h"
#include "tests/module/mac/engine_door.h"

namespace {

using doubles::Device;
using doubles::ProducerOf;
using doubles::PropertiesOf;
using doubles::TheFrameworks;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr int kSector = 2352;

struct Module {
  ListRecordersFn list_recorders = nullptr;
  BurnImageFn burn_image = nullptr;
};

Module& TheModule() {
  static Module module;
  return module;
}

class LoadedOnce : public testing::Environment {
 public:
  void SetUp() override {
    doubles::SetUpProcess(doubles::Application::kDelegateWithProvider);
    layer_.emplace();
    void* const handle = dlopen(VELMOR_GNUSTEP_MODULE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(handle, nullptr) << dlerror();
    EXPECT_THAT(TheFrameworks().log_lines, IsEmpty());
    EXPECT_EQ(layer_->lookups.size(), 365U);
    TheModule().list_recorders =
        reinterpret_cast<ListRecordersFn>(dlsym(handle, "velmorTestListRecorders"));
    TheModule().burn_image = reinterpret_cast<BurnImageFn>(dlsym(handle, "velmorTestBurnImage"));
    ASSERT_NE(TheModule().list_recorders, nullptr);
    ASSERT_NE(TheModule().burn_image, nullptr);
  }
  static std::vector<std::string>& LayerCalls() { return layer_->calls; }

 private:
  static inline std::optional<fake_host::WindowingLayer> layer_;
};

const auto* const kEnvironment = testing::AddGlobalTestEnvironment(new LoadedOnce);

// An image in which every byte tells where it stands.
std::string ImageBytes(size_t size) {
  std::string bytes(size, '\0');
  for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i / 7 + i / kSector);
  return bytes;
}

class Burn : public testing::Test {
 protected:
  Burn() { doubles::SetDevices({Device{.name = "first"}, Device{.name = "second"}}); }

  // All of it inside an autorelease pool, as in an application.
  void Run(const std::vector<int>& offsets, size_t image_size, bool eject = false,
           bool test_burn = false, int device = 1) {
    image_ = ImageBytes(image_size);
    fake_host::WriteText(folder_.file("disc.bin"), image_);
    const doubles::Pool pool;
    TheModule().burn_image(TheFrameworks().devices.at(static_cast<size_t>(device)).object,
                           static_cast<int>(offsets.size()), offsets.data(),
                           folder_.file("disc.bin").c_str(), eject, test_burn);
  }

  // Runs `check` while the panel burns, then lets it finish.
  static void WhileBurning(std::function<void()> check) {
    TheFrameworks().on_turn = [check = std::move(check)] {
      check();
      doubles::FinishBurn();
    };
  }

  static std::string Data(int track, uint32_t length) {
    std::string buffer(length, '?');
    const uint32_t n = ProducerOf(track).ProduceData(buffer.data(), length);
    buffer.resize(n);
    return buffer;
  }

  std::string Sectors(int first, int count) const {
    return image_.substr(static_cast<size_t>(first) * kSector,
                         static_cast<size_t>(count) * kSector);
  }

  static int Created(const char* name) { return TheFrameworks().created[name]; }
  static int Gone(const char* name) { return TheFrameworks().gone[name]; }

  fake_host::TempFolder folder_;
  std::string image_;
};

TEST_F(Burn, GoesThroughItsStepsInOrder) {
  Run({0, 352800}, 705600);
  EXPECT_THAT(TheFrameworks().calls,
              ElementsAre("devices", "isValid second", "acquireExclusiveAccess second",
                          "burnForDevice:second",
                          "DRBurn setProperties:", "initWithProducer:", "DRTrack setProperties:",
                          "initWithProducer:", "DRTrack setProperties:", "progressPanel",
                          "setDelegate:QuinloCDBurnDel", "setVerboseProgressStatus:YES",
                          "beginProgressPanelForBurn:layout:", "isActive",
                          "runModalForWindow:DRBurnProgressPanel", "stopModal",
                          "releaseExclusiveAccess second", "dealloc QuinloCDBurnDel",
                          "dealloc QuinloCDBurnSource", "dealloc QuinloCDBurnSource"));
}

TEST_F(Burn, AnApplicationInTheBackgroundLooksForTheEndOfTheSession) {
  TheFrameworks().active = false;
  TheFrameworks().on_turn = [] {
    if (TheFrameworks().turns == 3) doubles::FinishBurn();
  };
  LoadedOnce::LayerCalls().clear();
  Run({0}, kSector);
  const std::vector<std::string> expected = {"isActive",
                                             "beginModalSessionForWindow:DRBurnProgressPanel",
                                             "runModalSession:",
                                             "runModalSession:",
                                             "runModalSession:",
                                             "stopModal",
                                             "endModalSession:",
                                             "releaseExclusiveAccess second",
                                             "dealloc QuinloCDBurnDel",
                                             "dealloc QuinloCDBurnSource"};
  const std::vector<std::string>& calls = TheFrameworks().calls;
  ASSERT_GE(calls.size(), expected.size());
  EXPECT_EQ(std::vector<std::string>(calls.end() - static_cast<long>(expected.size()), calls.end()),
            expected);
  EXPECT_THAT(LoadedOnce::LayerCalls(), ElementsAre("Sleep(1)", "Sleep(1)"))
      << "a pause after each answer to go on, none after the last";
}

TEST_F(Burn, HasItsPropertiesInOrder) {
  struct Case {
    bool eject, test_burn;
    const char *completion, *failure;
  };
  const std::vector<Case> cases = {
      {false, false, "DRBurnCompletionActionMount", "DRBurnFailureActionNone"},
      {true, false, "DRBurnCompletionActionEject", "DRBurnCompletionActionEject"},
      {false, true, "DRBurnCompletionActionMount", "DRBurnFailureActionNone"}};
  for (const Case& c : cases) {
    doubles::SetDevices({Device{.name = "only"}});
    Run({0}, kSector, c.eject, c.test_burn, 0);
    EXPECT_THAT(
        TheFrameworks().burn_properties,
        ElementsAre(Pair("DRBurnTestingKey", c.test_burn ? "bool 1" : "bool 0"),
                    Pair("DRBurnAppendableKey", "bool 0"), Pair("DRBurnOverwriteDiscKey", "bool 1"),
                    Pair("DRBurnVerifyDiscKey", "bool 0"),
                    Pair("DRBurnCompletionActionKey", c.completion),
                    Pair("DRBurnFailureActionKey", c.failure)));
  }
}

TEST_F(Burn, TwoTracksOfTwoSecondsEachAreCutAtBlock150) {
  WhileBurning([] {
    ASSERT_EQ(TheFrameworks().layout.size(), 2U);
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(ProducerOf(i).Variable("posbytes"), i * 352800);
      EXPECT_EQ(ProducerOf(i).Variable("lenbytes"), 352800);
      EXPECT_EQ(ProducerOf(i).Variable("rdpos"), 0);
      EXPECT_TRUE(ProducerOf(i).ConformsToProtocol());
      EXPECT_THAT(PropertiesOf(i),
                  ElementsAre(Pair("DRPreGapLengthKey", "i 0"), Pair("DRDataFormKey", "i 0"),
                              Pair("DRTrackModeKey", "i 0"), Pair("DRBlockTypeKey", "i 0"),
                              Pair("DRSessionFormatKey", "i 0"), Pair("DRBlockSizeKey", "i 2352"),
                              Pair("DRTrackLengthKey", "i 150")));
    }
  });
  Run({0, 352800}, 705600);
  EXPECT_EQ(TheFrameworks().turns, 1);
}

TEST_F(Burn, OffsetsAreCutToBlocksTheFirstIsNotReadAndTheLastTrackIsRoundedUp) {
  WhileBurning([] {
    EXPECT_EQ(ProducerOf(0).Variable("posbytes"), 0);
    EXPECT_EQ(ProducerOf(0).EstimateLength(), 2U);
    EXPECT_EQ(ProducerOf(1).Variable("posbytes"), 2 * kSector);
    EXPECT_EQ(ProducerOf(1).EstimateLength(), 3U);
  });
  Run({999999, 3 * kSector - 1}, 4 * kSector + 1);
  EXPECT_EQ(TheFrameworks().turns, 1);
}

TEST_F(Burn, TheLayoutHasRoomForItsTracksAndForOneAtLeast) {
  for (const int count : {0, 1, 3}) {
    doubles::SetDevices({Device{.name = "only"}});
    WhileBurning([count] { EXPECT_EQ(TheFrameworks().layout.size(), static_cast<size_t>(count)); });
    std::vector<int> offsets(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) offsets[static_cast<size_t>(i)] = i * kSector;
    Run(offsets, 3 * kSector, false, false, 0);
    EXPECT_EQ(TheFrameworks().turns, 1) << "the panel is shown for " << count << " tracks";
    EXPECT_THAT(TheFrameworks().array_capacities,
                Contains(static_cast<unsigned long>(std::max(count, 1))).Times(1));
  }
}

TEST_F(Burn, TracksMayBeAskedInAnyOrder) {
  WhileBurning([this] {
    EXPECT_EQ(Data(1, kSector), Sectors(2, 1));
    EXPECT_EQ(Data(0, kSector), Sectors(0, 1));
    EXPECT_EQ(Data(1, 2 * kSector), Sectors(3, 2));
    EXPECT_EQ(Data(0, 4 * kSector), Sectors(1, 1)) << "a track ends where the next begins";
    EXPECT_EQ(Data(0, kSector), "");
    EXPECT_EQ(ProducerOf(0).Variable("rdpos"), 2 * kSector);
  });
  Run({0, 2 * kSector}, 5 * kSector);
  EXPECT_EQ(TheFrameworks().turns, 1);
}

TEST_F(Burn, AnImageThatEndsInsideABlockGivesAShortLastRead) {
  WhileBurning([this] {
    EXPECT_EQ(ProducerOf(0).EstimateLength(), 2U);
    EXPECT_EQ(Data(0, 2 * kSector), image_);
    EXPECT_EQ(Data(0, kSector), "");
  });
  Run({0}, kSector + 100);
  EXPECT_EQ(TheFrameworks().turns, 1);
}

TEST_F(Burn, VerificationStartsATrackAnew) {
  WhileBurning([this] {
    for (const int track : {0, 1}) Data(track, 2 * kSector);
    for (const int track : {1, 0}) {
      EXPECT_TRUE(ProducerOf(track).PrepareForVerification());
      EXPECT_EQ(ProducerOf(track).Variable("rdpos"), 0);
      EXPECT_EQ(Data(track, 2 * kSector), Sectors(2 * track, 2));
      const std::string wrong(kSector, 'x');
      EXPECT_TRUE(ProducerOf(track).VerifyPreGap(wrong.data(), kSector));
      EXPECT_TRUE(ProducerOf(track).VerifyData(wrong.data(), kSector));
      EXPECT_TRUE(ProducerOf(track).CleanUpAfterVerification());
    }
  });
  Run({0, 2 * kSector}, 4 * kSector);
  EXPECT_EQ(TheFrameworks().turns, 1);
}

TEST_F(Burn, TheProducersOtherAnswers) {
  WhileBurning([] {
    EXPECT_TRUE(ProducerOf(0).Prepare());
    std::string gap(kSector + 1, 'x');
    EXPECT_EQ(ProducerOf(0).ProducePreGap(gap.data(), kSector), static_cast<uint32_t>(kSector));
    EXPECT_EQ(gap, std::string(kSector, '\0') + 'x');
    ProducerOf(0).CleanUpAfterBurn();
    EXPECT_EQ(ProducerOf(0).Variable("rdpos"), 0);
  });
  Run({0}, kSector);
  EXPECT_EQ(TheFrameworks().turns, 1);
  EXPECT_FALSE(TheFrameworks().delegate_reports_itself) << "the panel reports the burn's end";
}

// The layout, the burn and the dictionaries are the pool's; everything else was given back.
TEST_F(Burn, LeavesNothingBehindAndGivesNothingBackTwice) {
  for (const bool active : {true, false}) {
    doubles::SetDevices({Device{.name = "only"}});
    TheFrameworks().active = active;
    WhileBurning([] {
      for (const char* name : {"QuinloCDBurnSource", "DRTrack", "QuinloCDBurnDel", "DRBurn"}) {
        EXPECT_EQ(Gone(name), 0) << name;
      }
    });
    Run({0, kSector, 2 * kSector}, 3 * kSector, false, false, 0);
    EXPECT_EQ(Created("QuinloCDBurnSource"), 3);
    EXPECT_EQ(Created("DRTrack"), 3);
    EXPECT_EQ(Created("QuinloCDBurnDel"), 1);
    EXPECT_EQ(Created("DRBurn"), 1);
    EXPECT_EQ(TheFrameworks().created, TheFrameworks().gone);
  }
}

struct Failure {
  const char* name;
  Device device;
  std::vector<std::string> calls;
};

class BurnRefused : public Burn, public testing::WithParamInterface<Failure> {};

TEST_P(BurnRefused, EndsWithoutAPanelAndWithoutTheRecorder) {
  doubles::SetDevices({GetParam().device});
  Run({0}, kSector, false, false, 0);
  EXPECT_EQ(TheFrameworks().calls, GetParam().calls);
  EXPECT_EQ(TheFrameworks().created, TheFrameworks().gone);
}

INSTANTIATE_TEST_SUITE_P(
    EachStep, BurnRefused,
    testing::Values(Failure{"Invalid", {.name = "it", .valid = false}, {"devices", "isValid it"}},
                    Failure{"NoExclusiveAccess",
                            {.name = "it", .grants_access = false},
                            {"devices", "isValid it", "acquireExclusiveAccess it"}},
                    Failure{"NoBurn",
                            {.name = "it", .gives_burn = false},
                            {"devices", "isValid it", "acquireExclusiveAccess it",
                             "burnForDevice:it", "releaseExclusiveAccess it"}}),
    [](const auto& refused) { return std::string(refused.param.name); });

TEST_F(Burn, ARecorderThatIsNotListedIsNotAskedAnything) {
  const int offset = 0;
  void* const stranger = &image_;
  for (const bool has_list : {true, false}) {
    TheFrameworks().calls.clear();
    TheFrameworks().has_device_list = has_list;
    const doubles::Pool pool;
    TheModule().burn_image(stranger, 1, &offset, "/dev/null", false, false);
    EXPECT_THAT(TheFrameworks().calls, ElementsAre("devices"));
  }
}

class Listing : public testing::Test {
 protected:
  std::vector<std::string> List(const std::vector<Device>& devices) {
    doubles::SetDevices(devices);
    const doubles::Pool pool;
    TheModule().list_recorders(&combo_);
    return combo_.items;
  }
  Listing() { combo_.dialog = &dialog_; }

  fake_host::Window dialog_;
  fake_host::Window combo_;
};

TEST_F(Listing, ShowsVendorAndProductAndKeepsTheRecorderItself) {
  EXPECT_THAT(List({Device{.name = "a", .vendor = "ACME", .product = "X1"},
                    Device{.name = "b", .vendor = std::nullopt, .product = "X2"},
                    Device{.name = "c", .vendor = "ACME", .product = std::nullopt}}),
              ElementsAre("ACME X1", "X2", "ACME"));
  ASSERT_EQ(combo_.item_data.size(), 3U);
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(combo_.item_data[i], reinterpret_cast<intptr_t>(TheFrameworks().devices[i].object));
  }
  EXPECT_THAT(TheFrameworks().calls, ElementsAre("devices", "info a", "info b", "info c"));
}

TEST_F(Listing, LeavesOutARecorderWithoutADescriptionOrWithoutNames) {
  EXPECT_THAT(List({Device{.name = "a", .has_description = false},
                    Device{.name = "b", .vendor = std::nullopt, .product = std::nullopt},
                    Device{.name = "c", .vendor = "", .product = ""},
                    Device{.name = "d", .vendor = "", .product = "LAST"}}),
              ElementsAre("LAST"));
}

TEST_F(Listing, IsEmptyWithoutRecorders) {
  EXPECT_THAT(List({}), IsEmpty());
  doubles::SetDevices({Device{.name = "hidden"}});
  TheFrameworks().has_device_list = false;
  const doubles::Pool pool;
  TheModule().list_recorders(&combo_);
  EXPECT_THAT(combo_.items, IsEmpty());
}

TEST_F(Listing, NamesInTheWritingOfAnyCountryComeThrough) {
  EXPECT_THAT(List({Device{.name = "a", .vendor = "Ö-Werke", .product = "焼く"}}),
              ElementsAre("Ö-Werke 焼く"));
}

}  // namespace
