// ISRC and catalogue number: one rule for all programs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disc/cd_text/disc_codes.h"
#include "disc/codes/catalogue_number.h"
#include "disc/codes/isrc.h"

namespace velmor::disc::test {
namespace {

using ::testing::HasSubstr;

TEST(Isrc, HasTwoLettersThreeLettersOrDigitsAndSevenDigits) {
  EXPECT_EQ(normalisedIsrc("USABC2600001"), "USABC2600001");
  EXPECT_EQ(normalisedIsrc("GB1232600001"), "GB1232600001");
  EXPECT_EQ(normalisedIsrc("us-abc-26-00001"), "USABC2600001");
  EXPECT_EQ(normalisedIsrc(" US ABC 26 00001 "), "USABC2600001");
  for (const char* const wrong :
       {"", "-", "USABC260000", "USABC26000011", "U1ABC2600001", "1SABC2600001", "USAB-C26000O1",
        "USABC26A0001", "USABC 260001", "US\303\204B2600001", "USABC_2600001"}) {
    EXPECT_EQ(normalisedIsrc(wrong), std::nullopt) << wrong;
  }
}

TEST(Catalogue, HasThirteenDigitsOfWhichTheLastIsTheEan13CheckDigit) {
  // Worked by hand: 0+3*7+3+3*1+4+3*5+2+3*3+4+3*5+6+3*2 = 88, so 2.
  EXPECT_EQ(catalogueFault("0731452345622"), std::nullopt);
  EXPECT_EQ(catalogueFault("4006381333931"), std::nullopt);
  EXPECT_EQ(catalogueFault("0000000000000"), std::nullopt);
  EXPECT_EQ(catalogueFault("0731452345620"), "has the check digit 0 where 2 is right");
  EXPECT_EQ(catalogueFault("731452345622"),
            "has 12 digits where 13 are needed; a UPC takes a 0 in front");
  EXPECT_EQ(catalogueFault("12"), "has 2 digits where 13 are needed");
  EXPECT_EQ(catalogueFault("07314523456222"), "has 14 digits where 13 are needed");
  EXPECT_EQ(catalogueFault("073145234562X"), "holds more than digits");
  EXPECT_EQ(catalogueFault("0-731452-34562"), "holds more than digits");
}

TEST(Codes, AreJudgedByTheirForm) {
  EXPECT_TRUE(isCatalogueNumber("0731452345622"));
  EXPECT_FALSE(isCatalogueNumber("0731452345628"));
  EXPECT_FALSE(isCatalogueNumber("731452345622"));
  EXPECT_TRUE(isIsrc("USA120500001"));
  EXPECT_FALSE(isIsrc("U1A120500001"));
  for (const char* wrong : {"US.BC0500001", "USA.C0500001", "USAB.0500001", "USABC.500001"})
    EXPECT_FALSE(isIsrc(wrong)) << wrong;
  EXPECT_FALSE(isIsrc("usabc0500001"));
  EXPECT_EQ(bareCatalogueNumber("7 31452-34562 2"), "0731452345622");
  EXPECT_EQ(bareIsrc("us-abc-05-00001"), "USABC0500001");
}

struct Code {
  const char* given;
  const char* code;
  const char* warning;  // a part of it; null: none
};
class Catalog : public ::testing::TestWithParam<Code> {};
class RecordingCode : public ::testing::TestWithParam<Code> {};

void expectCode(const DiscCode& result, const Code& expected) {
  EXPECT_EQ(result.code, expected.code);
  if (expected.warning == nullptr)
    EXPECT_EQ(result.warning, "");
  else
    EXPECT_THAT(result.warning, HasSubstr(expected.warning));
}

TEST_P(Catalog, IsThirteenDigits) {
  expectCode(mediaCatalogNumber(GetParam().given), GetParam());
}
TEST_P(RecordingCode, IsTwelveCharacters) {
  expectCode(recordingCode(GetParam().given), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Numbers, Catalog,
                         ::testing::Values(Code{"", "", nullptr},
                                           Code{"0731452345622", "0731452345622", nullptr},
                                           Code{"731452345622", "0731452345622", nullptr},
                                           Code{"4006381333931", "4006381333931", nullptr},
                                           Code{"400-6381333931", "4006381333931", nullptr},
                                           Code{"0731452345620", "0731452345620", "should be 2"},
                                           Code{"12345678901", "", "13 digits"},
                                           Code{"40063813339312", "", "13 digits"},
                                           Code{"400638133393X", "", "13 digits"}));

INSTANTIATE_TEST_SUITE_P(
    Codes, RecordingCode,
    ::testing::Values(Code{"", "", nullptr}, Code{"USABC0500001", "USABC0500001", nullptr},
                      Code{"US-ABC-05-00001", "USABC0500001", nullptr},
                      Code{"deab10500001", "DEAB10500001", nullptr},
                      Code{"USABC050000", "", "left out"}, Code{"USABC05000012", "", "left out"},
                      Code{"U1ABC0500001", "", "left out"}, Code{"USABC05O0001", "", "left out"},
                      Code{"US\xC3\x84"
                           "C0500001",
                           "", "left out"}));

}  // namespace
}  // namespace velmor::disc::test
