// Cutting an image into tracks, with offsets that no render makes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <filesystem>

#include "abi/exports.h"
#include "abi/host_functions.h"
#include "abi/track_source.h"
#include "module/burn/burn_dialog.h"
#include "module/burn/burn_engine.h"
#include "module/plugin/quelm_modstub.h"
#include "tests/fake_host/plugin_host.h"
#include "tests/fake_host/windowing_layer.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/module/burn/image_file.h"
#include "tests/module/burn/scripted_recording_service.h"

namespace burn_test {
namespace {

using fake_host::Window;
using fake_host::WindowingLayer;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class BurnRun : public testing::Test {
 protected:
  BurnRun() { m_recorders.add("ACME", "BURNER"); }

  void run(const std::vector<int>& offsets, YDK_FileRead& image, bool eject = false,
           bool test = false) {
    CDBurn_Run(reinterpret_cast<long>(m_recorders.handle(0)), static_cast<int>(offsets.size()),
               offsets.empty() ? nullptr : offsets.data(), &image, eject, test);
  }
  /// Position and length in bytes, and length in blocks, of every track.
  static std::vector<std::vector<int>> cuts(const DiscTrack* tracks, int count) {
    std::vector<std::vector<int>> cuts;
    for (int i = 0; i < count; ++i) {
      const auto& source = *static_cast<CDBurnTrackSource*>(tracks[i].producer);
      cuts.push_back({source.posbytes, source.lenbytes, tracks[i].track_length});
      EXPECT_EQ(source.rdpos, 0);
    }
    return cuts;
  }
  std::vector<std::vector<int>> cutsOf(const std::vector<int>& offsets, const std::string& path) {
    std::vector<std::vector<int>> found;
    m_recorders.on_panel = [&found](const DiscTrack* tracks, int count) {
      found = cuts(tracks, count);
    };
    YDK_FileRead image(path.c_str());
    run(offsets, image);
    return found;
  }

  ScriptedRecordingService m_recorders;
};

TEST_F(BurnRun, TwoTracksShareTheImageAtTheSecondsOffset) {
  const ImageFile image(705600);
  EXPECT_THAT(cutsOf({0, 352800}, image.path),
              ElementsAre(ElementsAre(0, 352800, 150), ElementsAre(352800, 352800, 150)));
}

TEST_F(BurnRun, TheFirstOffsetIsNeverRead) {
  const ImageFile image(705600);
  for (const int first : {2352, -1, 705600, INT_MAX, INT_MIN}) {
    EXPECT_THAT(cutsOf({first, 352800}, image.path),
                ElementsAre(ElementsAre(0, 352800, 150), ElementsAre(352800, 352800, 150)));
  }
}

TEST_F(BurnRun, AnOffsetInsideABlockIsTruncatedToIt) {
  const ImageFile image(705600);
  for (const int second : {352800, 352801, 355151}) {
    EXPECT_THAT(cutsOf({0, second}, image.path),
                ElementsAre(ElementsAre(0, 352800, 150), ElementsAre(352800, 352800, 150)));
  }
}

TEST_F(BurnRun, TheLastTrackIsRoundedUpToAWholeBlock) {
  const ImageFile image(705600 + 1);
  EXPECT_THAT(cutsOf({0, 352800}, image.path),
              ElementsAre(ElementsAre(0, 352800, 150), ElementsAre(352800, 355152, 151)));
}

TEST_F(BurnRun, ABurnWithoutTracksIsStillABurn) {
  const ImageFile image(705600);
  YDK_FileRead reader(image.path.c_str());
  run({}, reader);
  EXPECT_EQ(m_recorders.panels, 1);
  EXPECT_TRUE(m_recorders.tracks_were_null);
  EXPECT_EQ(m_recorders.journal.back(), "ReleaseExclusiveAccess 0");
}

TEST_F(BurnRun, ATestBurnIsAskedForWithItsProperty) {
  const ImageFile image(kSector);
  YDK_FileRead reader(image.path.c_str());
  for (const bool test : {false, true}) {
    run({0}, reader, true, test);
    EXPECT_EQ(m_recorders.properties.testing, test);
    EXPECT_EQ(m_recorders.properties.completion_action, 1);
    EXPECT_EQ(m_recorders.properties.failure_action, 1);
  }
}

TEST_F(BurnRun, OffsetsOutOfOrderMakeNegativeLengths) {
  const ImageFile image(705600);
  EXPECT_THAT(cutsOf({0, 352800, 176400}, image.path),
              ElementsAre(ElementsAre(0, 352800, 150), ElementsAre(352800, -176400, -75),
                          ElementsAre(176400, 529200, 225)));
}

TEST_F(BurnRun, LengthsOf32BitsWrapOnAnImageOfSeveralGigabytes) {
  const fake_host::TempFolder folder;
  const std::string path = folder.file("huge.bin");
  fake_host::writeText(path, "");
  constexpr int64_t kBytes = 5'000'000'000;
  std::filesystem::resize_file(path, kBytes);  // no more than a hole
  constexpr int kBlocks = static_cast<int>((kBytes + kSector - 1) / kSector);
  const auto wrapped = [](int64_t bytes) {
    return static_cast<int>(static_cast<uint32_t>(static_cast<uint64_t>(bytes)));
  };
  EXPECT_THAT(
      cutsOf({0, INT_MIN, INT_MAX}, path),
      ElementsAre(ElementsAre(0, INT_MIN / kSector * kSector, INT_MIN / kSector),
                  ElementsAre(INT_MIN / kSector * kSector,
                              wrapped(int64_t{INT_MAX / kSector - INT_MIN / kSector} * kSector),
                              INT_MAX / kSector - INT_MIN / kSector),
                  ElementsAre(INT_MAX / kSector * kSector,
                              wrapped(int64_t{kBlocks - INT_MAX / kSector} * kSector),
                              kBlocks - INT_MAX / kSector)));
}

TEST_F(BurnRun, WithoutARecorderAsksTheServiceForNothing) {
  const ImageFile image(kSector);
  YDK_FileRead reader(image.path.c_str());
  const int first = 0;
  CDBurn_Run(0, 1, &first, &reader, false, false);
  EXPECT_THAT(m_recorders.journal, IsEmpty());
  EXPECT_EQ(m_recorders.panels, 0);
}

// The dialog with what a sink never hands it.

class BurnWithout : public testing::Test {
 protected:
  BurnWithout() {
    const QuelmAPPInitializer import;  // the program's own start came before there was a layer
    velmor_plugin_info_t info = m_host.info();
    EXPECT_EQ(VelmorPluginEntry(nullptr, &info), 1);
    m_recorders.add("ACME", "BURNER");
  }
  void open(const char* image_path, YDK_PtrList<YDK_String>* names, const double* starts, int count,
            const std::function<void(Window&)>& act) {
    bool opened = false;
    m_windowing.on_modal = [&](Window& dialog) {
      opened = true;
      act(dialog);
    };
    BurnCD(nullptr, image_path, nullptr, names, starts, count, 10.0);
    EXPECT_TRUE(opened);
  }
  static void pressBurn(Window& dialog) { WindowingLayer::send(dialog, WM_COMMAND, 1); }

