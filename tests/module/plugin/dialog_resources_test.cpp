// The three dialog templates as the windowing layer meets them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "tests/fake_host/session.h"

namespace {

using fake_host::BoundSession;
using fake_host::Layout;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int kEditStyle = 0x80;
constexpr int kComboStyle = 0x210003;
constexpr int kCheckBoxStyle = 0x10003;
constexpr int kListStyle = 0x10001;

struct Row {
  std::string first_text;
  int first_value;
  std::string second_text;
  int second_value;
  int x, y, w, h;
  int extra_style;
  bool operator==(const Row&) const = default;
};

void PrintTo(const Row& row, std::ostream* out) {
  *out << '{' << row.first_text << ", " << row.first_value << ", " << row.second_text << ", "
       << row.second_value << ", " << row.x << ' ' << row.y << ' ' << row.w << ' ' << row.h << ", "
       << row.extra_style << '}';
}

const std::vector<Row> kConfigurationRows = {
    {"__QUELM_LABEL", -1, "Lead-in silence for tracks:", 0, 0, 3, 82, 8, 0},
    {"__QUELM_EDIT", 0, "", 1002, 85, 2, 34, 14, kEditStyle},
    {"__QUELM_LABEL", -1, "ms", 0, 123, 3, 10, 8, 0},
    {"__QUELM_LABEL", -1, "Extra lead-in silence for disc:", 0, 141, 3, 90, 8, 0},
    {"__QUELM_EDIT", 0, "", 1001, 234, 2, 35, 14, kEditStyle},
    {"__QUELM_LABEL", -1, "ms", 0, 271, 3, 10, 8, 0},
    {"__QUELM_LABEL", -1, "Track mode:", 0, 0, 21, 41, 8, 0},
    {"__QUELM_COMBO", 0, "", 1014, 44, 19, 164, 109, kComboStyle},
    {"Burn CD image after render", 1016, "Button", kCheckBoxStyle, 0, 37, 101, 10, 0},
    {"Only use markers starting with #", 1017, "Button", kCheckBoxStyle, 113, 37, 116, 10, 0},
};

const std::vector<Row> kBurnRows = {
    {"__QUELM_BUTTON", 1, "Burn CD", 1, 128, 216, 50, 14, 0},
    {"__QUELM_BUTTON", 0, "Close", 2, 181, 216, 50, 14, 0},
    {"__QUELM_LABEL", -1, "Method:", 0, 7, 9, 28, 8, 0},
    {"__QUELM_COMBO", 0, "", 1014, 39, 7, 192, 58, kComboStyle},
    {"__QUELM_LABEL", -1, "Drive:", 0, 7, 27, 28, 8, 0},
    {"__QUELM_COMBO", 0, "", 1015, 39, 24, 192, 58, kComboStyle},
    {"__QUELM_LABEL", -1, "Track list:", 0, 7, 42, 32, 8, 0},
    {"List1", 1018, "SysListView32", kListStyle, 7, 53, 224, 138, 0},
    {"Eject CD when done", 1016, "Button", kCheckBoxStyle, 7, 193, 81, 10, 0},
    {"Delete CD image files on close of this window", 1017, "Button", kCheckBoxStyle, 7, 204, 159,
     10, 0},
};

const std::vector<Row> kProgressRows = {
    {"__QUELM_BUTTON", 0, "Cancel", 2, 18, 67, 50, 14, 0},
    {"__QUELM_LABEL", 0, "Burning in progress...", 0, 7, 7, 172, 8, 0},
};

std::vector<Row> rowsOf(const Layout& layout) {
  std::vector<Row> rows;
  for (const QuelmControl& row : layout.rows) {
    rows.push_back({row.first_text, row.first_value, row.second_text, row.second_value, row.x,
                    row.y, row.w, row.h, row.extra_style});
  }
  return rows;
}

class DialogResources : public testing::Test {
 protected:
  void SetUp() override {
    SinkConfig config = fake_host::makeConfig({});
    m_session.registration().ShowConfig(&config, sizeof config, &m_session.windowing.parent);
    ASSERT_THAT(m_session.windowing.requests, SizeIs(1));
    for (const auto* link = m_session.windowing.requests[0].head; link != nullptr;
         link = link->next) {
      m_list.push_back(link);
      ASSERT_LE(m_list.size(), 3U) << "the list goes on";
    }
    ASSERT_EQ(m_list.size(), 3U);
    m_session.windowing.layouts.clear();
    m_session.windowing.calls.clear();
  }

