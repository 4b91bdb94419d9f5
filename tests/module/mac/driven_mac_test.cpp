// What the dylib's machine code asks of macOS itself, which a module for Linux never does: the
// system's caching of files, modal sessions, frameworks that may be missing.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/module/burn/open_dialog_case.h"
#include "tools/mac/loader/mac_process.h"

namespace {

using burn_test::kDrive;
using burn_test::kOk;
using burn_test::press;
using fake_host::Window;
using loader::Disk;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class ScriptedMac final : public loader::MacProcess {
 public:
  FindFunction find_function = nullptr;
  Disk disk = Disk::kLocal;
  bool has_disc_recording = true;
  bool is_active = true;
  int turns = 0;
  bool aborts = false;

  std::vector<std::pair<std::string, int>> uncached;  ///< the file's path, the value
  std::vector<std::string> messages;

  void loading(FindFunction find) override { find_function = find; }
  Disk diskOf(int /*fd*/) override { return disk; }
  void setUncached(int fd, int value) override {
    uncached.emplace_back(std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(fd)),
                          value);
  }
  bool hasDiscRecording() override { return has_disc_recording; }
  bool isActive() override { return is_active; }
  int turnsOfSession() override { return turns; }
  bool abortsSession() override { return aborts; }
  void sentToApplication(const std::string& selector) override { messages.push_back(selector); }
};

ScriptedMac* g_mac;

}  // namespace

extern "C" loader::MacProcess* velmorMacProcess();
loader::MacProcess* velmorMacProcess() {
  return g_mac;
}

namespace {

/// There before the session that loads the dylib.
class MacFirst {
 protected:
  MacFirst() { g_mac = &m_mac; }
  ~MacFirst() { g_mac = nullptr; }

  ScriptedMac m_mac;
};

class DrivenMac : public MacFirst, public burn_test::OpenDialogCase {
 protected:
  /// Burns the album with the first recorder and keeps what the application was told meanwhile.
  void burnAlbum() {
    albumAnd([this](Window& dialog) {
      m_mac.messages.clear();
      m_mac.uncached.clear();
      windowing.calls.clear();
      press(dialog, kOk);
    });
  }
  /// A function of the dylib's that is not exported.
  template <class Function>
  Function* function(const char* name) const {
    return reinterpret_cast<Function*>(m_mac.find_function(name));
  }
};

TEST_F(DrivenMac, TheBurnsReaderIsUncachedUnlessTheImageLiesOnAnotherMachine) {
  for (const auto& [disk, is_uncached] :
       {std::pair(Disk::kLocal, true), std::pair(Disk::kRemote, false),
        std::pair(Disk::kUnknown, true)}) {
    m_mac.disk = disk;
    burnAlbum();
    if (is_uncached) {
      EXPECT_THAT(m_mac.uncached, ElementsAre(Pair(file("disc.bin"), 1)));
    } else {
      EXPECT_THAT(m_mac.uncached, IsEmpty());
    }
  }
  EXPECT_EQ(m_recorders.panels, 3);
}

TEST_F(DrivenMac, ARenderIsCached) {
  fake_host::Sink sink = createSink("disc.cue");
  sink.writeSignal(44100);
  sink.finish();
  EXPECT_THAT(m_mac.uncached, IsEmpty());
}

TEST_F(DrivenMac, AWriterThatIsToBeUncachedSwitchesTheCacheOff) {
  fake_host::writeText(file("image"), "");
  const int fd = open(file("image").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_GE(fd, 0);
  function<void(int)>("_platformDisableWriteCache")(fd);
  close(fd);
  EXPECT_THAT(m_mac.uncached, ElementsAre(Pair(file("image"), 1)));
}

TEST_F(DrivenMac, InTheForegroundThePanelRunsModally) {
  burnAlbum();
  EXPECT_THAT(m_mac.messages, ElementsAre("isActive", "runModalForWindow:", "stopModal"));
  EXPECT_EQ(m_recorders.panels, 1);
}

TEST_F(DrivenMac, InTheBackgroundItLooksForTheEndOfASession) {
  m_mac.is_active = false;
  m_mac.turns = 3;
  burnAlbum();
  EXPECT_THAT(
      m_mac.messages,
      ElementsAre("isActive", "beginModalSessionForWindow:", "runModalSession:", "runModalSession:",
                  "runModalSession:", "runModalSession:", "stopModal", "endModalSession:"));
  EXPECT_THAT(calls("Sleep"), ElementsAre("Sleep(1)", "Sleep(1)", "Sleep(1)"));
  EXPECT_EQ(m_recorders.panels, 1);
  EXPECT_EQ(m_recorders.journal.back(), "ReleaseExclusiveAccess 0");
}

TEST_F(DrivenMac, ASessionThatIsAbortedIsOver) {
  m_mac.is_active = false;
  m_mac.turns = 1;
  m_mac.aborts = true;
  burnAlbum();
  EXPECT_THAT(m_mac.messages,
              ElementsAre("isActive", "beginModalSessionForWindow:", "runModalSession:",
                          "runModalSession:", "endModalSession:"));
  EXPECT_THAT(calls("Sleep"), ElementsAre("Sleep(1)"));
  EXPECT_EQ(m_recorders.panels, 0);
  EXPECT_EQ(m_recorders.journal.back(), "ReleaseExclusiveAccess 0");
}

TEST_F(DrivenMac, AnExceptionOfTheHostsPassesThroughAndTheRecorderIsGivenBack) {
  m_recorders.on_panel = [](const DiscTrack*, int) { throw std::string("by the panel"); };
  albumAnd([this](Window& dialog) {
    EXPECT_THROW(fake_host::WindowingLayer::send(dialog, WM_COMMAND, kOk), std::string);
    EXPECT_EQ(m_recorders.journal.back(), "ReleaseExclusiveAccess 0");
    m_recorders.on_panel = nullptr;
    press(dialog, kOk);
    EXPECT_EQ(m_recorders.panels, 2);
  });
}

TEST_F(DrivenMac, ARecorderIsDescribedAnewInEveryDialog) {
  for (const char* product : {"BURNER", "OTHER BURNER"}) {
    m_recorders.devices[0].product = product;
    albumAnd([product](Window& dialog) {
      EXPECT_THAT(dialog.control(kDrive)->items, ElementsAre(std::string("ACME ") + product));
    });
  }
}

/// A system that has no frameworks for discs any more.
class WithoutDiscs : public MacFirst {
 protected:
  WithoutDiscs() { m_mac.has_disc_recording = false; }
};

class DrivenMacWithoutDiscs : public WithoutDiscs, public burn_test::OpenDialogCase {};

TEST_F(DrivenMacWithoutDiscs, RendersAndHasNoRecorders) {
  albumAnd([](Window& dialog) { EXPECT_THAT(dialog.control(kDrive)->items, IsEmpty()); });
  EXPECT_EQ(image().size(), size_t{15} * 44100 * 4);
}

TEST_F(DrivenMacWithoutDiscs, BurnsNothingWithARecorderFromElsewhere) {
  albumAnd([this](Window& dialog) {
    dialog.control(kDrive)->items = {"ACME BURNER"};
    dialog.control(kDrive)->item_data = {reinterpret_cast<intptr_t>(&m_recorders)};
    dialog.control(kDrive)->selection = 0;
    press(dialog, kOk);
  });
  EXPECT_THAT(m_recorders.journal, IsEmpty());
  EXPECT_EQ(m_recorders.panels, 0);
}

}  // namespace
