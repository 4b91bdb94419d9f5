// The dylib's unwind table against the code that it describes. The system reads it when an
// exception of the host's passes through the module, and in every crash report.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/module/mac/each_slice.h"
#include "tests/module/mac/prologue.h"
#include "tools/mac/macho/unwind_info.h"

namespace {

using macho::UnwindEntry;

/// A function of the file, from its address up to the next one's.
struct Function {
  std::string name;
  uint64_t start, end;
};

class Unwinding : public mac::EachSlice {
 protected:
  std::vector<Function> functions() const {
    const macho::Section& code = *m_file.findSection("__text");
    std::vector<Function> found;
    for (const auto& [address, names] : m_file.symbols) {
      if (address < code.address || address >= code.address + code.size) continue;
      if (!found.empty()) found.back().end = address;
      found.push_back({names.front(), address, code.address + code.size});
    }
    return found;
  }

  const UnwindEntry& entryFor(const Function& function) const {
    const auto after =
        std::find_if(m_entries.begin(), m_entries.end(),
                     [&](const UnwindEntry& entry) { return entry.start > function.start; });
    if (after == m_entries.begin() || after == m_entries.end()) {
      throw std::runtime_error(function.name + " lies outside the unwind table");
    }
    return *(after - 1);
  }

  const std::vector<UnwindEntry> m_entries = macho::readUnwindInfo(m_file);
};

INSTANTIATE_TEST_SUITE_P(Slices, Unwinding, mac::eachSlice(), mac::SliceName());

TEST_P(Unwinding, FindsTheCallersFrameWhereEachFunctionPutsIt) {
  const std::vector<Function> all = functions();
  EXPECT_GT(all.size(), 100U);
  for (const Function& function : all) {
    const UnwindEntry& entry = entryFor(function);
    if (entry.encoding == 0) {
      // It has nothing to unwind to: it ends the process.
      EXPECT_EQ(function.name, "___clang_call_terminate");
      continue;
    }
    const macho::FrameLayout told = frameLayout(GetParam(), entry.encoding);
    const macho::FrameLayout built = mac::frameThatPrologueBuilds(
        GetParam(), m_file.at(function.start, function.end - function.start),
        function.end - function.start);
    EXPECT_EQ(told.base_register, built.base_register) << function.name;
    EXPECT_EQ(told.base_offset, built.base_offset) << function.name;
    EXPECT_EQ(told.saved, built.saved) << function.name;
  }
}

TEST_P(Unwinding, HasAnEntryForEveryFunctionThatCleansUp) {
  const macho::Section& cleaning = *m_file.findSection("__gcc_except_tab");
  const macho::Section& code = *m_file.findSection("__text");
  int found = 0;
  for (const UnwindEntry& entry : m_entries) {
    if (entry.lsda == 0) continue;
    ++found;
    EXPECT_TRUE(m_file.symbols.contains(entry.start)) << entry.start;
    EXPECT_GE(entry.lsda, cleaning.address);
    EXPECT_LT(entry.lsda, cleaning.address + cleaning.size);
    EXPECT_NE(entry.personality, 0U);
  }
  EXPECT_GT(found, 10);
  EXPECT_LE(m_entries.front().start, code.address);
  EXPECT_GE(m_entries.back().start + 16, code.address + code.size);
}

TEST_P(Unwinding, CleansUpByTheCppRuntimesRoutine) {
  for (const UnwindEntry& entry : m_entries) {
    if (entry.personality == 0) continue;
    const auto bound =
        std::find_if(m_file.bindings.begin(), m_file.bindings.end(),
                     [&](const auto& binding) { return binding.address == entry.personality; });
    ASSERT_NE(bound, m_file.bindings.end());
    EXPECT_EQ(bound->symbol, "___gxx_personality_v0");
  }
}

// The other form of such tables, whose addresses this linker does not move. A table that leads
// nowhere is worse than none.
TEST_P(Unwinding, HasNoTableOfTheOlderForm) {
  EXPECT_EQ(m_file.findSection("__eh_frame"), nullptr);
}

}  // namespace