  // Has the template build its controls into `window`.
  const Layout& create(size_t link, fake_host::Window& window, int flags) {
    m_list[link]->create(&window, flags);
    return m_session.windowing.layouts.back();
  }

  BoundSession m_session;
  std::vector<const QuelmDialogResource*> m_list;
};

TEST_F(DialogResources, TheListRunsFromTheProgressDialogToTheConfiguration) {
  std::vector<intptr_t> ids;
  for (const auto* link : m_list) ids.push_back(link->id);
  EXPECT_THAT(ids, ElementsAre(103, 102, 155));
}

TEST_F(DialogResources, TitlesKindsAndSizesAreThoseOfTheTemplates) {
  struct Expected {
    const char* title;
    int flags, width, height;
  };
  const Expected expected[] = {
      {"Audio CD Image", 12, 316, 66}, {"Burn Audio CD Image", 12, 404, 406}, {"", 13, 484, 86}};
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_STREQ(m_list[i]->title, expected[i].title);
    EXPECT_EQ(m_list[i]->flags, expected[i].flags) << m_list[i]->id;
    EXPECT_EQ(m_list[i]->width, expected[i].width) << m_list[i]->id;
    EXPECT_EQ(m_list[i]->height, expected[i].height) << m_list[i]->id;
  }
}

TEST_F(DialogResources, EveryTemplateGeneratesItsRows) {
  const std::vector<Row>* expected[] = {&kProgressRows, &kBurnRows, &kConfigurationRows};
  for (size_t i = 0; i < 3; ++i) {
    fake_host::Window window;
    m_session.windowing.calls.clear();
    EXPECT_THAT(rowsOf(create(i, window, m_list[i]->flags)), ElementsAreArray(*expected[i]));
    EXPECT_THAT(m_session.windowing.calls,
                ElementsAre("QUELM_MakeSetCurParms", "QUELM_GenerateDialogFromList"));
  }
}

TEST_F(DialogResources, DialogUnitsAreScaledIntoTheGivenWindow) {
  for (size_t i = 0; i < 3; ++i) {
    fake_host::Window window;
    const Layout& layout = create(i, window, m_list[i]->flags);
    EXPECT_EQ(layout.xscale, 1.7F);
    EXPECT_EQ(layout.yscale, 1.7F);
    EXPECT_EQ(layout.xoffset, 0.0F);
    EXPECT_EQ(layout.yoffset, 0.0F);
    EXPECT_EQ(layout.parent, &window);
    EXPECT_FALSE(layout.flag);
    EXPECT_FALSE(layout.autosize) << "all three templates carry the bit that switches it off";
  }
}

TEST_F(DialogResources, AutomaticSizingIsOffOnlyWithItsBit) {
  for (size_t i = 0; i < 3; ++i) {
    for (const int flags : {0, 1, 4, 5, 7, 8, 9, 15, 16, 24}) {
      fake_host::Window window;
      EXPECT_EQ(create(i, window, flags).autosize, (flags & 8) == 0) << flags;
    }
  }
}

TEST(DialogResourcesWithoutALayer, BuildingTheControlsDoesNothing) {
  fake_host::Session session;
  session.windowing.withheld = {"QUELM_MakeSetCurParms", "QUELM_GenerateDialogFromList"};
  session.windowing.creates_dialogs = false;
  session.load();
  ASSERT_EQ(session.bind(), 1);
  SinkConfig config = fake_host::makeConfig({});
  EXPECT_EQ(session.registration().ShowConfig(&config, sizeof config, nullptr), nullptr);
  ASSERT_THAT(session.windowing.requests, SizeIs(1));
  fake_host::Window window;
  session.windowing.requests[0].head->create(&window, 12);
  EXPECT_THAT(session.windowing.layouts, IsEmpty());
}

}  // namespace
