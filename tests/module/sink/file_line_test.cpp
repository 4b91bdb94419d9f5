// The sheet's FILE line for names that no file system of today would hold.
#include <gtest/gtest.h>

#include <string>

#include "abi/host_functions.h"
#include "module/sink/cue_sheet.h"
#include "tests/fake_host/files.h"

namespace {

int enumNoMarkers(int, bool*, double*, double*, const char**, int*) {
  return 0;
}

/// The whole sheet of a disc without tracks whose image has this path.
std::string sheetOfImage(const std::string& path) {
  const fake_host::TempFolder folder;
  EnumProjectMarkers = enumNoMarkers;
  const YDK_StringKeyedArray<char*> metadata(false, freecharptr);
  const YDK_TypedBuf<double> none;
  YDK_PtrList<YDK_String> titles;
  {
    YDK_FileWrite out(folder.file("disc.cue").c_str(), 0, 8192, 16, 16, false, false);
    const CueSheet sheet{metadata, path.c_str(), none, none, none, 0, 0, 0.0, 0.0};
    writeCueSheetText(sheet, titles, out);
  }
  return fake_host::readText(folder.file("disc.cue"));
}

TEST(FileLine, HasTheFirstThousandBytesOfTheImagesName) {
  for (const size_t length : {1U, 999U, 1000U, 1001U, 3000U, 10000U}) {
    const std::string name(length, 'n');
    const std::string cut(length < 1000 ? length : 1000, 'n');
    EXPECT_EQ(sheetOfImage("/music/out/" + name), "FILE \"" + cut + "\" BINARY\r\n") << length;
  }
}

TEST(FileLine, CountsTheThousandBytesFromTheLastSeparatorOn) {
  const std::string folders = std::string(2000, 'f') + "/" + std::string(2000, 'g') + "\\";
  EXPECT_EQ(sheetOfImage(folders + "disc.bin"), "FILE \"disc.bin\" BINARY\r\n");
}

}  // namespace
