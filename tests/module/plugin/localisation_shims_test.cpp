// The two shims over the host's translation, called directly.
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>
#include <vector>

#include "abi/host_functions.h"
#include "abi/localisation.h"
#include "abi/quelm_functions.h"

namespace plugin_class_test {
namespace {

struct Opening {
  bool modal = false;
  QuelmDialogResource* head = nullptr;
  intptr_t id = 0;
  HWND parent = nullptr;
  DLGPROC procedure = nullptr;
  LPARAM init = 0;
};

struct Preparation {
  std::string prefix;
  HINSTANCE instance = nullptr;
  int id = 0;
  DLGPROC procedure = nullptr;
  LPARAM init = 0;
  void** scratch = nullptr;
  std::vector<void*> slots;
  std::string key;  ///< the text in the last slot
};

std::vector<Opening> g_openings;
std::vector<Preparation> g_preparations;
DLGPROC g_prepared = nullptr;
int g_modal_result = 0;
int g_window = 0;
int g_parent = 0;
int g_instance = 0;

HWND createDialog(QuelmDialogResource* head, intptr_t id, HWND parent, DLGPROC procedure,
                  LPARAM init) {
  g_openings.push_back({false, head, id, parent, procedure, init});
  return &g_window;
}

int dialogBox(QuelmDialogResource* head, intptr_t id, HWND parent, DLGPROC procedure, LPARAM init) {
  g_openings.push_back({true, head, id, parent, procedure, init});
  return g_modal_result;
}

DLGPROC prepareDialog(const char* prefix, HINSTANCE instance, int id, DLGPROC procedure,
                      LPARAM init, void** scratch, int slots) {
  Preparation call{prefix, instance, id, procedure, init, scratch, {}, {}};
  call.slots.assign(scratch, scratch + slots);
  if (call.slots.back()) call.key = static_cast<const char*>(call.slots.back());
  g_preparations.push_back(call);
  return g_prepared;
}

LRESULT ownProcedure(HWND /*window*/, UINT /*message*/, WPARAM /*wparam*/, LPARAM /*lparam*/) {
  return 1;
}
LRESULT hostsProcedure(HWND /*window*/, UINT /*message*/, WPARAM /*wparam*/, LPARAM /*lparam*/) {
  return 2;
}

constexpr LPARAM kInit = 4711;

class DialogShim : public testing::Test {
 protected:
  DialogShim() {
    g_openings.clear();
    g_preparations.clear();
    g_prepared = nullptr;
    g_modal_result = 0;
    QUELM_CreateDialog = createDialog;
    QUELM_DialogBox = dialogBox;
    importedLocalizePrepareDialog = prepareDialog;
  }
  ~DialogShim() override {
    QUELM_CreateDialog = m_create_dialog;
    QUELM_DialogBox = m_dialog_box;
    importedLocalizePrepareDialog = nullptr;
  }
  static intptr_t open(int mode, int id = 102) {
    return __localizeDialog(&g_instance, id, &g_parent, ownProcedure, kInit, mode);
  }
  static void expectOpening(bool modal, DLGPROC procedure, LPARAM init) {
    ASSERT_EQ(g_openings.size(), 1U);
    const Opening& opening = g_openings[0];
    EXPECT_EQ(opening.modal, modal);
    EXPECT_EQ(opening.head, QUELM_curmodule_dialogresource_head);
    EXPECT_EQ(opening.id, 102);
    EXPECT_EQ(opening.parent, &g_parent);
    EXPECT_EQ(opening.procedure, procedure);
    EXPECT_EQ(opening.init, init);
  }

