// How dialogs and texts pass through the host's translation, or do without.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fake_host/session.h"

namespace {

using fake_host::BoundSession;
using fake_host::Session;
using testing::IsEmpty;
using testing::SizeIs;

// The parameter block the configuration dialog is opened with.
struct ConfigParameters {
  const void* blob;
  intptr_t length;
};

SinkConfig g_config = fake_host::makeConfig({.disc_leadin_ms = 77});

HWND showSettings(Session& session, int length = sizeof g_config) {
  return session.registration().ShowConfig(&g_config, length, &session.windowing.parent);
}

// What the dialog that is being created was given; read while it is.
LPARAM g_init_seen = 0;
ConfigParameters g_parameters_seen = {};
LRESULT replacementProcedure(HWND, UINT message, WPARAM, LPARAM lparam) {
  if (message == WM_INITDIALOG) g_init_seen = lparam;
  return 0;
}

TEST(ConfigurationDialog, IsAModelessChildMadeFromTheModulesList) {
  BoundSession session;
  HWND window = showSettings(session);
  ASSERT_THAT(session.windowing.requests, SizeIs(1));
  const fake_host::DialogRequest& request = session.windowing.requests[0];
  EXPECT_FALSE(request.modal);
  EXPECT_EQ(request.head->id, 103) << "the head of the list";
  EXPECT_EQ(request.id, 155);
  EXPECT_EQ(request.parent, &session.windowing.parent);
  ASSERT_THAT(session.windowing.dialogs, SizeIs(1));
  EXPECT_EQ(window, session.windowing.dialogs[0].get());
}

TEST(ConfigurationDialog, ThatTheLayerDoesNotMakeIsNull) {
  BoundSession session;
  session.windowing.creates_dialogs = false;
  EXPECT_EQ(showSettings(session), nullptr);
}

TEST(ConfigurationDialog, IsPreparedForTranslationFirst) {
  BoundSession session;
  showSettings(session);
  ASSERT_THAT(session.host.prepare_calls, SizeIs(1));
  const fake_host::PrepareDialogCall& prepared = session.host.prepare_calls[0];
  EXPECT_EQ(prepared.prefix, "cd_");
  EXPECT_EQ(prepared.instance, nullptr);
  EXPECT_EQ(prepared.resource_id, 155);
  EXPECT_NE(prepared.scratch, nullptr);
  EXPECT_EQ(prepared.slots, 5);
  EXPECT_EQ(prepared.fifth_slot, std::nullopt);
  const fake_host::DialogRequest& request = session.windowing.requests.at(0);
  EXPECT_EQ(prepared.procedure, request.procedure) << "the host has none: the module's own";
  EXPECT_EQ(prepared.init, request.init);
}

TEST(ConfigurationDialog, TheHostsProcedureAndScratchTakeThePlaceOfTheModules) {
  BoundSession session;
  session.host.prepared_procedure = replacementProcedure;
  g_init_seen = 0;
  EXPECT_NE(showSettings(session), nullptr);
  const fake_host::PrepareDialogCall& prepared = session.host.prepare_calls.at(0);
  const fake_host::DialogRequest& request = session.windowing.requests.at(0);
  EXPECT_EQ(request.procedure, replacementProcedure);
  EXPECT_EQ(request.init, reinterpret_cast<LPARAM>(prepared.scratch));
  EXPECT_EQ(g_init_seen, request.init);
  EXPECT_NE(prepared.procedure, replacementProcedure);
  EXPECT_NE(prepared.init, request.init) << "the blob's own block went to the host";
}

TEST(ConfigurationDialog, WithoutAHostThatPreparesItOpensAsItIs) {
  Session session;
  session.host.withhold("__localizePrepareDialog");
  session.load();
  ASSERT_EQ(session.bind(), 1);
  auto* dialog = static_cast<fake_host::Window*>(showSettings(session));
  ASSERT_NE(dialog, nullptr);
  EXPECT_THAT(session.host.prepare_calls, IsEmpty());
  EXPECT_EQ(dialog->control(1001)->value, 77);
}

// The host's procedure may follow the parameter block only while the dialog is being created.
DLGPROC g_module_procedure = nullptr;
LPARAM g_module_init = 0;
LRESULT forwardingProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != WM_INITDIALOG) return g_module_procedure(window, message, wparam, lparam);
  g_parameters_seen = *reinterpret_cast<const ConfigParameters*>(g_module_init);
  return g_module_procedure(window, message, wparam, g_module_init);
}

