// The dylib's outside: processors, exports, libraries, initialisers, identity, size.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/module/mac/each_slice.h"

namespace {

using macho::MachOFile;
using macho::Processor;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class Dylib : public mac::EachSlice {};

INSTANTIATE_TEST_SUITE_P(Slices, Dylib, mac::eachSlice(), mac::SliceName());

TEST(DylibFile, HasASliceForIntelAndOneForAppleSilicon) {
  EXPECT_THAT(macho::processorsOf(VELMOR_DYLIB), ElementsAre(Processor::kX86, Processor::kArm64));
}

TEST_P(Dylib, IsALibraryForTheOldestSystemOfItsProcessorCalledByItsFileName) {
  constexpr uint32_t kDylib = 6;
  EXPECT_EQ(m_file.file_type, kDylib);
  EXPECT_EQ(m_file.minimum_system, isX86() ? 0x000A0D00U : 0x000B0000U);
  EXPECT_EQ(m_file.install_name, "velmor_cd.dylib");
}

TEST_P(Dylib, ExportsTheEntryAndTheLayersHookAndNothingElse) {
  std::vector<std::string> names;
  for (const auto& [name, address] : m_file.exports) {
    names.push_back(name);
    EXPECT_THAT(m_file.symbols.at(address), testing::Contains(name));
  }
  EXPECT_THAT(names, ElementsAre("_QUELM_dllMain", "_VelmorPluginEntry"));
}

TEST_P(Dylib, LoadsCocoaDiscRecordingAndTheRuntimesAndNothingElse) {
  EXPECT_THAT(
      m_file.libraries,
      UnorderedElementsAre(
          "/System/Library/Frameworks/AppKit.framework/Versions/C/AppKit",
          "/System/Library/Frameworks/Cocoa.framework/Versions/A/Cocoa",
          "/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation",
          "/System/Library/Frameworks/DiscRecording.framework/Versions/A/DiscRecording",
          "/System/Library/Frameworks/DiscRecordingUI.framework/Versions/A/DiscRecordingUI",
          "/System/Library/Frameworks/Foundation.framework/Versions/C/Foundation",
          "/usr/lib/libSystem.B.dylib", "/usr/lib/libc++.1.dylib", "/usr/lib/libobjc.A.dylib"));
}

TEST_P(Dylib, LoadsOnASystemWithoutDiscRecording) {
  EXPECT_THAT(m_file.libraries_that_may_be_missing,
              UnorderedElementsAre(
                  "/System/Library/Frameworks/DiscRecording.framework/Versions/A/DiscRecording",
                  "/System/Library/Frameworks/DiscRecordingUI.framework/Versions/A/"
                  "DiscRecordingUI"));
}

// One initialiser for the whole file: the import and then the dialog list, in the order in which
// one source has them. An Objective-C++ source has none.
TEST_P(Dylib, RunsOneStaticInitialiserThatOfTheImportAndTheDialogList) {
  const macho::Section* initialisers = m_file.findSection("__mod_init_func");
  ASSERT_NE(initialisers, nullptr);
  ASSERT_EQ(initialisers->size, sizeof(uint64_t));
  EXPECT_THAT(m_file.symbols.at(m_file.word(initialisers->address)),
              ElementsAre("__GLOBAL__sub_I_module_init.cpp"));
  EXPECT_EQ(m_file.findSection("__mod_term_func"), nullptr);
}

// Classes that wait for nothing: none has a +load method, which would run before the import.
TEST_P(Dylib, RegistersNoClassOrCategoryEarly) {
  for (const char* name : {"__objc_nlclslist", "__objc_nlcatlist", "__objc_catlist"}) {
    EXPECT_EQ(m_file.findSection(name), nullptr) << name;
  }
}

// By which a crash report finds the file that it was written about.
TEST_P(Dylib, HasAnIdentityOfItsOwn) {
  const Processor other = isX86() ? Processor::kArm64 : Processor::kX86;
  EXPECT_NE(m_file.uuid, decltype(m_file.uuid){});
  EXPECT_NE(m_file.uuid, MachOFile(VELMOR_DYLIB, other).uuid);
}

TEST_P(Dylib, IsSmall) {
  EXPECT_LT(m_file.size(), size_t{160} * 1024);
}

TEST(MachOFile, SaysWhatIsWrongWithAFileThatIsNone) {
  EXPECT_THROW(MachOFile(VELMOR_SOURCE_DIR "/CMakeLists.txt", Processor::kX86), std::runtime_error);
  EXPECT_THROW(MachOFile("/nonexistent", Processor::kX86), std::runtime_error);
  EXPECT_THROW(MachOFile("/dev/null", Processor::kArm64), std::runtime_error);
  EXPECT_THROW(MachOFile(VELMOR_DYLIB, Processor{7}), std::runtime_error);
}

}  // namespace
