// Which library each symbol of the dylib is taken from. The linker took them from stub lists of our
// own, so this says once more, by name, where the system has them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tools/mac/macho/mach_o_file.h"

namespace {

using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

using NamesByLibrary = std::map<std::string, std::set<std::string>>;

// By the last part of the library's path.
NamesByLibrary boundNames() {
  NamesByLibrary names;
  for (const macho::Binding& binding : macho::MachOFile(VELMOR_DYLIB).bindings) {
    const std::string library = binding.library.substr(binding.library.rfind('/') + 1);
    names[library].insert(binding.symbol);
  }
  return names;
}

TEST(DylibBindings, TheApplicationObjectIsAppKits) {
  EXPECT_THAT(boundNames()["AppKit"], UnorderedElementsAre("_NSApp"));
}

TEST(DylibBindings, CollectionsAreCoreFoundationsAndTheRestOfFoundationIsItsOwn) {
  NamesByLibrary names = boundNames();
  EXPECT_THAT(names["CoreFoundation"], UnorderedElementsAre("_OBJC_CLASS_$_NSMutableArray",
                                                            "___CFConstantStringClassReference",
                                                            "_OBJC_CLASS_$_NSMutableDictionary"));
  EXPECT_THAT(names["Foundation"], UnorderedElementsAre("_OBJC_CLASS_$_NSNumber", "_NSLog"));
}

TEST(DylibBindings, TheRuntimeIsLibobjcs) {
  EXPECT_THAT(
      boundNames()["libobjc.A.dylib"],
      UnorderedElementsAre("_OBJC_CLASS_$_NSObject", "_OBJC_METACLASS_$_NSObject",
                           "__objc_empty_cache", "_objc_alloc", "_objc_msgSend", "_objc_release"));
}

TEST(DylibBindings, RecordersBurnsTracksAndTheirKeysAreDiscRecordings) {
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

TEST(DylibBindings, TheProgressPanelIsDiscRecordingUIs) {
  EXPECT_THAT(boundNames()["DiscRecordingUI"],
              UnorderedElementsAre("_OBJC_CLASS_$_DRBurnProgressPanel"));
}

// From a C++ library as old as macOS 10.13: allocation and the runtime's own support, nothing of
// its classes.
TEST(DylibBindings, TheCppLibraryGivesAllocationAndTheRuntimesSupportOnly) {
  const NamesByLibrary names = boundNames();
  for (const std::string& name : names.at("libc++.1.dylib")) {
    EXPECT_THAT(name, testing::MatchesRegex("__Zn[aw]m.*|__Zd[al]Pv.*|___cxa_.*|___gxx_.*|"
                                            "__ZTVN10__cxxabiv1.*|__ZSt7nothrow|__ZSt9terminatev"));
  }
}

TEST(DylibBindings, NothingOfTheOtherLibrariesIsTakenFromTheSystemLibrary) {
  const NamesByLibrary names = boundNames();
  EXPECT_GT(names.at("libSystem.B.dylib").size(), 10U);
  for (const std::string& name : names.at("libSystem.B.dylib")) {
    EXPECT_THAT(
        name, testing::Not(testing::MatchesRegex("__Z.*|_NS.*|_DR.*|_CF.*|.*[oO][bB][jJ][cC].*")));
  }
  // What a reader and a writer of files cannot do without, in the forms with 64-bit inodes.
  EXPECT_THAT(names.at("libSystem.B.dylib"),
              testing::IsSupersetOf({"_fstat$INODE64", "_fstatfs$INODE64", "_fcntl", "_flock",
                                     "_pwrite", "_pread", "_ftruncate"}));
}

TEST(DylibBindings, EveryLibraryIsOneOfThese) {
  std::vector<std::string> libraries;
  for (const auto& [library, names] : boundNames()) libraries.push_back(library);
  EXPECT_THAT(libraries, UnorderedElementsAre("AppKit", "CoreFoundation", "DiscRecording",
                                              "DiscRecordingUI", "Foundation", "libSystem.B.dylib",
                                              "libc++.1.dylib", "libobjc.A.dylib"));
}

}  // namespace
