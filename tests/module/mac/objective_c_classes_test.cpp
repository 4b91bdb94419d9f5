// The dylib's two classes, as DiscRecording and its panel will meet them.
#include "tests/module/mac/objective_c_classes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/module/mac/each_slice.h"

namespace {

using mac::InstanceVariable;
using mac::ObjectiveCClass;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::StartsWith;
using testing::UnorderedElementsAre;

class ObjectiveCClasses : public mac::EachSlice {
 protected:
  ObjectiveCClass classNamed(const std::string& name) const {
    for (ObjectiveCClass& read : mac::readClasses(m_file)) {
      if (read.name == name) return read;
    }
    ADD_FAILURE() << "there is no class " << name;
    return {};
  }
  /// A method's types, where they begin with a BOOL: a character on x86-64, a truth value on arm64.
  std::string answersBool(const std::string& rest) const { return (isX86() ? "c" : "B") + rest; }
};

INSTANTIATE_TEST_SUITE_P(Slices, ObjectiveCClasses, mac::eachSlice(), mac::SliceName());

TEST_P(ObjectiveCClasses, AreTheTrackProducerAndThePanelsDelegate) {
  std::vector<std::string> names;
  for (const ObjectiveCClass& read : mac::readClasses(m_file)) {
    names.push_back(read.name);
    EXPECT_EQ(read.superclass, "_OBJC_CLASS_$_NSObject") << read.name;
    EXPECT_THAT(read.class_methods, IsEmpty()) << read.name;
  }
  EXPECT_THAT(names, UnorderedElementsAre("QuinloCDBurnSource", "QuinloCDBurnDel"));
}

TEST_P(ObjectiveCClasses, TheProducersVariablesFollowTheClassPointer) {
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

TEST_P(ObjectiveCClasses, TheProducerAdoptsTheFrameworksProtocol) {
  EXPECT_THAT(classNamed("QuinloCDBurnSource").protocols, ElementsAre("DRTrackDataProduction"));
}

// Encoded as the framework calls them: Q a 64-bit and I a 32-bit unsigned number.
TEST_P(ObjectiveCClasses, TheProducersMethodsHaveTheProtocolsTypes) {
  const char* const buffer_out = "I56@0:8@16*24I32Q36I44^I48";
  const std::string buffer_in = answersBool("56@0:8@16r*24I32Q36I44^I48");
  EXPECT_THAT(
      classNamed("QuinloCDBurnSource").methods,
      UnorderedElementsAre(
          Pair("estimateLengthOfTrack:", "Q24@0:8@16"),
          Pair("prepareTrack:forBurn:toMedia:", answersBool("40@0:8@16@24@32")),
          Pair("cleanupTrackAfterBurn:", "v24@0:8@16"),
          Pair("producePreGapForTrack:intoBuffer:length:atAddress:blockSize:ioFlags:", buffer_out),
          Pair("produceDataForTrack:intoBuffer:length:atAddress:blockSize:ioFlags:", buffer_out),
          Pair("prepareTrackForVerification:", answersBool("24@0:8@16")),
          Pair("verifyPreGapForTrack:inBuffer:length:atAddress:blockSize:ioFlags:", buffer_in),
          Pair("verifyDataForTrack:inBuffer:length:atAddress:blockSize:ioFlags:", buffer_in),
          Pair("cleanupTrackAfterVerification:", answersBool("24@0:8@16"))));
}

TEST_P(ObjectiveCClasses, TheDelegateHasTheTwoAnswersAndNoVariables) {
  const ObjectiveCClass delegate = classNamed("QuinloCDBurnDel");
  EXPECT_THAT(delegate.variables, IsEmpty());
  EXPECT_EQ(delegate.instance_size, 8U);
  EXPECT_THAT(
      delegate.methods,
      UnorderedElementsAre(Pair("burnProgressPanel:burnDidFinish:", answersBool("32@0:8@16@24")),
                           Pair("burnProgressPanelDidFinish:", "v24@0:8@16")));
}

}  // namespace
