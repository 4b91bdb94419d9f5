// Which form of the conversion there is for arm64, and that it holds however the processor is set.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <string>
#include <vector>

#include "module/sink/sample_conversion.h"

namespace {

TEST(ConversionForms, OfArm64IsNeonEverywhere) {
  const std::span<const VectorForm> forms = vectorForms();
  ASSERT_EQ(forms.size(), 1U);
  EXPECT_EQ(std::string(forms[0].name), "Neon");
  EXPECT_TRUE(forms[0].runs_here);
}

TEST(ConversionForms, OfArm64IsExactInEveryRoundingMode) {
  std::vector<double> samples;
  for (int half_steps = -65540; half_steps <= 65540; ++half_steps) {
    const double x = half_steps / 65536.0;
    for (const double sample : {x, std::nextafter(x, 2.0), std::nextafter(x, -2.0)}) {
      samples.push_back(sample);
    }
  }
  const int frames = static_cast<int>(samples.size());
  for (const int mode : {FE_TONEAREST, FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO}) {
    std::vector<int16_t> plain(2 * samples.size());
    std::vector<int16_t> neon(2 * samples.size());
    ASSERT_EQ(std::fesetround(mode), 0);
    EXPECT_TRUE(vectorFormsAreExact());
    convertFramesPlain(samples.data(), samples.data(), frames, plain.data());
    vectorForms()[0].convert(samples.data(), samples.data(), frames, neon.data());
    ASSERT_EQ(std::fesetround(FE_TONEAREST), 0);
    EXPECT_EQ(neon, plain) << mode;
  }
}

}  // namespace
