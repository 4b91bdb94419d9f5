// The rows of the dialog templates as they lie in memory.
#include <gtest/gtest.h>

#include "abi/quelm_functions.h"
#include "module/resources/dialogs.h"

namespace plugin_class_test {
namespace {

const QuelmControl* g_rows = nullptr;
int g_count = 0;

void setParameters(float, float, float, float, HWND, bool, bool) {}
void generate(const QuelmControl* rows, int count) {
  g_rows = rows;
  g_count = count;
}

struct Template {
  const QuelmDialogResource* resource;
  int controls;
  const char* first_text;
};

TEST(TemplateRows, BeginWithARecordOfNothingThatTheLayerIsNotGiven) {
  const auto set_parameters = QUELM_MakeSetCurParms;
  const auto generate_dialog = QUELM_GenerateDialogFromList;
  QUELM_MakeSetCurParms = setParameters;
  QUELM_GenerateDialogFromList = generate;
  for (const Template& c : {Template{&g_isosink_cfg_dialog, 10, "__QUELM_LABEL"},
                            Template{&g_burn_dialog, 10, "__QUELM_BUTTON"},
                            Template{&g_doburn_dialog, 2, "__QUELM_BUTTON"}}) {
    c.resource->create(nullptr, c.resource->flags);
    ASSERT_EQ(g_count, c.controls) << c.resource->title;
    EXPECT_STREQ(g_rows[0].first_text, c.first_text) << c.resource->title;
    const QuelmControl& leading = g_rows[-1];
    EXPECT_EQ(leading.first_text, nullptr) << c.resource->title;
    EXPECT_EQ(leading.second_text, nullptr) << c.resource->title;
    for (const int number : {leading.first_value, leading.second_value, leading.x, leading.y,
                             leading.w, leading.h, leading.extra_style}) {
      EXPECT_EQ(number, 0) << c.resource->title;
    }
  }
  QUELM_MakeSetCurParms = set_parameters;
  QUELM_GenerateDialogFromList = generate_dialog;
}

}  // namespace
}  // namespace plugin_class_test
