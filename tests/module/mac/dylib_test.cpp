// The dylib's outside: exports, libraries, initialisers, size.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/mac/macho/mach_o_file.h"

namespace {

using macho::MachOFile;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

TEST(Dylib, IsALibraryForMacOs10_13AndLaterCalledByItsFileName) {
  constexpr uint32_t kDylib = 6;
  const MachOFile file(VELMOR_DYLIB);
  EXPECT_EQ(file.file_type, kDylib);
  EXPECT_EQ(file.minimum_system, 0x000A0D00U);
  EXPECT_EQ(file.install_name, "velmor_cd.dylib");
}

TEST(Dylib, ExportsTheEntryAndTheLayersHookAndNothingElse) {
  const MachOFile file(VELMOR_DYLIB);
  std::vector<std::string> names;
  for (const auto& [name, address] : file.exports) {
    names.push_back(name);
    EXPECT_THAT(file.symbols.at(address), testing::Contains(name));
  }
  EXPECT_THAT(names, ElementsAre("_QUELM_dllMain", "_VelmorPluginEntry"));
}

TEST(Dylib, LoadsCocoaDiscRecordingAndTheRuntimesAndNothingElse) {
  EXPECT_THAT(
      MachOFile(VELMOR_DYLIB).libraries,
      UnorderedElementsAre(
          "/System/Library/Frameworks/AppKit.framework/Versions/C/AppKit",
          "/System/Library/Frameworks/Cocoa.framework/Versions/A/Cocoa",
          "/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation",
          "/System/Library/Frameworks/DiscRecording.framework/Versions/A/DiscRecording",
          "/System/Library/Frameworks/DiscRecordingUI.framework/Versions/A/DiscRecordingUI",
          "/System/Library/Frameworks/Foundation.framework/Versions/C/Foundation",
          "/usr/lib/libSystem.B.dylib", "/usr/lib/libc++.1.dylib", "/usr/lib/libobjc.A.dylib"));
}

// One initialiser for the whole file: the import and then the dialog list, in the order in which
// one source has them. An Objective-C++ source has none.
TEST(Dylib, RunsOneStaticInitialiserThatOfTheImportAndTheDialogList) {
  const MachOFile file(VELMOR_DYLIB);
  const macho::Section* initialisers = file.findSection("__DATA", "__mod_init_func");
  ASSERT_NE(initialisers, nullptr);
  ASSERT_EQ(initialisers->size, sizeof(uint64_t));
  EXPECT_THAT(file.symbols.at(file.word(initialisers->address)),
              ElementsAre("__GLOBAL__sub_I_module_init.cpp"));
  EXPECT_EQ(file.findSection("__DATA", "__mod_term_func"), nullptr);
}

// Classes that wait for nothing: none has a +load method, which would run before the import.
TEST(Dylib, RegistersNoClassOrCategoryEarly) {
  const MachOFile file(VELMOR_DYLIB);
  for (const char* name : {"__objc_nlclslist", "__objc_nlcatlist", "__objc_catlist"}) {
    EXPECT_EQ(file.findSection("__DATA", name), nullptr) << name;
    EXPECT_EQ(file.findSection("__DATA_CONST", name), nullptr) << name;
  }
}

TEST(Dylib, CarriesAnAdHocSignature) {
  EXPECT_TRUE(MachOFile(VELMOR_DYLIB).has_signature);
}

TEST(Dylib, IsSmall) {
  EXPECT_LT(MachOFile(VELMOR_DYLIB).size(), size_t{160} * 1024);
}

TEST(MachOFile, SaysWhatIsWrongWithAFileThatIsNone) {
  EXPECT_THROW(MachOFile(VELMOR_SOURCE_DIR "/CMakeLists.txt"), std::runtime_error);
  EXPECT_THROW(MachOFile("/nonexistent"), std::runtime_error);
}

}  // namespace
