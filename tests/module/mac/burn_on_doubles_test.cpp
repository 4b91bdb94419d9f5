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
using doubles::producerOf;
using doubles::propertiesOf;
using doubles::theFrameworks;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr int kSector = 2352;

struct Module {
  ListRecordersFn list_recorders = nullptr;
  BurnImageFn burn_image = nullptr;
};

Module& theModule() {
  static Module module;
  return module;
}

class LoadedOnce : public testing::Environment {
 public:
  void SetUp() override {
    doubles::setUpProcess(doubles::Application::kDelegateWithProvider);
    m_layer.emplace();
    void* const handle = dlopen(VELMOR_GNUSTEP_MODULE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(handle, nullptr) << dlerror();
    EXPECT_THAT(theFrameworks().log_lines, IsEmpty());
    EXPECT_EQ(m_layer->lookups.size(), 365U);
    theModule().list_recorders =
        reinterpret_cast<ListRecordersFn>(dlsym(handle, "velmorTestListRecorders"));
    theModule().burn_image = reinterpret_cast<BurnImageFn>(dlsym(handle, "velmorTestBurnImage"));
    ASSERT_NE(theModule().list_recorders, nullptr);
    ASSERT_NE(theModule().burn_image, nullptr);
  }
  static std::vector<std::string>& layerCalls() { return m_layer->calls; }

 private:
  static inline std::optional<fake_host::WindowingLayer> m_layer;
};

const auto* const kEnvironment = testing::AddGlobalTestEnvironment(new LoadedOnce);

// An image in which every byte tells where it stands.
std::string imageBytes(size_t size) {
  std::string bytes(size, '\0');
  for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i / 7 + i / kSector);
  return bytes;
}

class Burn : public testing::Test {
 protected:
  Burn() { doubles::setDevices({Device{.name = "first"}, Device{.name = "second"}}); }

  // All of it inside an autorelease pool, as in an application.
  void run(const std::vector<int>& offsets, size_t image_size, bool eject = false,
           bool test_burn = false, int device = 1) {
    m_image = imageBytes(image_size);
    fake_host::writeText(m_folder.file("disc.bin"), m_image);
    const doubles::Pool pool;
    theModule().burn_image(theFrameworks().devices.at(static_cast<size_t>(device)).object,
                           static_cast<int>(offsets.size()), offsets.data(),
                           m_folder.file("disc.bin").c_str(), eject, test_burn);
  }

  // Runs `check` while the panel burns, then lets it finish.
  static void whileBurning(std::function<void()> check) {
    theFrameworks().on_turn = [check = std::move(check)] {
      check();
      doubles::finishBurn();
    };
  }

  static std::string data(int track, uint32_t length) {
    std::string buffer(length, '?');
    const uint32_t n = producerOf(track).produceData(buffer.data(), length);
    buffer.resize(n);
    return buffer;
  }

  std::string sectors(int first, int count) const {
    return m_image.substr(static_cast<size_t>(first) * kSector,
                          static_cast<size_t>(count) * kSector);
  }

  static int created(const char* name) { return theFrameworks().created[name]; }
  static int gone(const char* name) { return theFrameworks().gone[name]; }

  fake_host::TempFolder m_folder;
  std::string m_image;
};