  WindowingLayer m_windowing;
  fake_host::PluginHost m_host;
  ScriptedRecordingService m_recorders;
  const ImageFile m_image{1764000};
};

TEST_F(BurnWithout, NamesTheNameColumnIsEmpty) {
  const double starts[] = {0.0, 4.0};
  open(m_image.path.c_str(), nullptr, starts, 2, [](Window& dialog) {
    EXPECT_THAT(dialog.control(1018)->rows,
                ElementsAre(ElementsAre("1", "", "4.000"), ElementsAre("2", "", "6.000")));
  });
}

TEST_F(BurnWithout, EnoughNamesTheRestIsEmpty) {
  const double starts[] = {0.0, 4.0, 8.0};
  YDK_PtrList<YDK_String> names;
  names.Add(new YDK_String);
  names.Get(0)->Set("First");
  open(m_image.path.c_str(), &names, starts, 3, [](Window& dialog) {
    EXPECT_EQ(dialog.control(1018)->rows[0][1], "First");
    EXPECT_EQ(dialog.control(1018)->rows[1][1], "");
    EXPECT_EQ(dialog.control(1018)->rows[2][1], "");
  });
  names.Empty(true);
}

TEST_F(BurnWithout, TracksTheImageIsStillOpenedAndAnEmptyLayoutBurned) {
  open(m_image.path.c_str(), nullptr, nullptr, 0, [this](Window& dialog) {
    EXPECT_THAT(dialog.control(1018)->rows, IsEmpty());
    pressBurn(dialog);
    EXPECT_EQ(m_recorders.panels, 1);
    EXPECT_TRUE(m_recorders.tracks_were_null);
  });
}

TEST_F(BurnWithout, AnImagePathThereIsNoImage) {
  open(nullptr, nullptr, nullptr, 0, [](Window& dialog) {
    pressBurn(dialog);
    dialog.control(1017)->checked = 1;  // nothing is deleted by empty paths
  });
  EXPECT_EQ(m_recorders.panels, 0);
  EXPECT_THAT(m_windowing.calls,
              testing::Contains("MessageBox(\"Error opening .bin file\", \"CD Burn Error\", 0)"));
}

TEST_F(BurnWithout, ARecordingServiceThereIsNothingToSelect) {
  m_recorders.is_there = false;
  const double starts[] = {0.0};
  open(m_image.path.c_str(), nullptr, starts, 1, [](Window& dialog) {
    EXPECT_THAT(dialog.control(1015)->items, IsEmpty());
    pressBurn(dialog);
  });
  EXPECT_THAT(m_windowing.calls,
              testing::Contains("MessageBox(\"Select a recorder\", \"CD Burn Error\", 0)"));
}

TEST_F(BurnWithout, MemoryForTheOffsetsNoRecorderIsTouched) {
  const double starts[] = {0.0, 4.0};
  open(m_image.path.c_str(), nullptr, starts, 2, [this](Window& dialog) {
    m_recorders.journal.clear();
    test_kit::SystemCalls calls;
    calls.fail(test_kit::Call::kRealloc, ENOMEM);
    calls.fail(test_kit::Call::kMalloc, ENOMEM);
    pressBurn(dialog);
  });
  EXPECT_THAT(m_recorders.journal, IsEmpty());
  EXPECT_EQ(m_recorders.panels, 0);
}

TEST_F(BurnWithout, AFormatterOfTimesTheDurationColumnIsEmpty) {
  format_timestr = nullptr;
  const double starts[] = {0.0, 4.0};
  open(m_image.path.c_str(), nullptr, starts, 2, [](Window& dialog) {
    EXPECT_THAT(dialog.control(1018)->rows,
                ElementsAre(ElementsAre("1", "", ""), ElementsAre("2", "", "")));
  });
}

TEST_F(BurnWithout, AnObjectForATitleItsCellIsEmpty) {
  const double starts[] = {0.0};
  YDK_PtrList<YDK_String> names;
  names.Add(nullptr);
  open(m_image.path.c_str(), &names, starts, 1,
       [](Window& dialog) { EXPECT_EQ(dialog.control(1018)->rows[0][1], ""); });
}

TEST_F(BurnWithout, ACharacterThatFitsARecordersVendorIsLeftOut) {
  // 600 bytes without the beginning of a character among them.
  m_recorders.devices[0].vendor = std::string(600, '\x80');
  open(m_image.path.c_str(), nullptr, nullptr, 0,
       [](Window& dialog) { EXPECT_THAT(dialog.control(1015)->items, ElementsAre("BURNER")); });
}

}  // namespace
}  // namespace burn_test
