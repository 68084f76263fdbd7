// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "Classes/WebKit/NSString+NimboWebKitAdditions.hpp"
#include "Classes/WebKit/NSURL+NimboWebKitAdditions.hpp"

namespace nimbo {
namespace {

TEST(NimboWebKitAdditions, NamesOfHostsGoBothWays) {
  EXPECT_EQ(encodeHostName(u"b\u00fccher.example"_ns), u"xn--bcher-kva.example"_ns);
  EXPECT_EQ(decodeHostName(u"xn--bcher-kva.example"_ns), u"b\u00fccher.example"_ns);
  for (const NSString &string : {u"example.org"_ns, u"xn--99999999"_ns, NSString::string(), NSString()}) {
    EXPECT_TRUE(encodeHostName(string).identicalTo(string));
    EXPECT_TRUE(decodeHostName(string).identicalTo(string));
  }
  for (const NSString &noHost : {u"\xd800.org"_ns, u"\u00fc.\u00fc:80"_ns, u"a@\u00fc"_ns, u"\u00fc/a"_ns,
                                 u"a \u00fc"_ns, u"\u00fc\uff0fa"_ns, u"\u00ad"_ns})
    EXPECT_TRUE(encodeHostName(noHost).identicalTo(noHost)) << noHost.UTF8String();
}

TEST(NimboWebKitAdditions, WhatIsTypedBecomesAURL) {
  EXPECT_EQ(URLWithUserTypedString(u" www.b\u00fccher.example/a b"_ns).absoluteString(),
            u"http://www.xn--bcher-kva.example/a%20b"_ns);
  EXPECT_FALSE(URLWithUserTypedString(NSString()));
  EXPECT_FALSE(URLWithUserTypedString(u"  "_ns));
}

}  // namespace
}  // namespace nimbo
