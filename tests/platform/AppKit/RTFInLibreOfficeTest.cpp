// SPDX-License-Identifier: Apache-2.0
//
// What LibreOffice makes of a written TXT.rtf.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

/// The document as LibreOffice writes it in another format; empty when it does not.
std::string converted(const TemporaryFolder &folder, const std::string &format, const std::string &extension) {
  const std::string path = folder.path().native();
  const std::string command = "HOME='" + path + "' timeout 100 soffice '-env:UserInstallation=file://" + path +
                              "/profile' --headless --convert-to " + format + " --outdir '" + path + "' '" +
                              path + "/A.rtfd/TXT.rtf' >'" + path + "/log' 2>&1";
  if (std::system(command.c_str()) != 0) return {};
  std::ifstream stream(folder.path() / ("TXT." + extension), std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(RTFInLibreOffice, HasTheSameTextAndStyles) {
  if (std::system("command -v soffice >/dev/null 2>&1") != 0) GTEST_SKIP() << "soffice is not installed";
  const std::string source =
      "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}{\\f1 Courier New;}}{\\colortbl;\\red255\\green0\\blue0;}"
      "\\pard\\f0 a {\\b bold} {\\i italic} {\\super raised} {\\sub lowered} {\\up6 shifted} {\\cf1\\ul red} "
      "{\\f1\\fs46 large} {\\strike struck}\\par second {\\field{\\*\\fldinst{HYPERLINK "
      "\"http://a/\"}}{\\fldrslt link}}"
      "\\u8364 ?\\{\\}\\par\\pard\\qc third\\par\\trowd\\cellx2000\\cellx4000\\pard\\intbl one\\cell "
      "two\\cell\\row\\pard "
      "last\\par}";
  const NSAttributedString text = initWithRTF(NSData::dataWithBytes(source.data(), source.size()));
  const TemporaryFolder folder;
  ASSERT_TRUE(RTFDFileWrapperFromRange(text, {0, text.length()}).writeToFile(folder.string("A.rtfd"), true));
  std::string plain = converted(folder, "txt:Text", "txt");
  if (plain.starts_with("\xef\xbb\xbf")) plain.erase(0, 3);
  EXPECT_EQ(plain, text.string().UTF8String());
  const std::string styled = converted(folder, "fodt", "fodt");
  for (const char *const style :
       {"fo:font-weight=\"bold\"", "fo:font-style=\"italic\"", "style:text-position=\"super",
        "style:text-position=\"sub", "fo:color=\"#ff0000\"", "style:text-underline-style=\"solid\"",
        "Courier New", "fo:font-size=\"23pt\"", "style:text-line-through-style=\"solid\"",
        "xlink:href=\"http://a/\"", "fo:text-align=\"center\"", "<table:table-cell"})
    EXPECT_NE(styled.find(style), styled.npos) << style;
}

}  // namespace
}  // namespace nimbo