TEST_F(Burn, GoesThroughItsStepsInOrder) {
  run({0, 352800}, 705600);
  EXPECT_THAT(theFrameworks().calls,
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
  theFrameworks().active = false;
  theFrameworks().on_turn = [] {
    if (theFrameworks().turns == 3) doubles::finishBurn();
  };
  LoadedOnce::layerCalls().clear();
  run({0}, kSector);
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
  const std::vector<std::string>& calls = theFrameworks().calls;
  ASSERT_GE(calls.size(), expected.size());
  EXPECT_EQ(std::vector<std::string>(calls.end() - static_cast<long>(expected.size()), calls.end()),
            expected);
  EXPECT_THAT(LoadedOnce::layerCalls(), ElementsAre("Sleep(1)", "Sleep(1)"))
      << "a pause after each answer to go on, none after the last";
}

TEST_F(Burn, ASessionThatIsAbortedIsOver) {
  theFrameworks().active = false;
  theFrameworks().aborts = true;
  LoadedOnce::layerCalls().clear();
  run({0}, kSector);
  EXPECT_THAT(
      std::vector<std::string>(theFrameworks().calls.end() - 6, theFrameworks().calls.end()),
      ElementsAre("beginModalSessionForWindow:DRBurnProgressPanel",
                  "runModalSession:", "endModalSession:", "releaseExclusiveAccess second",
                  "dealloc QuinloCDBurnDel", "dealloc QuinloCDBurnSource"));
  EXPECT_THAT(LoadedOnce::layerCalls(), IsEmpty());
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
    doubles::setDevices({Device{.name = "only"}});
    run({0}, kSector, c.eject, c.test_burn, 0);
    EXPECT_THAT(
        theFrameworks().burn_properties,
        ElementsAre(Pair("DRBurnTestingKey", c.test_burn ? "bool 1" : "bool 0"),
                    Pair("DRBurnAppendableKey", "bool 0"), Pair("DRBurnOverwriteDiscKey", "bool 1"),
                    Pair("DRBurnVerifyDiscKey", "bool 0"),
                    Pair("DRBurnCompletionActionKey", c.completion),
                    Pair("DRBurnFailureActionKey", c.failure)));
  }
}

// A length that arrives in another form is for the framework to read, or not.
TEST_F(Burn, ItsNumbersAreTruthValuesAndPlainIntegersWithASign) {
  run({0, 352800}, 705600);
  const std::vector<std::string> of_burn = {"bool 0", "bool 0", "bool 1", "bool 0"};
  const std::vector<std::string> of_track = {"int 0", "int 0",    "int 0",  "int 0",
                                             "int 0", "int 2352", "int 150"};
  std::vector<std::string> expected = of_burn;
  for (int track = 0; track < 2; ++track) {
    expected.insert(expected.end(), of_track.begin(), of_track.end());
  }
  EXPECT_EQ(theFrameworks().numbers, expected);
}

TEST_F(Burn, TwoTracksOfTwoSecondsEachAreCutAtBlock150) {
  whileBurning([] {
    ASSERT_EQ(theFrameworks().layout.size(), 2U);
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(producerOf(i).variable("posbytes"), i * 352800);
      EXPECT_EQ(producerOf(i).variable("lenbytes"), 352800);
      EXPECT_EQ(producerOf(i).variable("rdpos"), 0);
      EXPECT_TRUE(producerOf(i).conformsToProtocol());
      EXPECT_THAT(propertiesOf(i),
                  ElementsAre(Pair("DRPreGapLengthKey", "i 0"), Pair("DRDataFormKey", "i 0"),
                              Pair("DRTrackModeKey", "i 0"), Pair("DRBlockTypeKey", "i 0"),
                              Pair("DRSessionFormatKey", "i 0"), Pair("DRBlockSizeKey", "i 2352"),
                              Pair("DRTrackLengthKey", "i 150")));
    }
  });
  run({0, 352800}, 705600);
  EXPECT_EQ(theFrameworks().turns, 1);
}

TEST_F(Burn, OffsetsAreCutToBlocksTheFirstIsNotReadAndTheLastTrackIsRoundedUp) {
  whileBurning([] {
    EXPECT_EQ(producerOf(0).variable("posbytes"), 0);
    EXPECT_EQ(producerOf(0).estimateLength(), 2U);
    EXPECT_EQ(producerOf(1).variable("posbytes"), 2 * kSector);
    EXPECT_EQ(producerOf(1).estimateLength(), 3U);
  });
  run({999999, 3 * kSector - 1}, 4 * kSector + 1);
  EXPECT_EQ(theFrameworks().turns, 1);
}

TEST_F(Burn, TheLayoutHasRoomForItsTracksAndForOneAtLeast) {
  for (const int count : {0, 1, 3}) {
    doubles::setDevices({Device{.name = "only"}});
    whileBurning([count] { EXPECT_EQ(theFrameworks().layout.size(), static_cast<size_t>(count)); });
    std::vector<int> offsets(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) offsets[static_cast<size_t>(i)] = i * kSector;
    run(offsets, 3 * kSector, false, false, 0);
    EXPECT_EQ(theFrameworks().turns, 1) << "the panel is shown for " << count << " tracks";
    EXPECT_THAT(theFrameworks().array_capacities,
                Contains(static_cast<unsigned long>(std::max(count, 1))).Times(1));
  }
}

