// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <vector>

#include "Classes/MetaData/NSString+NSStringNimboPathExtensions+Types.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

TEST(PathTypes, MatchBesideExtensions) {
  const TemporaryFolder folder;
  const NSString text = folder.write("base.md", "text");
  const NSString page = folder.write("page", "%PDF-1.4\n");
  const std::vector<NSString> list{u""_ns, u"'PDF '"_ns, u"pdf"_ns, u"md"_ns, u"com.adobe.pdf"_ns};
  EXPECT_TRUE(pathMatchingExtensionsOrTypes(page, list).identicalTo(page));
  EXPECT_EQ(pathMatchingExtensionsOrTypes(folder.string("base"), list), text);
  EXPECT_FALSE(pathMatchingExtensionsOrTypes(folder.write("plain", "text"), list));
}

}  // namespace
}  // namespace nimbo
