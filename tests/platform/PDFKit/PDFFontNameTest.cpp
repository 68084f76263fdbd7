// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFFontName.hpp"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace nimbo::detail