TEST_F(Burn, TracksMayBeAskedInAnyOrder) {
  whileBurning([this] {
    EXPECT_EQ(data(1, kSector), sectors(2, 1));
    EXPECT_EQ(data(0, kSector), sectors(0, 1));
    EXPECT_EQ(data(1, 2 * kSector), sectors(3, 2));
    EXPECT_EQ(data(0, 4 * kSector), sectors(1, 1)) << "a track ends where the next begins";
    EXPECT_EQ(data(0, kSector), "");
    EXPECT_EQ(producerOf(0).variable("rdpos"), 2 * kSector);
  });
  run({0, 2 * kSector}, 5 * kSector);
  EXPECT_EQ(theFrameworks().turns, 1);
}

TEST_F(Burn, AnImageThatEndsInsideABlockGivesAShortLastRead) {
  whileBurning([this] {
    EXPECT_EQ(producerOf(0).estimateLength(), 2U);
    EXPECT_EQ(data(0, 2 * kSector), m_image);
    EXPECT_EQ(data(0, kSector), "");
  });
  run({0}, kSector + 100);
  EXPECT_EQ(theFrameworks().turns, 1);
}

TEST_F(Burn, VerificationStartsATrackAnew) {
  whileBurning([this] {
    for (const int track : {0, 1}) data(track, 2 * kSector);
    for (const int track : {1, 0}) {
      EXPECT_TRUE(producerOf(track).prepareForVerification());
      EXPECT_EQ(producerOf(track).variable("rdpos"), 0);
      EXPECT_EQ(data(track, 2 * kSector), sectors(2 * track, 2));
      const std::string wrong(kSector, 'x');
      EXPECT_TRUE(producerOf(track).verifyPreGap(wrong.data(), kSector));
      EXPECT_TRUE(producerOf(track).verifyData(wrong.data(), kSector));
      EXPECT_TRUE(producerOf(track).cleanUpAfterVerification());
    }
  });
  run({0, 2 * kSector}, 4 * kSector);
  EXPECT_EQ(theFrameworks().turns, 1);
}

TEST_F(Burn, TheProducersOtherAnswers) {
  whileBurning([] {
    EXPECT_TRUE(producerOf(0).prepare());
    std::string gap(kSector + 1, 'x');
    EXPECT_EQ(producerOf(0).producePreGap(gap.data(), kSector), static_cast<uint32_t>(kSector));
    EXPECT_EQ(gap, std::string(kSector, '\0') + 'x');
    producerOf(0).cleanUpAfterBurn();
    EXPECT_EQ(producerOf(0).variable("rdpos"), 0);
  });
  run({0}, kSector);
  EXPECT_EQ(theFrameworks().turns, 1);
  EXPECT_FALSE(theFrameworks().delegate_reports_itself) << "the panel reports the burn's end";
}

// The layout, the burn and the dictionaries are the pool's; everything else was given back.
TEST_F(Burn, LeavesNothingBehindAndGivesNothingBackTwice) {
  for (const bool active : {true, false}) {
    doubles::setDevices({Device{.name = "only"}});
    theFrameworks().active = active;
    whileBurning([] {
      for (const char* name : {"QuinloCDBurnSource", "DRTrack", "QuinloCDBurnDel", "DRBurn"}) {
        EXPECT_EQ(gone(name), 0) << name;
      }
    });
    run({0, kSector, 2 * kSector}, 3 * kSector, false, false, 0);
    EXPECT_EQ(created("QuinloCDBurnSource"), 3);
    EXPECT_EQ(created("DRTrack"), 3);
    EXPECT_EQ(created("QuinloCDBurnDel"), 1);
    EXPECT_EQ(created("DRBurn"), 1);
    EXPECT_EQ(theFrameworks().created, theFrameworks().gone);
  }
}

