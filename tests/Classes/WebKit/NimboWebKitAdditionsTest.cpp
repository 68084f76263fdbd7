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
  const struct {
    NSString typed, url;
  } cases[] = {
      {u"example.org"_ns, u"http://example.org"_ns},
      {u" Example.org:8080/a?b\u00fc "_ns, u"http://Example.org:8080/a?b%C3%BC"_ns},
      {u"b\u00fccher.example#x"_ns, u"http://xn--bcher-kva.example#x"_ns},
      {u"localhost:8000"_ns, u"http://localhost:8000"_ns},
      {u"127.0.0.1/a"_ns, u"http://127.0.0.1/a"_ns},
      {u"a.xn--p1ai"_ns, u"http://a.xn--p1ai"_ns},
      {u"www.page.html"_ns, u"http://www.page.html"_ns},
      {u"http:example.org"_ns, u"http://example.org"_ns},
      {u"Ftp.example.org:2121/a"_ns, u"ftp://Ftp.example.org:2121/a"_ns},
      {u"ftp.example"_ns, u"ftp://ftp.example"_ns},
      {u"ftpsearch.example"_ns, u"http://ftpsearch.example"_ns},
      {u"page.html"_ns, u"page.html"_ns},
      {u"picture.jpeg"_ns, u"picture.jpeg"_ns},
      {u"old.page.tar.gz"_ns, u"old.page.tar.gz"_ns},
      {u"example.org./a"_ns, u"http://example.org./a"_ns},
      {u"a/b.org"_ns, u"a/b.org"_ns},
      {u"..org"_ns, u"..org"_ns},
      {u"1.2"_ns, u"1.2"_ns},
      {u"name@example.org"_ns, u"name@example.org"_ns},
      {u"mailto:1"_ns, u"mailto:1"_ns},
      {u"a b.org"_ns, u"a%20b.org"_ns},
      {u"/s?a=1&copy=2&u=x%26y%2Bz"_ns, u"/s?a=1&copy=2&u=x%26y%2Bz"_ns},
  };
  for (const auto &[typed, url] : cases) EXPECT_EQ(URLWithUserTypedString(typed).absoluteString(), url);
  EXPECT_FALSE(URLWithUserTypedString(NSString()));
  EXPECT_FALSE(URLWithUserTypedString(u"  "_ns));
}

}  // namespace
}  // namespace nimbo
