// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFFontName.hpp"

#include <gtest/gtest.h>

#include <string>

namespace nimbo::detail {
namespace {

TEST(PDFFontName, TellsFamilyAndStyle) {
  const struct {
    std::string_view name, family;
    int weight = kRegularFontWeight;
    bool isItalic = false;
  } cases[] = {
      {"Helvetica", "Helvetica"},
      {"ABCDEF+ArialMT", "Arial"},
      {"ABCDEF+", "ABCDEF+"},
      {"ABCDE+Arial", "ABCDE+Arial"},
      {"ABCDEF+TimesNewRomanPS-BoldItalicMT", "TimesNewRoman", 700, true},
      {"TimesNewRomanPSMT", "TimesNewRoman"},
      {"Times New Roman", "Times New Roman"},
      {"TimesNewRomanBold", "TimesNewRoman", 700},
      {"Times New Roman,Bold Italic", "Times New Roman", 700, true},
      {"Times-Roman", "Times"},
      {"Arial,BOLDITALIC", "Arial", 700, true},
      {"ArialNarrow-Bold", "ArialNarrow", 700},
      {"ArialNarrow", "ArialNarrow"},
      {"Segoe UI Semibold", "Segoe UI", 600},
      {"MyriadPro-SemiboldIt", "MyriadPro", 600, true},
      {"HelveticaNeue-CondensedBlack", "HelveticaNeue", 900},
      {"HelveticaNeue-UltraLight", "HelveticaNeue", 200},
      {"NimbusRomNo9L-ReguItal", "NimbusRomNo9L", 400, true},
      {"NimbusRomNo9L-Regu-Slant_167", "NimbusRomNo9L", 400, true},
      {"MS-Gothic", "MS-Gothic"},
      {"CMBX10", "CMBX10"},
      {"Highlight", "Highlight"},
      {"Italic", "Italic"},
      {"-", "-"},
      {"\xcb\xce\xcc\xe5,Bold", "", 700},
      {"", ""},
  };
  for (const auto &c : cases) {
    const NSFont font = fontWithPDFFontName(c.name);
    EXPECT_EQ(font.familyName.UTF8String(), c.family) << c.name;
    EXPECT_EQ(static_cast<bool>(font.familyName), !c.family.empty()) << c.name;
    EXPECT_EQ(font.weight, c.weight) << c.name;
    EXPECT_EQ(font.isItalic, c.isItalic) << c.name;
  }
}

TEST(PDFFontName, KnowsTheWordsOfStyle) {
  const struct {
    std::string_view word;
    int weight = kRegularFontWeight;
    bool isItalic = false;
  } words[] = {
      {"Hairline", 100},
      {"Thin", 100},
      {"ExtraLight", 200},
      {"UltraLight", 200},
      {"SemiLight", 300},
      {"DemiLight", 300},
      {"Light", 300},
      {"Medium", 500},
      {"SemiBold", 600},
      {"DemiBold", 600},
      {"Semi", 600},
      {"Demi", 600},
      {"ExtraBold", 800},
      {"UltraBold", 800},
      {"Bold", 700},
      {"Bd", 700},
      {"Heavy", 900},
      {"Black", 900},
      {"Italic", 400, true},
      {"Ital", 400, true},
      {"It", 400, true},
      {"Oblique", 400, true},
      {"Obl", 400, true},
      {"Slanted", 400, true},
      {"Slant", 400, true},
      {"Inclined", 400, true},
      {"Regular"},
      {"Regu"},
      {"Normal"},
      {"Roman"},
      {"Book"},
      {"Condensed"},
      {"Cond"},
      {"Narrow"},
      {"Extended"},
      {"Extend"},
      {"Medi"},
      {"MT"},
      {"PS"},
  };
  for (const auto &[word, weight, isItalic] : words)
    for (const char *start : {"Leaf-", "Leaf,"}) {
      const NSFont font = fontWithPDFFontName(start + std::string(word));
      EXPECT_EQ(font.familyName, u"Leaf"_ns) << word;
      EXPECT_EQ(font.weight, weight) << word;
      EXPECT_EQ(font.isItalic, isItalic) << word;
    }
  // The last one counts of two, and digits and marks between them do not.
  const NSFont font = fontWithPDFFontName("Leaf-LightBold_2-ObliqueMT");
  EXPECT_EQ(font.familyName, u"Leaf"_ns);
  EXPECT_EQ(font.weight, 700);
  EXPECT_TRUE(font.isItalic);
}

}  // namespace
}  // namespace nimbo::detail