struct Failure {
  const char* name;
  Device device;
  std::vector<std::string> calls;
};

class BurnRefused : public Burn, public testing::WithParamInterface<Failure> {};

TEST_P(BurnRefused, EndsWithoutAPanelAndWithoutTheRecorder) {
  doubles::setDevices({GetParam().device});
  run({0}, kSector, false, false, 0);
  EXPECT_EQ(theFrameworks().calls, GetParam().calls);
  EXPECT_EQ(theFrameworks().created, theFrameworks().gone);
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
  void* const stranger = &m_image;
  for (const bool has_list : {true, false}) {
    theFrameworks().calls.clear();
    theFrameworks().has_device_list = has_list;
    const doubles::Pool pool;
    theModule().burn_image(stranger, 1, &offset, "/dev/null", false, false);
    EXPECT_THAT(theFrameworks().calls, ElementsAre("devices"));
  }
}

class Listing : public testing::Test {
 protected:
  static int created(const char* name) { return theFrameworks().created[name]; }
  static int gone(const char* name) { return theFrameworks().gone[name]; }
  std::vector<std::string> list(const std::vector<Device>& devices) {
    doubles::setDevices(devices);
    const doubles::Pool pool;
    theModule().list_recorders(&m_combo);
    return m_combo.items;
  }
  Listing() { m_combo.dialog = &m_dialog; }

  fake_host::Window m_dialog;
  fake_host::Window m_combo;
};

TEST_F(Listing, ShowsVendorAndProductAndKeepsTheRecorderItself) {
  EXPECT_THAT(list({Device{.name = "a", .vendor = "ACME", .product = "X1"},
                    Device{.name = "b", .vendor = std::nullopt, .product = "X2"},
                    Device{.name = "c", .vendor = "ACME", .product = std::nullopt}}),
              ElementsAre("ACME X1", "X2", "ACME"));
  ASSERT_EQ(m_combo.item_data.size(), 3U);
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(m_combo.item_data[i], reinterpret_cast<intptr_t>(theFrameworks().devices[i].object));
  }
  EXPECT_THAT(theFrameworks().calls, ElementsAre("devices", "info a", "info b", "info c"));
}

TEST_F(Listing, LeavesOutARecorderWithoutADescriptionOrWithoutNames) {
  EXPECT_THAT(list({Device{.name = "a", .has_description = false},
                    Device{.name = "b", .vendor = std::nullopt, .product = std::nullopt},
                    Device{.name = "c", .vendor = "", .product = ""},
                    Device{.name = "d", .vendor = "", .product = "LAST"}}),
              ElementsAre("LAST"));
}

// The pool is not the only one that holds it, so a recorder may lose it meanwhile.
TEST_F(Listing, HoldsEachDescriptionAsLongAsItReadsTheNamesAndNoLonger) {
  list({Device{.name = "a"}, Device{.name = "b"}});
  EXPECT_THAT(theFrameworks().description_holders, ElementsAre(2U, 2U, 2U, 2U));
  EXPECT_EQ(created("Description"), 2);
  EXPECT_EQ(gone("Description"), 2);
}

TEST_F(Listing, AsksForTheDescriptionAnewEachTime) {
  list({Device{.name = "a", .product = "OLD"}});
  theFrameworks().devices[0].product = "NEW";
  m_combo.items.clear();
  const doubles::Pool pool;
  theModule().list_recorders(&m_combo);
  EXPECT_THAT(m_combo.items, ElementsAre("PLAYWRIGHT NEW"));
}

TEST_F(Listing, IsEmptyWithoutRecorders) {
  EXPECT_THAT(list({}), IsEmpty());
  doubles::setDevices({Device{.name = "hidden"}});
  theFrameworks().has_device_list = false;
  const doubles::Pool pool;
  theModule().list_recorders(&m_combo);
  EXPECT_THAT(m_combo.items, IsEmpty());
}

TEST_F(Listing, NamesInTheWritingOfAnyCountryComeThrough) {
  EXPECT_THAT(list({Device{.name = "a", .vendor = "Ö-Werke", .product = "焼く"}}),
              ElementsAre("Ö-Werke 焼く"));
}

}  // namespace
