// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Loading/References.hpp"

#include <gtest/gtest.h>

namespace nimbo {
namespace {

// The references as a browser resolves them.
TEST(References, AreReadAsBrowsersDo) {
  const NSURL base = NSURL::URLWithString(u"http://a.org/b/c?d"_ns);
  const std::pair<std::u16string_view, std::string_view> cases[] = {
      {u"e.html", "http://a.org/b/e.html"},
      {u" \n e f.html\t", "http://a.org/b/e%20f.html"},
      {u"e\n\tf", "http://a.org/b/ef"},
      {u"\\e\\f?g\\h", "http://a.org/e/f?g%5Ch"},
      {u"\u00e9?\u00e9#\u00e9", "http://a.org/b/%C3%A9?%C3%A9#%C3%A9"},
      {u"100%", "http://a.org/b/100%25"},
      {u"%e9%zz", "http://a.org/b/%e9%25zz"},
      {u"[x]{y}|\"<>`^", "http://a.org/b/%5Bx%5D%7By%7D%7C%22%3C%3E%60%5E"},
      {u"#a#b", "http://a.org/b/c?d#a%23b"},
      {u"//B\u00fccher.example/x y", "http://xn--bcher-kva.example/x%20y"},
      {u"https://user:pw@h.org:8080/", "https://user:pw@h.org:8080/"},
      {u"HTTP://A.Org:80", "http://a.org/"},
      {u"//C.org?x", "http://c.org/?x"},
      {u"https://User@H.org:80/a/../../b", "https://User@h.org:80/b"},
      {u"x://H:80", "x://h:80"},
      {u"//\u4f8b.\u30c6\u30b9\u30c8:8080/x", "http://xn--fsq.xn--zckzah:8080/x"},
      {u"//B%C3%BCcher.%65xample:/", "http://xn--bcher-kva.example/"},
      {u"//h%2fx/", "http://h%2fx/"},
      {u"//h:00080/", "http://h/"},
      {u"//h:0/", "http://h:0/"},
      {u"https://h:443/", "https://h/"},
      {u"https://h:80/", "https://h:80/"},
      {u"ws://h:80/", "ws://h/"},
      {u"wss://h:443/", "wss://h/"},
      {u"wss://h:80/", "wss://h:80/"},
      {u"ftp://h:21/", "ftp://h/"},
      {u"ftp://h:80/", "ftp://h:80/"},
      {u"//h:/", "http://h/"},
      {u"//[::1]:80/", "http://[::1]/"},
      {u"//a@b:c@h/", "http://a%40b:c@h/"},
      {u"http:e.html", "http://a.org/b/e.html"},
      {u"HTTP:/e.html", "http://a.org/e.html"},
      {u"http:?e", "http://a.org/b/c?e"},
      {u"https:h.org/e", "https://h.org/e"},
      {u"///h.org\\e", "http://h.org/e"},
      {u"http:\\/\\h.org", "http://h.org/"},
      {u"Sp\u00e9cial:E", "http://a.org/b/Sp%C3%A9cial:E"},
      {u":80?e:f", "http://a.org/b/:80?e:f"},
      {u"http:e:f", "http://a.org/b/e:f"},
      {u"mailto:a b@c.org", "mailto:a%20b@c.org"},
      {u"javascript:void(0)", "javascript:void(0)"},
      {u"data:text/plain,a\\b", "data:text/plain,a%5Cb"},
      {u"?e", "http://a.org/b/c?e"},
      {u"", "http://a.org/b/c?d"},
  };
  for (const auto &[reference, expected] : cases) {
    const NSString url = detail::URLOfReference(reference, base).absoluteString();
    EXPECT_EQ(url ? url.UTF8String() : "nil", expected);
  }
  EXPECT_FALSE(detail::URLOfReference(u" \n", base));
  EXPECT_FALSE(detail::URLOfReference(u"relative", NSURL()).scheme());
}

}  // namespace
}  // namespace nimbo
