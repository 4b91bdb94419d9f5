// Every pointer of the windowing layer, called: with a layer, without one, and with one name
// missing.
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "abi/quelm_functions.h"
#include "abi/quelm_provider.h"
#include "module/plugin/quelm_modstub.h"
#include "tests/module/plugin/scripted_provider.h"

namespace plugin_class_test {
namespace {

const std::vector<std::string> kNames = {
#include "tests/module/plugin/import_order.inc"
};
constexpr size_t kCount = 364;

/// The layer's function of that place in the table: its answer tells it from all others.
template <size_t Place>
intptr_t layerFunction() {
  return static_cast<intptr_t>(Place) + 1000;
}

template <size_t... Place>
constexpr std::array<QuelmAnyFn, kCount> allFunctions(std::index_sequence<Place...>) {
  return {layerFunction<Place>...};
}
constexpr std::array<QuelmAnyFn, kCount> kFunctions =
    allFunctions(std::make_index_sequence<kCount>());

/// Where the name stands in the table; beyond its end for a stranger.
size_t placeOf(const std::string& name) {
  static const std::map<std::string, size_t> places = [] {
    std::map<std::string, size_t> made;
    for (size_t place = 0; place < kNames.size(); ++place) made[kNames[place]] = place;
    return made;
  }();
  const auto found = places.find(name);
  return found == places.end() ? kCount : found->second;
}

std::string g_withheld;
void* lookup(const char* name) {
  if (!name) return reinterpret_cast<void*>(kQuelmApiVersion);
  const size_t place = placeOf(name);
  if (place >= kCount || name == g_withheld) return nullptr;
  return reinterpret_cast<void*>(kFunctions[place]);
}

/// What each of the module's pointers answers, in the order of the names. A pointer that holds
/// nothing, or that no name stands for, fails the test.
std::vector<intptr_t> answers() {
  std::vector<intptr_t> found(kCount, -1);
  const auto ask = [&found](const char* name, void* function) {
    const size_t place = placeOf(name);
    ASSERT_LT(place, kCount) << name;
    ASSERT_NE(function, nullptr) << name;
    found[place] = reinterpret_cast<QuelmAnyFn>(function)();
  };
#define QUELM_TYPED(name, ...) ask(#name, reinterpret_cast<void*>(name));
#define QUELM_OPAQUE(name) QUELM_TYPED(name)
#include "abi/quelm_functions.inc"
#undef QUELM_TYPED
#undef QUELM_OPAQUE
  return found;
}

std::vector<intptr_t> allAnswersOfTheLayer() {
  std::vector<intptr_t> expected;
  for (const QuelmAnyFn function : kFunctions) expected.push_back(function());
  return expected;
}

class ImportedPointers : public testing::Test {
 protected:
  ImportedPointers() {
    g_withheld.clear();
    provide(lookup);
    loggedLines().clear();
  }
  ~ImportedPointers() override {
    provide(nullptr);
    const QuelmAPPInitializer without_layer;
  }
};

TEST_F(ImportedPointers, EachReachesTheLayersFunctionOfItsName) {
  ASSERT_EQ(kNames.size(), kCount);
  const QuelmAPPInitializer import;
  EXPECT_EQ(answers(), allAnswersOfTheLayer());
  EXPECT_TRUE(loggedLines().empty());
}

TEST_F(ImportedPointers, EachAnswersZeroInAProcessWithoutALayer) {
  const QuelmAPPInitializer with_layer;
  provide(nullptr);
  const QuelmAPPInitializer without_layer;
  EXPECT_EQ(answers(), std::vector<intptr_t>(kCount, 0));
}

TEST_F(ImportedPointers, OneMissingNameAnswersZeroAndNoOtherDoes) {
  for (size_t missing = 0; missing < kCount; ++missing) {
    loggedLines().clear();
    g_withheld = kNames[missing];
    const QuelmAPPInitializer import;
    std::vector<intptr_t> expected = allAnswersOfTheLayer();
    expected[missing] = 0;
    ASSERT_EQ(answers(), expected) << kNames[missing];
    const std::vector<std::string> line = {"QUELM API not found: " + kNames[missing] + "\n"};
    ASSERT_EQ(loggedLines(), line);
  }
}

}  // namespace
}  // namespace plugin_class_test
