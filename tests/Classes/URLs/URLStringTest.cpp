// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/Characters/AsciiSetKernels.hpp"
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"
#include "Classes/URLs/NSString+URLUtilities.hpp"
#include "Classes/URLs/URLEscaping.hpp"
#include "Classes/URLs/URLNormalizing.hpp"
#include "Classes/URLs/URLQuery.hpp"
#include "platform/Foundation/id.hpp"
#include "tests/support/ExactBuffer.hpp"
#include "tests/support/VectorTargets.hpp"

namespace nimbo {
namespace {

NSString make(std::u16string_view units) {
  return NSString::stringWithCharacters(units);
}

struct Change {
  std::u16string_view before, after;
};

/// Checks each change; when nothing changes the string itself is wanted, and nil where `after` is empty.
void checkChanges(NSString (*function)(const NSString &), const std::vector<Change> &changes) {
  for (const auto &[before, after] : changes) {
    const NSString string = make(before), result = function(string);
    EXPECT_EQ(result.UTF8String(), make(after).UTF8String()) << string.UTF8String();
    EXPECT_EQ(result.identicalTo(string), !after.empty() && before == after) << string.UTF8String();
    EXPECT_EQ(!result, after.empty());
  }
  EXPECT_FALSE(function(NSString()));
}

TEST(URLEscaping, UnescapesInTwoStrengths) {
  const struct {
    std::u16string_view escaped, ascii, standard;
  } cases[] = {
      {u"a%2", u"a%2", u"a%2"},
      {u"%4", u"%4", u"%4"},
      {u"a%3Fb", u"a?b", u"a?b"},
      {u"x?a=%3F", u"x?a=?", u"x?a=%3F"},
      {u"%3f%3F", u"??", u"??"},
      {u"%3F=1?", u"?=1?", u"%3F=1?"},
      {u"%41", u"A", u"%41"},
      {u"%E9%7f%80", u"%E9\u007f%80", u"%E9%7f%80"},
      {u"%zz%4z%z4", u"%zz%4z%z4", u"%zz%4z%z4"},
      {u"%%41", u"%A", u"%%41"},
      {u"%2541%25", u"%41%", u"%41%"},
      {u"%09%0a%0D%20%24%26%27%2b%2F%3a%3b%3d%40%7E", u"\t\n\r $&'+/:;=@~", u"\t\n\r $&'+/:;=@~"},
      {u"%21%22%23%28%2c%2d%2e%5b%00z", std::u16string_view(u"!\"#(,-.[\0z", 10),
       u"%21%22%23%28%2c%2d%2e%5b%00z"},
      {u"\xd800%20\xdc00%", u"\xd800 \xdc00%", u"\xd800 \xdc00%"},
      {u"a long run of units in front of an escape%20and more than a vector behind it, to its end%2",
       u"a long run of units in front of an escape and more than a vector behind it, to its end%2",
       u"a long run of units in front of an escape and more than a vector behind it, to its end%2"},
  };
  for (const auto &[escaped, ascii, standard] : cases) {
    const NSString string = make(escaped);
    EXPECT_EQ(stringByReplacingASCIIPercentEscapesOfURL(string), make(ascii)) << string.UTF8String();
    const NSString result = stringByReplacingStandardPercentEscapesOfURL(string);
    EXPECT_EQ(result, make(standard)) << string.UTF8String();
    EXPECT_EQ(result.identicalTo(string), escaped.size() < 3);
  }
  EXPECT_FALSE(stringByReplacingASCIIPercentEscapesOfURL(NSString()));
}

TEST(URLEscaping, EscapesInTwoStrengths) {
  const struct {
    std::u16string_view plain, ascii, standard;
  } cases[] = {
      {u"a b/c?d", u"a%20b%2fc%3fd", u"a%20b%2fc%3fd"},
      {u"\u00e9-1", u"\u00e9%2d1", u"\u00e9-1"},
      {u"#$%&+/:;=?@", u"%23%24%25%26%2b%2f%3a%3b%3d%3f%40", u"%23%24%25%26%2b%2f%3a%3b%3d%3f%40"},
      {u"!\"'()*,-.<>[\\]^_`{|}~", u"%21%22%27%28%29%2a%2c%2d%2e%3c%3e%5b%5c%5d%5e%5f%60%7b%7c%7d%7e",
       u"!\"'()*,-.<>[\\]^_`{|}~"},
      {u"\t\n\x7f\x80\u2028\xd800", u"%09%0a%7f\x80\u2028\xd800", u"\t\n\x7f\x80\u2028\xd800"},
      {u"AZaz09AZaz09AZaz09AZaz09AZaz09 z", u"AZaz09AZaz09AZaz09AZaz09AZaz09%20z",
       u"AZaz09AZaz09AZaz09AZaz09AZaz09%20z"},
  };
  for (const auto &[plain, ascii, standard] : cases) {
    EXPECT_EQ(stringByAddingASCIIPercentEscapesToURL(make(plain)), make(ascii));
    EXPECT_EQ(stringByAddingStandardPercentEscapesToURL(make(plain)), make(standard));
  }
  const NSString unchanged = u"abc"_ns, empty = NSString::string();
  EXPECT_EQ(stringByAddingPercentEscapesToURL(unchanged, true), unchanged);
  EXPECT_FALSE(stringByAddingPercentEscapesToURL(unchanged, true).identicalTo(unchanged));
  EXPECT_TRUE(stringByAddingPercentEscapesToURL(empty, true).identicalTo(empty));
  EXPECT_FALSE(stringByAddingPercentEscapesToURL(NSString(), false));
}

TEST(URLEscaping, TakesAMegabyteOfPercentSigns) {
  const NSString percents = make(std::u16string(1u << 20, u'%'));
  EXPECT_EQ(stringByReplacingStandardPercentEscapesOfURL(percents), percents);
  EXPECT_EQ(stringByReplacingASCIIPercentEscapesOfURL(stringByAddingASCIIPercentEscapesToURL(percents)),
            percents);
  EXPECT_TRUE(normalizedStringURL(percents).identicalTo(percents));
}

TEST(URLEscaping, FindsUnitsOfASetWithEachVector) {
  // One of each 16 units of ASCII.
  constexpr auto isMember = [](unichar c) {
    return c == 0 || c == 0x1f || c == u'%' || c == u'>' || c == u'M' || c == u'[' || c == u'o' || c == 0x7f;
  };
  forEachVectorTarget([&] {
    for (const bool hasOthers : {false, true}) {
      const detail::AsciiSet set = detail::AsciiSet::of(isMember, hasOthers);
      for (const unichar c : {0x00, 0x05, 0x0f, 0x1f, 0x25, 0x24, 0x3e, 0x4d, 0x5b, 0x6f, 0x7f, 0x80, 0xa5,
                              0xff, 0x100, 0x125, 0x1025, 0xff25, 0xffff}) {
        for (const std::size_t length : {1, 7, 8, 31, 33, 127, 150}) {
          for (const std::size_t at : {std::size_t{0}, length / 2, length - 1}) {
            std::u16string text(length, u'x');
            text[at] = c;
            const ExactBuffer<unichar> units{std::u16string_view(text)};
            const bool isFound = c < 128 ? isMember(c) : hasOthers;
            EXPECT_EQ(findOneOfAsciiSet(units.data(), length, set), isFound ? at : length) << unsigned{c};
            EXPECT_EQ(countOneOfAsciiSet(units.data(), length, set), isFound ? 1u : 0u) << unsigned{c};
          }
        }
      }
    }
  });
}

TEST(URLQuery, WalksParameters) {
  const NSString url = u"http://h/p?a=1&b=&c=3;a=4"_ns;
  EXPECT_EQ(queryParams(url), (NSDictionary{{u"a"_ns, u"4"_ns}, {u"c"_ns, u"3"_ns}}));
  EXPECT_EQ(numberOfQueryParams(url), 4u);
  EXPECT_EQ(queryParamNamed(url, u"a"_ns), u"1"_ns);
  // The name takes what stands before the next "=".
  EXPECT_EQ(queryParams(u"x?&;?a=1&=2;flag&b=3"_ns),
            (NSDictionary{{u"a"_ns, u"1"_ns}, {u"2;flag&b"_ns, u"3"_ns}}));

  EXPECT_FALSE(queryParamNamed(u"?a=1"_ns, u"A"_ns));
  EXPECT_TRUE(containsQueryParamNamed(u"?b=&c=1"_ns, u"b"_ns));
  EXPECT_FALSE(queryParamNamed(u"?b=&c=1"_ns, u"b"_ns));
  EXPECT_EQ(queryParamNamed(u"?b=&b=2"_ns, u"b"_ns), u"2"_ns);
  EXPECT_FALSE(queryParams(u"a=1"_ns));
  EXPECT_EQ(paramNamed(u"a=1"_ns, u"a"_ns), u"1"_ns);
  EXPECT_TRUE(containsParamNamed(u"\u00e9=&x"_ns, u"\u00e9"_ns));
  EXPECT_FALSE(containsParamNamed(u"a="_ns, u"a="_ns));
  EXPECT_FALSE(containsParamNamed(u"a="_ns, NSString()));
  EXPECT_FALSE(containsParamNamed(NSString(), u"a"_ns));

  const NSDictionary none = queryParams(u"x?"_ns);
  EXPECT_TRUE(none);
  EXPECT_EQ(none.count(), 0u);
  EXPECT_FALSE(queryParams(u"a=1"_ns, 3));
  EXPECT_EQ(numberOfQueryParams(u"a=1&b=2"_ns, 1), 1u);
  EXPECT_EQ(numberOfQueryParams(NSString(), 0), 0u);
}

TEST(URLKinds, TellsThemByTheBeginning) {
  const struct {
    bool (*test)(const NSString &);
    std::vector<std::u16string_view> yes, no;
  } cases[] = {
      {isHTTPStringURL, {u"http://", u"HTTPS://x"}, {u"http:/", u" http://x", u"httpx://", u""}},
      {isFTPStringURL, {u"ftp://", u"SFTP://x", u"ftps://"}, {u"ftp:/", u"tftp://x"}},
      {isNewsStringURL, {u"news://x", u"nntp://"}, {u"news:alt.x", u"nttp://x"}},
      {isFileStringURL, {u"file:/x", u" FILE:///x"}, {u"files:/x", u"/file:", u"file"}},
      {isMailStringURL, {u"mailto:a@b", u"MailTo:"}, {u"mail:a", u"http://mailto:x"}},
      {isJavaScriptStringURL, {u"javascript:void(0)", u"\n JavaScript:x"}, {u"java script:", u"x.js", u":"}},
      {isAppleScriptStringURL, {u"AppleScript://x"}, {u"applescripts:"}},
      {isFeedStringURL,
       {u"feed:http://x", u"feed://x", u"http://x/a.RSS?n=1", u"/feed/", u"rss", u"http://x/atom.xml#a",
        u"http://x/b/index.xml", u"feeds.php", u"http://x/news.rdf"},
       {u"http://feed/", u"http://x/feedback", u"mailto:feed", u"http://x/?feed=rss2", u"/index.xhtml", u""}},
      {isMarkupMIMEType,
       {u"text/html", u"Text/HTML; charset=utf-8", u" application/xhtml+xml ;x", u"application/rss+xml",
        u"text/xml"},
       {u"text/plain", u"image/svg+xml", u"application/json", u"html", u"+xml", u""}},
  };
  for (const auto &[test, yes, no] : cases) {
    for (const std::u16string_view url : yes) EXPECT_TRUE(test(make(url))) << make(url).UTF8String();
    for (const std::u16string_view url : no) EXPECT_FALSE(test(make(url))) << make(url).UTF8String();
    EXPECT_FALSE(test(NSString()));
  }
}

TEST(URLNormalizing, CleansWhatPagesCarry) {
  checkChanges(
      normalizedStringURL,
      {
          // What is clean stays.
          {u"http://h/p?a=1&b=2#c", u"http://h/p?a=1&b=2#c"},
          {u"../a/b.html", u"../a/b.html"},
          {u"#top", u"#top"},
          {u"http://b\u00fccher.example/\u00fc?\u4e2d", u"http://b\u00fccher.example/\u00fc?\u4e2d"},
          {u"x\xd800y", u"x\xd800y"},
          {u"http://[2001:db8::1]:80/", u"http://[2001:db8::1]:80/"},
          // What stands around.
          {u"", u""},
          {u" \t\n", u""},
          {u"\"\"", u""},
          {u"\\\"\\\"", u""},
          {u"<>", u""},
          {u" http://h/ ", u"http://h/"},
          {u"\ufeff\"http://h/\"\u00a0", u"http://h/"},
          {u"\\\"https://h/news\\\"\\u003e\\u003cspan", u"https://h/news"},
          {u"\" http://h/ \"", u"http://h/"},
          {u"<http://h/>", u"http://h/"},
          {u"http://h/\" target=\"_blank", u"http://h/"},
          {u"http://h/>link", u"http://h/"},
          {u"sdkpreparse&quot;,", u"sdkpreparse%22,"},
          {u"&quot;http://h/&quot;", u"http://h/"},
          {u"&#32;http://h/&nbsp;", u"http://h/"},
          {u"h?q=&quot;a&quot;", u"h?q=%22a%22"},
          // Line breaks, also where they are references.
          {u"http://h/\r\n\tpath\u2028/f\ufffc", u"http://h/path/f"},
          {u"http://h/&#10;a&#x0d;b", u"http://h/ab"},
          {u"a\f\u2029b", u"ab"},
          // References and parameters.
          {u"h?a=1&amp;b=2", u"h?a=1&b=2"},
          {u"h?a=1&ampb=2&amp=3&unknown=4&quot", u"h?a=1&b=2&=3&unknown=4%22"},
          {u"h?a=&eacute;&amp;sect=1&amp;gtm_a=2", u"h?a=\u00e9&sect=1&gtm_a=2"},
          {u"h?a=1&copy=2&copyx=3&lt=4&#38;x&#65", u"h?a=1\u00a9=2&copyx=3%3c=4&x%065"},
          {u"h?a=1&amp;amp;lang=en&epsilon=1&copy", u"h?a=1&amp;lang=en&epsilon=1&copy"},
          {u"caf&eacute;", u"caf\u00e9"},
          // Escapes.
          {u"http%3A%2F%2Fh%2Fa%3Fb", u"http://h/a?b"},
          {u"h?u=a%3Fb%23c%41", u"h?u=a%3Fb%23c%41"},
          {u"a%20b%0D%0Ac%09", u"a%20b%0d%0ac%09"},
          {u"a b", u"a%20b"},
          {u"\x01\x1f a\x01\x7f!\x1b ", u"a%01%7f!"},
          {u"\x01 \x02", u""},
          // Slashes and brackets.
          {u"http:\\\\h\\a\\b?c\\d#e\\f", u"http://h/a/b?c%5cd#e%5cf"},
          {u"images\\a.gif", u"images/a.gif"},
          {u"c:\\a", u"c:%5ca"},
          {u"http:\\\\u@[::1]\\[x]?a[]=1", u"http://u@[::1]/%5bx%5d?a%5b%5d=1"},
          {u"http:\\\\ http:\\\\[::1]\\", u"http://%20http://[::1]/"},
          {u"http://[x]/", u"http://%5bx%5d/"},
          {u"http://[::1/]", u"http://%5b::1/%5d"},
          {u"file:///[::1]", u"file:///%5b::1%5d"},
          {u"/[::1]", u"/%5b::1%5d"},
          // Text.
          {u"javascript:a(\"\\n\") > 1 ", u"javascript:a(%22%5cn%22)%20%3e%201"},
          {u"\\\"javascript:void(0);\\\"", u"javascript:void(0);"},
          {u"data:image/svg+xml;utf8,<svg xmlns='x'/>", u"data:image/svg+xml;utf8,%3csvg%20xmlns='x'/%3e"},
          {u"mailto:A &lt;a@h&gt;?subject=b c", u"mailto:A%20%3ca@h%3e?subject=b%20c"},
      });
}

TEST(URLNormalizing, TrimsTheAnchor) {
  checkChanges([](const NSString &string) { return normalizedStringURL(string, true); },
               {{u"a?b", u"a?b"}, {u"a#b#c", u"a"}, {u"#top", u""}, {u"a &#35;b", u"a"}, {u"a%23b", u"a%23b"}});
}

TEST(URLNormalizing, StaysInsideItsBuffers) {
  // Every unit grows, and the results are longer than what fits the stack.
  for (const std::uint32_t length : {1u, 2u, 255u, 256u, 257u, 5000u}) {
    const std::u16string spaces(length, u'\x01'), brackets(length, u']');
    for (const std::u16string &text :
         {u'a' + spaces + u'b', brackets, u"&eacute;&amp;a=[" + spaces + u"&amp;%20\\"}) {
      const ExactBuffer<unichar> source{std::u16string_view(text)};
      const auto count = static_cast<std::uint32_t>(text.size());
      const std::unique_ptr<unichar[]> out(new unichar[kMaxURLGrowth * count]);
      const std::uint32_t written = normalizeURLUnits(source.data(), count, false, out.get());
      EXPECT_EQ(make({out.get(), written}), normalizedStringURL(make(text)));
      EXPECT_GT(written, 2 * length);
    }
  }
}

TEST(URLNormalizing, MayPreserveMeaning) {
  checkChanges([](const NSString &url) { return normalizedStringURL(url, false, true); },
               {{u"http://h/%2f%26%3A%3b?u=http%3A%2F%2Fe.org%2F%3Fa%3D1%26b%3D2&amp;c=%2B%25%7e#%2f%3D",
                 u"http://h/%2f&:%3b?u=http://e.org/%3Fa%3D1%26b%3D2&c=%2B%25~#/%3D"},
                {u"http://a%40b%3A1/%40", u"http://a%40b%3A1/@"},
                {u"a%3Ab/c%3A", u"a%3Ab/c:"},
                {u"//h/a%3a", u"//h/a:"},
                {u"a%3Fb c", u"a%3Fb%20c"},
                {u" ?q=\"a>b\" ", u"?q=%22a%3eb%22"},
                {u"?a&amp;b&copy=2&lang=en&amp=1&ampx&lt;&#38;copy=1&epsilon;&#x1f600;&#10;&para",
                 u"?a&b&copy=2&lang=en&amp=1&ampx%3c&copy=1\u03b5\U0001f600\u00b6"},
                {u"mailto:a%40b?c=%26", u"mailto:a%40b?c=%26"}});
}

TEST(URLNormalizing, PutsASlashBeforeNames) {
  checkChanges(normalizedRelLink, {{u"favicon.ico", u"/favicon.ico"},
                                   {u"./a", u"./a"},
                                   {u"/a", u"/a"},
                                   {u"\\a", u"/a"},
                                   {u"x?u=http://h", u"x?u=http://h"},
                                   {u"mailto:a", u"/mailto:a"},
                                   {u" ", u""}});
}

TEST(URLSimplifying, RemovesWhatNamesDo) {
  checkChanges(stringURLByRemovingSessionIDs,
               {{u"http://h/a;jsessionid=1/b;v=2;JSESSIONID=3?x", u"http://h/a/b;v=2?x"},
                {u"http://h/a;jsessionid=1/(S(x))/b?PHPSESSID=2&c=3", u"http://h/a/b?c=3"},
                {u"h?PHPSESSID=1&a=2;CFID=3#f", u"h?a=2#f"},
                {u"h?sid=c04d2ae81f6b97035e", u"h"},
                // One letter less, one run of digits less.
                {u"h?sid=1a2b3cdefghijklm&session=x1a2b3cdefghijkl", u"h"},
                {u"h?sid=1a2b3cdefghijkl&session=1a2bcdefghijklmn&sid=1a2b3cdefghijklm-",
                 u"h?sid=1a2b3cdefghijkl&session=1a2bcdefghijklmn&sid=1a2b3cdefghijklm-"},
                {u"/a;sid=0BcD2ae81f6b97035e?session=123e4567-e89b-12d3-a456-426614174000", u"/a"},
                {u"h?sid=1&session=keynote2024opening&sessionid=a1b2c3",
                 u"h?sid=1&session=keynote2024opening&sessionid=a1b2c3"},
                {u"h?session&session_id=1234567890123456789", u"h?session&session_id=1234567890123456789"},
                {u"/(S(x))//host", u"/.//host"},
                {u"x:/(S(x))//host", u"x:/.//host"},
                {u";jsessionid=1//host", u"/.//host"},
                {u"http://h/(S(x))//a", u"http://h//a"},
                {u"h?side=1", u"h?side=1"}});
  checkChanges(
      stringURLByRemovingAnalytics,
      {{u"h?utm_source=a&b=1&UTM_x=2;fbclid=3&c", u"h?b=1&c"},
       {u"h?&utm=1&", u"h?&utm=1&"},
       {u"h?a=1&amp;utm_x=2&amp;b=3", u"h?a=1&amp;b=3"},
       {u"h?utm_x=1&amp;b=2", u"h?b=2"},
       {u"https://h/?elqTrack=true&cm_mmc-a=1&bsft_x=2&at_id=3&awc=4&_trkparms=5",
        u"https://h/?at_id=3&_trkparms=5"},
       {u"https://youtu.be/x?si=1&t=2", u"https://youtu.be/x?t=2"},
       {u"https://h/x?si=1&trk=2&ved=3", u"https://h/x?si=1&trk=2&ved=3"},
       {u"https://u@Smile.Amazon.co.uk.:80/x?pd_rd_w=1&q=2", u"https://u@Smile.Amazon.co.uk.:80/x?q=2"},
       {u"https://amazon.evil.example/x?pd_rd_w=1", u"https://amazon.evil.example/x?pd_rd_w=1"},
       {u"https://notlinkedin.com/?trk=1", u"https://notlinkedin.com/?trk=1"}});
  checkChanges(stringURLByRemovingEmptyParams,
               {{u"h?a=&b&&c=1=", u"h?b&c=1="}, {u"h?", u"h"}, {u"h?&=#x", u"h#x"}, {u"h", u"h"}});
  checkChanges(stringURLByRemovingIndexPages, {{u"http://h/a/Index.HTML#b", u"http://h/a/#b"},
                                               {u"http://h/index.php?id=1", u"http://h/index.php?id=1"},
                                               {u"index.html", u"index.html"},
                                               {u"http://index.html", u"http://index.html"}});
  checkChanges(stringURLWithoutAnchor, {{u"a#b#c", u"a"}, {u"a", u"a"}});
  checkChanges(
      simplifiedStringURL,
      {{u"HTTP://U:P@Host.Example:80/A/default.aspx;jsessionid=1?utm_source=x&a=#z",
        u"http://U:P@host.example/A/"},
       {u"https://h:443", u"https://h/"},
       {u"//h?a#b", u"//h/?a"},
       {u"http://h/#!/a", u"http://h/#!/a"},
       {u"http://h/index.html#/a", u"http://h/#/a"},
       {u"http://h/a/./b/../%2E%2e/c/%7euser%2fx%e9%%34%31", u"http://h/c/~user%2Fx%E9%2541"},
       {u"/a/..//h", u"/.//h"},
       {u"../a/./b", u"../a/./b"},
       {u"%41b:c", u"./Ab:c"},
       {u"http://u%41@B\u00fccher.Example/\u00fc\xd83d\xde00\xd800?\u00e9",
        u"http://uA@xn--bcher-kva.example/%C3%BC%F0%9F%98%80\xd800?%C3%A9"},
       {u"http://%45x%c3%a9.org:/", u"http://xn--ex-cja.org/"},
       {u"http://a%ff%62.%2F:80", u"http://a%FFb.%2F/"},
       {u"http://h/%4", u"http://h/%254"},
       {u"http://h/%", u"http://h/%25"},
       {u"http://h/\xd83d", u"http://h/\xd83d"},
       {u"HTTP://", u"http://"},
       {u"MAILTO:%41@B/../c", u"mailto:A@B/../c"},
       {u"Data:,%41/../B", u"data:,%41/../B"},
       {u"http://h:8080/?q", u"http://h:8080/?q"},
       {u"File:///(S(x))/a;sid=1;jsessionid=2/index.html", u"file:///(S(x))/a;sid=1;jsessionid=2/index.html"},
       {u"http://[::80]/", u"http://[::80]/"},
       {u"http://[::1]:/", u"http://[::1]/"},
       {u"http://h:80:/", u"http://h:80:/"},
       {u"javascript:a?sid=1", u"javascript:a?sid=1"}});
  const NSString url = u"HTTP://h/index.html?sid=1&utm_x=2&a=#b"_ns;
  EXPECT_EQ(simplifiedStringURLByRemovingSessionIDs(url, false, false, false, false, false),
            u"http://h/index.html?sid=1&utm_x=2&a=#b"_ns);
}

}  // namespace
}  // namespace nimbo
