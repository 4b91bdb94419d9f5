// Which forms of the conversion there are for x86-64, and when they are taken.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cfenv>

#include "module/sink/sample_conversion_x86_64.h"

namespace {

TEST(ConversionForms, OfX86AreAvx2WhereTheCompilerSeesItTooAndSse2Everywhere) {
  const bool has_avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  const std::span<const VectorForm> forms = vectorForms();
  ASSERT_EQ(forms.size(), 2U);
  EXPECT_EQ(forms[0].convert, &convertFramesAvx2);
  EXPECT_EQ(forms[0].runs_here, has_avx2);
  EXPECT_EQ(forms[1].convert, &convertFramesSse2);
  EXPECT_TRUE(forms[1].runs_here);
}

TEST(ConversionForms, OfX86AreExactOnlyWhileTheProcessorRoundsToNearest) {
  EXPECT_TRUE(vectorFormsAreExact());
  for (const int mode : {FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO}) {
    ASSERT_EQ(std::fesetround(mode), 0);
    const bool exact = vectorFormsAreExact();
    ASSERT_EQ(std::fesetround(FE_TONEAREST), 0);
    EXPECT_FALSE(exact) << mode;
  }
}

}  // namespace
