// The dylib's two classes, as DiscRecording and its panel will meet them.
#include "tests/module/mac/objective_c_classes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using mac::InstanceVariable;
using mac::ObjectiveCClass;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::StartsWith;
using testing::UnorderedElementsAre;

ObjectiveCClass classNamed(const std::string& name) {
  for (ObjectiveCClass& read : mac::readClasses(macho::MachOFile(VELMOR_DYLIB))) {
    if (read.name == name) return read;
  }
  ADD_FAILURE() << "there is no class " << name;
  return {};
}

TEST(ObjectiveCClasses, AreTheTrackProducerAndThePanelsDelegate) {
  std::vector<std::string> names;
  for (const ObjectiveCClass& read : mac::readClasses(macho::MachOFile(VELMOR_DYLIB))) {
    names.push_back(read.name);
    EXPECT_EQ(read.superclass, "_OBJC_CLASS_$_NSObject") << read.name;
    EXPECT_THAT(read.class_methods, IsEmpty()) << read.name;
  }
  EXPECT_THAT(names, UnorderedElementsAre("QuinloCDBurnSource", "QuinloCDBurnDel"));
}

TEST(ObjectiveCClasses, TheProducersVariablesFollowTheClassPointer) {
  const ObjectiveCClass source = classNamed("QuinloCDBurnSource");
  ASSERT_EQ(source.variables.size(), 4U);
  EXPECT_THAT(source.variables[0].type, StartsWith("^{YDK_FileRead="));
  EXPECT_THAT(
      source.variables,
      ElementsAre(InstanceVariable{"file", source.variables[0].type, 8, 8},
                  InstanceVariable{"posbytes", "i", 16, 4},
                  InstanceVariable{"lenbytes", "i", 20, 4}, InstanceVariable{"rdpos", "i", 24, 4}));
  EXPECT_EQ(source.instance_size, 28U);
}

TEST(ObjectiveCClasses, TheProducerAdoptsTheFrameworksProtocol) {
  EXPECT_THAT(classNamed("QuinloCDBurnSource").protocols, ElementsAre("DRTrackDataProduction"));
}

// Encoded as the framework calls them: Q a 64-bit and I a 32-bit unsigned number, c a BOOL.
TEST(ObjectiveCClasses, TheProducersMethodsHaveTheProtocolsTypes) {
  const char* const buffer_out = "I56@0:8@16*24I32Q36I44^I48";
  const char* const buffer_in = "c56@0:8@16r*24I32Q36I44^I48";
  EXPECT_THAT(
      classNamed("QuinloCDBurnSource").methods,
      UnorderedElementsAre(
          Pair("estimateLengthOfTrack:", "Q24@0:8@16"),
          Pair("prepareTrack:forBurn:toMedia:", "c40@0:8@16@24@32"),
          Pair("cleanupTrackAfterBurn:", "v24@0:8@16"),
          Pair("producePreGapForTrack:intoBuffer:length:atAddress:blockSize:ioFlags:", buffer_out),
          Pair("produceDataForTrack:intoBuffer:length:atAddress:blockSize:ioFlags:", buffer_out),
          Pair("prepareTrackForVerification:", "c24@0:8@16"),
          Pair("verifyPreGapForTrack:inBuffer:length:atAddress:blockSize:ioFlags:", buffer_in),
          Pair("verifyDataForTrack:inBuffer:length:atAddress:blockSize:ioFlags:", buffer_in),
          Pair("cleanupTrackAfterVerification:", "c24@0:8@16")));
}

TEST(ObjectiveCClasses, TheDelegateHasTheTwoAnswersAndNoVariables) {
  const ObjectiveCClass delegate = classNamed("QuinloCDBurnDel");
  EXPECT_THAT(delegate.variables, IsEmpty());
  EXPECT_EQ(delegate.instance_size, 8U);
  EXPECT_THAT(delegate.methods,
              UnorderedElementsAre(Pair("burnProgressPanel:burnDidFinish:", "c32@0:8@16@24"),
                                   Pair("burnProgressPanelDidFinish:", "v24@0:8@16")));
}

}  // namespace