 private:
  decltype(QUELM_CreateDialog) m_create_dialog = QUELM_CreateDialog;
  decltype(QUELM_DialogBox) m_dialog_box = QUELM_DialogBox;
};

TEST_F(DialogShim, AModelessDialogIsItsWindow) {
  EXPECT_EQ(open(0), reinterpret_cast<intptr_t>(&g_window));
  expectOpening(false, ownProcedure, kInit);
}

TEST_F(DialogShim, AModalDialogIsItsResultWithItsSign) {
  for (const int result : {0, 1, 2, -1, -77, INT_MAX, INT_MIN}) {
    g_openings.clear();
    g_modal_result = result;
    EXPECT_EQ(open(1), static_cast<intptr_t>(result));
    expectOpening(true, ownProcedure, kInit);
  }
}

TEST_F(DialogShim, AnyOtherModeAnswersZeroAndMakesNoWindowButHasItPrepared) {
  g_modal_result = 5;
  for (const int mode : {2, 3, -1, INT_MAX, INT_MIN}) {
    g_preparations.clear();
    EXPECT_EQ(open(mode), 0) << mode;
    EXPECT_TRUE(g_openings.empty()) << mode;
    ASSERT_EQ(g_preparations.size(), 1U) << mode;
    EXPECT_EQ(g_preparations[0].slots.back(), nullptr) << "only a modal dialog has a section key";
  }
}

TEST_F(DialogShim, ThePreparationIsGivenWhatTheCallerGave) {
  for (const int mode : {0, 1}) {
    g_preparations.clear();
    open(mode);
    ASSERT_EQ(g_preparations.size(), 1U);
    const Preparation& call = g_preparations[0];
    EXPECT_EQ(call.prefix, "cd_");
    EXPECT_EQ(call.instance, &g_instance);
    EXPECT_EQ(call.id, 102);
    EXPECT_EQ(call.procedure, ownProcedure);
    EXPECT_EQ(call.init, kInit);
    ASSERT_EQ(call.slots.size(), 5U);
    for (size_t slot = 0; slot < 4; ++slot) EXPECT_EQ(call.slots[slot], nullptr) << slot;
    EXPECT_EQ(call.key, mode == 1 ? "cd_102" : "");
  }
}

TEST_F(DialogShim, TheKeyOfAModalDialogEndsInItsIdInDecimal) {
  for (const auto& [id, key] : {std::pair{155, "cd_155"}, {0, "cd_0"}, {-7, "cd_-7"}}) {
    g_preparations.clear();
    open(1, id);
    ASSERT_EQ(g_preparations.size(), 1U);
    EXPECT_EQ(g_preparations[0].key, key);
  }
}

TEST_F(DialogShim, TheHostsProcedureTakesThePlaceOfTheCallersWithTheScratchBlock) {
  g_prepared = hostsProcedure;
  for (const int mode : {0, 1}) {
    g_openings.clear();
    g_preparations.clear();
    open(mode);
    ASSERT_EQ(g_preparations.size(), 1U);
    expectOpening(mode == 1, hostsProcedure, reinterpret_cast<LPARAM>(g_preparations[0].scratch));
  }
}

TEST_F(DialogShim, WithoutAHostThatPreparesItOpensAsTheCallerAsks) {
  importedLocalizePrepareDialog = nullptr;
  g_prepared = hostsProcedure;
  g_modal_result = -3;
  EXPECT_EQ(open(1), -3);
  expectOpening(true, ownProcedure, kInit);
}

std::vector<std::string> g_translated;
const char* const kTranslation = "Nom";
const char* translate(const char* text, const char* section, int flags) {
  g_translated = {text, section, std::to_string(flags)};
  return kTranslation;
}

TEST(TextShim, WithoutATranslationAnswersTheVeryPointer) {
  importedLocalizeFunc = nullptr;
  const std::string text = "Name";
  EXPECT_EQ(__localizeFunc(text.c_str(), "cd_DLG_102", 0), text.c_str());
  EXPECT_EQ(__localizeFunc(nullptr, "cd_DLG_102", 0), nullptr);
}

TEST(TextShim, WithOneHandsOnAllThreeAndAnswersTheHostsOwnText) {
  importedLocalizeFunc = translate;
  EXPECT_EQ(__localizeFunc("Name", "cd_DLG_102", 1), kTranslation);
  EXPECT_EQ(g_translated, (std::vector<std::string>{"Name", "cd_DLG_102", "1"}));
  importedLocalizeFunc = nullptr;
}

}  // namespace
}  // namespace plugin_class_test