TEST(ConfigurationDialog, IsOpenedWithTheBlobAndItsLength) {
  Session session;
  session.load();
  ASSERT_EQ(session.bind(), 1);
  showSettings(session);
  g_module_procedure = session.host.prepare_calls.at(0).procedure;
  session.host.prepared_procedure = forwardingProcedure;
  session.host.on_prepare_dialog = [](const fake_host::PrepareDialogCall& call) {
    g_module_init = call.init;
  };
  auto* dialog = static_cast<fake_host::Window*>(showSettings(session, 25));
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(g_parameters_seen.blob, &g_config);
  EXPECT_EQ(g_parameters_seen.length, 25);
  EXPECT_EQ(dialog->control(1001)->value, 77);
}

TEST(Texts, WithoutTranslationStayTheVeryTexts) {
  Session session;
  session.host.withhold("__localizeFunc");
  session.host.translations["Audio CD Image (CUE/BIN format)"] = "translated";
  session.load();
  ASSERT_EQ(session.bind(), 1);
  const char* first = nullptr;
  const char* second = nullptr;
  session.registration().GetFmt(&first);
  session.registration().GetFmt(&second);
  EXPECT_STREQ(first, "Audio CD Image (CUE/BIN format)");
  EXPECT_EQ(first, second) << "a text of the module, not a copy";
  EXPECT_THAT(session.host.localize_calls, IsEmpty());
}

TEST(BurnDialog, IsPreparedWithItsSectionKeyInTheFifthSlot) {
  BoundSession session;
  session.windowing.creates_dialogs = false;  // asked for and not shown: enough here
  fake_host::Sink sink = session.createSink("burn.cue", {.burn_after_render = 1});
  ASSERT_TRUE(sink);
  sink.writeSignal(588);
  int parent = 0;
  EXPECT_EQ(sink.finish(&parent), 1);
  ASSERT_THAT(session.host.prepare_calls, SizeIs(1));
  const fake_host::PrepareDialogCall& prepared = session.host.prepare_calls[0];
  EXPECT_EQ(prepared.prefix, "cd_");
  EXPECT_EQ(prepared.instance, nullptr);
  EXPECT_EQ(prepared.resource_id, 102);
  EXPECT_EQ(prepared.slots, 5);
  EXPECT_EQ(prepared.fifth_slot, "cd_102");
  ASSERT_THAT(session.windowing.requests, SizeIs(1));
  const fake_host::DialogRequest& request = session.windowing.requests[0];
  EXPECT_TRUE(request.modal);
  EXPECT_EQ(request.id, 102);
  EXPECT_EQ(request.head->id, 103);
  EXPECT_EQ(request.parent, &parent);
  EXPECT_EQ(request.procedure, prepared.procedure);
  EXPECT_EQ(request.init, prepared.init);
}

TEST(BurnDialog, TheHostsProcedureTakesThePlaceOfTheModules) {
  BoundSession session;
  session.windowing.creates_dialogs = false;
  session.host.prepared_procedure = replacementProcedure;
  fake_host::Sink sink = session.createSink("burn.cue", {.burn_after_render = 1});
  ASSERT_TRUE(sink);
  sink.writeSignal(588);
  EXPECT_EQ(sink.finish(), 1);
  ASSERT_THAT(session.windowing.requests, SizeIs(1));
  EXPECT_EQ(session.windowing.requests[0].procedure, replacementProcedure);
  EXPECT_EQ(session.windowing.requests[0].init,
            reinterpret_cast<LPARAM>(session.host.prepare_calls.at(0).scratch));
  EXPECT_EQ(session.windowing.requests[0].parent, session.host.main_window);
}

}  // namespace
