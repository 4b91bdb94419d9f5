// The import of the windowing layer while the module is being loaded.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>

#include "tests/fake_host/session.h"
#include "tests/fake_host/standard_error.h"
#include "tests/fake_host/system_log.h"
#include "tests/kit/child_process.h"

namespace {

using fake_host::Session;
using fake_host::StandardErrorCapture;
using fake_host::SystemLogCapture;
using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> kNamesInOrder = {
#include "tests/module/plugin/import_order.inc"
};

// The lines logged while the module loads; on both channels they must be the same.
std::vector<std::string> linesLoggedByLoading(Session& session) {
  SystemLogCapture system_log;
  StandardErrorCapture standard_error;
  session.load();
  std::vector<std::string> lines = standard_error.lines();
  EXPECT_EQ(system_log.lines, lines);
  return lines;
}

SinkConfig makeConfig() {
  return fake_host::makeConfig({.disc_leadin_ms = 11, .track_leadin_ms = 22, .track_mode = 2});
}

HWND showConfig(Session& session) {
  static SinkConfig config;
  config = makeConfig();
  return session.registration().ShowConfig(&config, sizeof config, &session.windowing.parent);
}

TEST(Import, EveryNameIsAskedForOnceInTableOrderAfterTheVersion) {
  ASSERT_EQ(kNamesInOrder.size(), 364U);
  Session session;
  EXPECT_THAT(linesLoggedByLoading(session), IsEmpty());
  EXPECT_EQ(session.windowing.provider_calls, 1);
  std::vector<std::string> expected = {"(null)"};
  expected.insert(expected.end(), kNamesInOrder.begin(), kNamesInOrder.end());
  EXPECT_EQ(session.windowing.lookups, expected);
}

TEST(Import, TheProviderIsNotAskedAgainLater) {
  Session session;
  session.load();
  EXPECT_EQ(session.bind(), 1);
  EXPECT_NE(showConfig(session), nullptr);
  EXPECT_EQ(session.windowing.provider_calls, 1);
  EXPECT_EQ(session.windowing.lookups.size(), 365U);
}

TEST(Import, AProviderOfAnotherVersionIsAskedForNothingElse) {
  for (const intptr_t version : {255, 257, 0, -256}) {
    Session session;
    session.windowing.version = version;
    EXPECT_THAT(linesLoggedByLoading(session),
                ElementsAre("QUELM API provider returned incorrect version"))
        << version;
    EXPECT_THAT(session.windowing.lookups, ElementsAre("(null)")) << version;
    EXPECT_EQ(session.bind(), 1) << version;
    EXPECT_EQ(showConfig(session), nullptr) << "every pointer answers 0";
    EXPECT_THAT(session.windowing.calls, IsEmpty()) << version;
  }
}

TEST(Import, TheVersionIsPointerWide) {
  Session session;
  session.windowing.version = (intptr_t{1} << 32) + 256;
  EXPECT_THAT(linesLoggedByLoading(session),
              ElementsAre("QUELM API provider returned incorrect version"));
}

TEST(Import, AProviderWithoutALookupFunctionIsNone) {
  Session session;
  session.windowing.has_lookup = false;
  EXPECT_THAT(linesLoggedByLoading(session), ElementsAre("QUELM API provider not found"));
  EXPECT_EQ(session.windowing.provider_calls, 1);
  EXPECT_THAT(session.windowing.lookups, IsEmpty());
  EXPECT_EQ(session.bind(), 1);
  EXPECT_EQ(showConfig(session), nullptr);
}

TEST(Import, AProcessWithoutTheProvidersSymbolHasNone) {
  const test_kit::EndedProcess loading =
      test_kit::runProcess({LOAD_WITHOUT_PROVIDER, fake_host::LoadedModule::file()});
  EXPECT_EQ(loading.status, 0);
  EXPECT_EQ(loading.all, "QUELM API provider not found\n");
}

TEST(Import, EachMissingNameIsLoggedAndTheOthersAreBound) {
  Session session;
  session.windowing.withheld = {"GetMonitorInfo", "lstrcpyn", "EnableWindow"};
  EXPECT_THAT(linesLoggedByLoading(session),
              ElementsAre("QUELM API not found: lstrcpyn", "QUELM API not found: EnableWindow",
                          "QUELM API not found: GetMonitorInfo"));
  EXPECT_EQ(session.windowing.lookups.size(), 365U);
  EXPECT_EQ(session.bind(), 1);
  auto* dialog = static_cast<fake_host::Window*>(showConfig(session));
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->control(1001)->value, 11);
  EXPECT_TRUE(dialog->control(1017)->enabled) << "disabling it reached a placeholder";
}

TEST(Import, AProviderThatKnowsNoNameAtAllIsLoggedNameByName) {
  Session session;
  session.windowing.withheld = {kNamesInOrder.begin(), kNamesInOrder.end()};
  std::vector<std::string> expected;
  expected.reserve(kNamesInOrder.size());
  for (const std::string& name : kNamesInOrder) expected.push_back("QUELM API not found: " + name);
  EXPECT_EQ(linesLoggedByLoading(session), expected);
}

TEST(Import, AMissingQueryAnswersZero) {
  Session session;
  session.windowing.withheld = {"SendMessage", "GetDlgItemInt", "IsDlgButtonChecked"};
  linesLoggedByLoading(session);
  EXPECT_EQ(session.bind(), 1);
  auto* dialog = static_cast<fake_host::Window*>(showConfig(session));
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->control(1002)->value, 22);
  SinkConfig read = {1, 2, 3, 4, 5, 6};
  fake_host::WindowingLayer::send(*dialog, kConfigGetBlob, 0, reinterpret_cast<LPARAM>(&read));
  EXPECT_EQ(read.format_code, static_cast<int32_t>(kIsoFormatCode));
  EXPECT_EQ(read.disc_leadin_ms, 0);
  EXPECT_EQ(read.track_leadin_ms, 0);
  EXPECT_EQ(read.burn_after_render, 0);
  EXPECT_EQ(read.track_mode, 0);
  EXPECT_EQ(read.hash_markers_only, 0);
}

TEST(Import, TheLayersHookAnswersOne) {
  Session session;
  session.load();
  EXPECT_EQ(session.module->dllMain()(), 1);
}

}  // namespace
