// Which library each symbol of the dylib is taken from. The linker took them from stub lists of our
// own, so this says once more, by name, where the system has them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/module/mac/each_slice.h"

namespace {

using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

using NamesByLibrary = std::map<std::string, std::set<std::string>>;

class DylibBindings : public mac::EachSlice {
 protected:
  // By the last part of the library's path.
  NamesByLibrary boundNames() const {
    NamesByLibrary names;
    for (const macho::Binding& binding : m_file.bindings) {
      const std::string library = binding.library.substr(binding.library.rfind('/') + 1);
      names[library].insert(binding.symbol);
    }
    return names;
  }
};

INSTANTIATE_TEST_SUITE_P(Slices, DylibBindings, mac::eachSlice(), mac::SliceName());

TEST_P(DylibBindings, TheApplicationObjectIsAppKits) {
  EXPECT_THAT(boundNames()["AppKit"], UnorderedElementsAre("_NSApp"));
}

TEST_P(DylibBindings, CollectionsAreCoreFoundationsAndTheRestOfFoundationIsItsOwn) {
  NamesByLibrary names = boundNames();
  EXPECT_THAT(names["CoreFoundation"], UnorderedElementsAre("_OBJC_CLASS_$_NSMutableArray",
                                                            "___CFConstantStringClassReference",
                                                            "_OBJC_CLASS_$_NSMutableDictionary"));
  EXPECT_THAT(names["Foundation"], UnorderedElementsAre("_OBJC_CLASS_$_NSNumber", "_NSLog"));
}

TEST_P(DylibBindings, TheRuntimeIsLibobjcs) {
  std::set<std::string> expected = {"_OBJC_CLASS_$_NSObject",
                                    "_OBJC_METACLASS_$_NSObject",
                                    "__objc_empty_cache",
                                    "_objc_alloc",
                                    "_objc_msgSend",
                                    "_objc_release",
                                    "_objc_retain"};
  // Younger than the oldest system of the other processor.
  if (!isX86()) expected.insert("_objc_alloc_init");
  EXPECT_EQ(boundNames()["libobjc.A.dylib"], expected);
}

TEST_P(DylibBindings, RecordersBurnsTracksAndTheirKeysAreDiscRecordings) {
  const std::vector<std::string> expected = {"_OBJC_CLASS_$_DRDevice",
                                             "_OBJC_CLASS_$_DRBurn",
                                             "_OBJC_CLASS_$_DRTrack",
                                             "_DRDeviceVendorNameKey",
                                             "_DRDeviceProductNameKey",
                                             "_DRBurnTestingKey",
                                             "_DRBurnAppendableKey",
                                             "_DRBurnOverwriteDiscKey",
                                             "_DRBurnVerifyDiscKey",
                                             "_DRBurnCompletionActionKey",
                                             "_DRBurnCompletionActionEject",
                                             "_DRBurnCompletionActionMount",
                                             "_DRBurnFailureActionKey",
                                             "_DRBurnFailureActionNone",
                                             "_DRPreGapLengthKey",
                                             "_DRDataFormKey",
                                             "_DRTrackModeKey",
                                             "_DRBlockTypeKey",
                                             "_DRSessionFormatKey",
                                             "_DRBlockSizeKey",
                                             "_DRTrackLengthKey"};
  EXPECT_THAT(boundNames()["DiscRecording"], UnorderedElementsAreArray(expected));
}

TEST_P(DylibBindings, TheProgressPanelIsDiscRecordingUIs) {
  EXPECT_THAT(boundNames()["DiscRecordingUI"],
              UnorderedElementsAre("_OBJC_CLASS_$_DRBurnProgressPanel"));
}

// From a C++ library as old as the oldest system: allocation and the runtime's own support, nothing
// of its classes.
TEST_P(DylibBindings, TheCppLibraryGivesAllocationAndTheRuntimesSupportOnly) {
  const NamesByLibrary names = boundNames();
  for (const std::string& name : names.at("libc++.1.dylib")) {
    EXPECT_THAT(name, testing::MatchesRegex("__Zn[aw]m.*|__Zd[al]Pv.*|___cxa_.*|___gxx_.*|"
                                            "__ZTVN10__cxxabiv1.*|__ZSt7nothrow|__ZSt9terminatev"));
  }
}

// The forms that take an alignment came later, and those that take a size are not for granted.
TEST_P(DylibBindings, MemoryIsTakenAndGivenBackInTheOldestFormsOnly) {
  const std::set<std::string> oldest = {
      "__Znwm",  "__Znam",  "__ZnwmRKSt9nothrow_t",  "__ZnamRKSt9nothrow_t",
      "__ZdlPv", "__ZdaPv", "__ZdlPvRKSt9nothrow_t", "__ZdaPvRKSt9nothrow_t"};
  int found = 0;
  for (const auto& [library, names] : boundNames()) {
    for (const std::string& name : names) {
      if (!name.starts_with("__Zn") && !name.starts_with("__Zd")) continue;
      EXPECT_TRUE(oldest.contains(name)) << name;
      EXPECT_EQ(library, "libc++.1.dylib") << name;
      ++found;
    }
  }
  EXPECT_GT(found, 0);
}

TEST_P(DylibBindings, WhatDiscRecordingLacksIsNullAndAllElseMustBeThere) {
  for (const macho::Binding& binding : m_file.bindings) {
    EXPECT_EQ(binding.may_be_missing, binding.library.find("/DiscRecording") != std::string::npos)
        << binding.symbol;
  }
}

TEST_P(DylibBindings, NothingOfTheOtherLibrariesIsTakenFromTheSystemLibrary) {
  const NamesByLibrary names = boundNames();
  EXPECT_GT(names.at("libSystem.B.dylib").size(), 10U);
  for (const std::string& name : names.at("libSystem.B.dylib")) {
    EXPECT_THAT(
        name, testing::Not(testing::MatchesRegex("__Z.*|_NS.*|_DR.*|_CF.*|.*[oO][bB][jJ][cC].*")));
  }
  // What a reader and a writer of files cannot do without, in the forms with 64-bit inodes, which
  // are the only ones on arm64.
  EXPECT_THAT(names.at("libSystem.B.dylib"),
              testing::IsSupersetOf({isX86() ? "_fstat$INODE64" : "_fstat",
                                     isX86() ? "_fstatfs$INODE64" : "_fstatfs", "_fcntl", "_flock",
                                     "_pwrite", "_pread", "_ftruncate"}));
}

TEST_P(DylibBindings, EveryLibraryIsOneOfThese) {
  std::vector<std::string> libraries;
  for (const auto& [library, names] : boundNames()) libraries.push_back(library);
  EXPECT_THAT(libraries, UnorderedElementsAre("AppKit", "CoreFoundation", "DiscRecording",
                                              "DiscRecordingUI", "Foundation", "libSystem.B.dylib",
                                              "libc++.1.dylib", "libobjc.A.dylib"));
}

}  // namespace
