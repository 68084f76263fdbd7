// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>
#include <tuple>
#include <vector>

#include "Classes/URLs/NSURL+NSURLNimboExtensions.hpp"
#include "Classes/URLs/TypedURLs.hpp"
#include "tests/support/GrowthRatio.hpp"
#include "tests/support/TemporaryFolder.hpp"
#include "tests/support/URLTexts.hpp"

namespace nimbo {
namespace {

std::string shown(const NSURL &one) {
  return shown(one.absoluteString());
}

TEST(URLSchemes, AreTold) {
  // The letters: http, ftp, feed, mail, news, javaScript, appleScript, downloadable, loadable, webKit, remote
  // webkit.
  const std::string_view cases[][2] = {
      {"HTTPS://h/", "hdlwr"},
      {"http://h...x/", "hdl"},
      {"http://-.-/", "hdl"},
      {"http:x", "hdl"},
      {"SFTP://h", "fdl"},
      {"feed://h/", "elwr"},
      {"news:x", "n"},
      {"nttp://h", "n"},
      {"nntp://h", ""},
      {"mailto:a@b", "m"},
      {"JavaScript:a", "j"},
      {"applescript:a", "a"},
      {"file:///none/at/all", "w"},
      {"httpx://h", ""},
      {"//h/p", ""},
  };
  for (const auto &[string, expected] : cases) {
    const NSURL one = url(string);
    const std::pair<bool, char> tests[] = {
        {isHTTPURL(one), 'h'},        {isFTPURL(one), 'f'},          {isFeedURL(one), 'e'},
        {isMailURL(one), 'm'},        {isNewsURL(one), 'n'},         {isJavaScriptURL(one), 'j'},
        {isAppleScriptURL(one), 'a'}, {isDownloadableURL(one), 'd'}, {isLoadableURL(one), 'l'},
        {isWebKitURL(one), 'w'},      {isRemoteWebKitURL(one), 'r'},
    };
    std::string found;
    for (const auto &[is, letter] : tests)
      if (is) found += letter;
    EXPECT_EQ(found, expected) << string;
  }
  const TemporaryFolder folder;
  const NSString file = folder.write("a", "");
  EXPECT_TRUE(isLoadableURL(NSURL::fileURLWithPath(file)) && baseURLForWebKit(NSURL::fileURLWithPath(file)));
  const NSURL parameters = url("file://" + folder.write("a;b", "").UTF8String());
  EXPECT_TRUE(isLoadableURL(parameters) && baseURLForWebKit(parameters));
  EXPECT_FALSE(isLoadableURL(NSURL::fileURLWithPath(folder.string(""))) || isLoadableURL(NSURL()));

  const std::string_view bases[][2] = {{"feed://h/a", "http://h/a"},
                                       {"feed:HTTP://h/a", "HTTP://h/a"},
                                       {"https://h", "https://h"},
                                       {"ftp://h", "-"},
                                       {"/a", "-"},
                                       {"file:///none/at/all", "-"}};
  for (const auto &[string, base] : bases) EXPECT_EQ(shown(baseURLForWebKit(url(string))), base);
  EXPECT_EQ(shown(baseURLForWebKitUsingAnchor(url("feed://h/a#b"), u"c"_ns)), "http://h/a#c");
  EXPECT_FALSE(baseURLForWebKitUsingAnchor(url("ftp://h"), u"c"_ns));
}

TEST(URLSchemes, CompareHostsAndKnowSearchEngines) {
  EXPECT_TRUE(isHostEqualTo(url("http://H.org:1/"), url("ftp://h.ORG/x")) &&
              isHostEqualTo(url("file:///a"), url("file:///b")));
  EXPECT_FALSE(isHostEqualTo(url("http://h/"), NSURL()) || isHostEqualTo(url("file://h/"), url("http://h/")) ||
               isHostEqualTo(url("http:a"), url("http:a")) || isHostEqualTo(url("//h/"), url("//h/")));
  for (const auto string : {"http://www.google.co.uk/search?q=x", "https://WWW.Bing.com./",
                            "http://duckduckgo.com/?q=a", "https://google.de/mapsearch",
                            "https://Yandex.com.tr/search/", "https://search.yahoo.co.jp/search?p=a"})
    EXPECT_TRUE(isSearchEngine(url(string))) << string;
  for (const auto string :
       {"http://news.google.com/x", "https://www.google.com/finance?q=x", "http://google",
        "http://notgoogle.com/", "ftp://www.bing.com/", "mailto:www.bing.com",
        "http://www.google.evil.example/", "http://www.google.com.evil.example/", "http://google.evil/",
        "http://news.google.de/", "https://www.google.com.br/maps/place/x", "http://google.at/intl/de/about"})
    EXPECT_FALSE(isSearchEngine(url(string))) << string;
}

TEST(URLTypes, AreToldByLength) {
  EXPECT_TRUE(isArchiveType(u"TAR"_ns) && isArchiveType(u"Torrent"_ns) && isArchiveType(u"sparseIMAGE"_ns));
  for (const NSString &extension : {u"tar.gz"_ns, u"sparseimages"_ns, u""_ns, NSString(), u"t\u00e4r"_ns})
    EXPECT_FALSE(isArchiveType(extension));
  EXPECT_TRUE(isMultimediaType(u"RMVB"_ns) && isMultimediaType(u"smi"_ns) && isArchiveType(u"smi"_ns));
  struct {
    NSString extension;
    /// Whether it matches audio, video, embedded when these alone are asked for.
    bool audio, video, embedded;
  } const cases[] = {
      {u"SWF"_ns, false, false, true},     {u"movie"_ns, false, true, false}, {u"ra"_ns, true, false, false},
      {u"mpe"_ns, false, true, false},     {u"midi"_ns, true, false, false},  {u"dv"_ns, false, false, false},
      {u"movies"_ns, false, false, false}, {NSString(), false, false, false},
  };
  for (const auto &[extension, audio, video, embedded] : cases) {
    EXPECT_EQ(isMultimediaType(extension, true, false, false), audio) << shown(extension);
    EXPECT_EQ(isMultimediaType(extension, false, true, false), video) << shown(extension);
    EXPECT_EQ(isMultimediaType(extension, false, false, true), embedded) << shown(extension);
    EXPECT_FALSE(isMultimediaType(extension, false, false, false));
  }
  // Other characters count as the letters that they fold to, in each test by its own rule.
  EXPECT_TRUE(isExecutableType(u"cla\u00df"_ns) && isImageType(u"ti\ufb00"_ns) &&
              isBinaryFileType(u"\u017fit"_ns));
  EXPECT_TRUE(isArchiveType(u"\u017fit"_ns) && isMultimediaType(u"av\u0131"_ns));
  EXPECT_FALSE(isBinaryFileType(u"av\u0131"_ns) || isMultimediaType(u"av\u0131"_ns, true, true, true));
  EXPECT_TRUE(isBinaryFileType(u"RTFD"_ns) && isOfficeType(u"Ai"_ns) && isMarkupType(u"OPML"_ns) &&
              isImageType(u"JPEG"_ns));
  EXPECT_FALSE(isOfficeTypeIncludingMSWord(u"docx"_ns, false, true, true, true, true));
  EXPECT_FALSE(isBinaryFileTypeIncludingRichText(u"rtf"_ns, false, true, true, true, true, true) ||
               isRichTextType(NSString()));
}

TEST(URLTypes, AreListedInOrder) {
  const auto lengthOf = [](const NSString &extension) { return extension.length(); };
  EXPECT_TRUE(std::ranges::is_sorted(archiveTypes(), {}, lengthOf) &&
              std::ranges::is_sorted(multimediaTypes(), {}, lengthOf));
  EXPECT_EQ(std::ranges::count(multimediaTypes(), u"m3u"_ns), 2);
  for (unsigned flags = 0; flags < 32; ++flags) {
    const auto isSet = [=](unsigned bit) { return (flags >> bit & 1) != 0; };
    const auto office = officeTypesIncludingMSWord(isSet(0), isSet(1), isSet(2), isSet(3), isSet(4));
    EXPECT_EQ(office.size(), 11u + 7 * isSet(0) + 2 * isSet(1) + 2 * isSet(2) + isSet(3) + 4 * isSet(4));
    std::vector<NSString> joined;
    for (const auto &list : {imageTypes(),
                             multimediaTypes(),
                             archiveTypes(),
                             executableTypes(),
                             office,
                             richTextTypes(),
                             {u"dat"_ns}})
      joined.insert(joined.end(), list.begin(), list.end());
    EXPECT_EQ(binaryFileTypesIncludingRichText(true, isSet(0), isSet(1), isSet(2), isSet(3), isSet(4)), joined);
  }
  EXPECT_EQ(binaryFileTypes(), binaryFileTypesIncludingRichText(true, true, true, true, true, true));
  EXPECT_EQ(officeTypes().back(), u"ai"_ns);
  for (const NSString &extension : {u"sgml"_ns, u"xml"_ns, u"opml"_ns})
    EXPECT_EQ(std::ranges::count(markupTypes(), extension), 1) << extension.UTF8String();
  EXPECT_EQ(std::ranges::count(markupTypes(), u"html"_ns), 0);
}

TEST(Links, AreFollowedByModeAndLevel) {
  for (std::uint32_t level = 0; level < 5; ++level) EXPECT_EQ(shouldFollowLink(6, level), level <= 2);
  EXPECT_FALSE(shouldFollowLink(0, 0));
  EXPECT_TRUE(shouldFollowLink(4, 99) && shouldFollowLink(1, 99));
  const NSURL base = url("http://h/a/b/index.html");
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"HTTPS://H/a/b/x?y", "12345"},
      {"http://h/a/b/c/d", "1345"},
      {"http://h/a/b/../b/x", "12345"},
      {"http://h/a/bc/", "145"},
      {"http://h/A/b/x", "145"},
      {"http://i/a/b/x", "45"},
      {"http://h", "145"},
      {"mailto:a@b", "45"},
  };
  for (const auto &[string, modes] : cases) {
    std::string followed;
    for (std::uint32_t mode = 0; mode <= 5; ++mode)
      if (shouldFollowLink(url(string), mode, 1, base)) followed += std::to_string(mode);
    EXPECT_EQ(followed, modes) << string;
  }
  EXPECT_FALSE(shouldFollowLink(url("http://h/"), 1, 0, NSURL()));
}

TEST(Status, HasItsExceptions) {
  std::vector<std::int32_t> errors, temporary, withPhrase;
  std::set<std::u16string> phrases;
  for (std::int32_t code = -1; code < 1000; ++code) {
    if (!isHTTPStatusCodeOkay(code) && code < 300) errors.push_back(code);
    EXPECT_FALSE(isHTTPStatusCodeOkay(code) && code >= 300);
    if (isHTTPStatusCodeTemporaryError(code)) temporary.push_back(code);
    if (!messageForHTTPError(code)) continue;
    withPhrase.push_back(code);
    phrases.emplace(messageForHTTPError(code).view());
  }
  EXPECT_EQ(errors, (std::vector<std::int32_t>{201, 202, 203, 204, 205, 206}));
  EXPECT_EQ(temporary, (std::vector<std::int32_t>{307, 408, 500, 502, 503, 504, 507, 509, 510}));
  EXPECT_EQ(phrases.size(), withPhrase.size());
  for (const auto &[first, last] : {std::pair(100, 101),
                                    {200, 207},
                                    {226, 226},
                                    {300, 305},
                                    {307, 307},
                                    {400, 417},
                                    {422, 424},
                                    {426, 426},
                                    {500, 505},
                                    {507, 507},
                                    {509, 510}})
    for (std::int32_t code = first; code <= last; ++code) EXPECT_EQ(std::erase(withPhrase, code), 1u) << code;
  EXPECT_TRUE(withPhrase.empty());
  for (const auto &[code, phrase] : {std::pair(100, u"Continue"_ns),
                                     {207, u"Multi-Status"_ns},
                                     {404, u"Not Found"_ns},
                                     {510, u"Disconnected"_ns}})
    EXPECT_EQ(messageForHTTPError(code), phrase) << code;
  // What stands for an error of the loader, and whether that may go by itself.
  for (const auto &[error, code, isTemporary] : {std::tuple(-1001, 408, true),
                                                 {-1005, 0, true},
                                                 {-1007, 302, false},
                                                 {-1009, 0, true},
                                                 {-1010, 302, false},
                                                 {-1011, 0, true},
                                                 {-1012, 401, false},
                                                 {-1013, 401, false},
                                                 {-1014, 204, false},
                                                 {-1100, 404, false},
                                                 {-1102, 403, false},
                                                 {-1, 0, false}}) {
    EXPECT_EQ(HTTPStatusCodeForNSURLError({NSURLErrorDomain(), error}), code) << error;
    EXPECT_EQ(isTemporaryNSURLError({NSURLErrorDomain(), error}), isTemporary) << error;
    EXPECT_FALSE(isTemporaryNSURLError({NSString(), error}));
  }
  EXPECT_EQ(HTTPStatusCodeForNSURLError(NSError()), 0);
}

TEST(RelativeLinks, AreRepairedAndResolved) {
  const NSURL base = url("http://h/a/b?c#d");
  const std::string_view cases[][2] = {
      {"../x y", "http://h/x%20y"},
      {":http://x/", "http://x/"},
      {"ttp://x/", "http://x/"},
      {"hHTTPS://x/", "HTTPS://x/"},
      {"http://http://HTTP://x/", "HTTP://x/"},
      {"http:// http://x/", "http://x/"},
      {"mailto:http://x/", "http://x/"},
      {"emailto:a@b", "mailto:a@b"},
      {":http://ttp://x/", "http://ttp://x/"},
      {"ttps://http://x/", "http://x/"},
      {"%22http://x/%22", "http://x/"},
      {"https://%20http://x/", "http://x/"},
      // What is normalised keeps its references and escapes.
      {"/?a=1&lang=en&gtm_a=2&u=%252F%2F", "http://h/?a=1&lang=en&gtm_a=2&u=%252F%2F"},
      {"/?q=%22x%22", "http://h/?q=%22x%22"},
      {"feed:http://x/../y", "feed:http://x/../y"},
      {"irc://x/./#room", "irc://x/./#room"},
      {"ymsgr:sendIM?a", "ymsgr:sendIM?a"},
      {"http://x/./a/../b#c", "http://x/b#c"},
      {"a:b c", "a:b%20c"},
      {"12:30", "http://h/a/12:30"},
      {"#e", "http://h/a/b?c#e"},
      {"a#b#c", "http://h/a/a#b%23c"},
      {"http://%C3%BCber.org/", "http://xn--ber-goa.org/"},
      {"//\u00fcber%2Eorg", "http://xn--ber-goa.org"},
      {"//\u00fcber.org/\u00fc?\u00fc", "http://xn--ber-goa.org/%C3%BC?%FC"},
      {"?\u20ac\u00fc", "http://h/a/b?%E2%82%AC%C3%BC"},
      {"http://x:99999999/", "http://x:99999999/"},
      {"http://x:y/", "-"},
      {"http://a\u2100b/", "-"},
      {"http://[\u00e4]:\u00e4/", "-"},
      {"//[::1]:80/\u00e4", "http://[::1]:80/%C3%A4"},
      {"100%", "http://h/a/100%25"},
      {" \"\" ", "-"},
      // What browsers follow.
      {"", "http://h/a/b?c"},
      {"\x01 \t", "http://h/a/b?c"},
      {"\x01http://x/\x1f", "http://x/"},
      {"https:/x/", "https://x/"},
      {"HTTPS:x", "HTTPS://x"},
      {"https:////x", "https://x"},
      {"http:/x/", "http://h/x/"},
      {"Http:x", "http://h/a/x"},
      {"http:javascript:x", "http://h/a/javascript:x"},
      {"Http:https://x/", "https://x/"},
      {"https:/http:////x/", "http://x/"},
      {"///http://x/", "http://x/"},
      {"//http://x/", "http://x/"},
      {"//https.example/", "http://https.example/"},
      {"http:///http:///http:///x/", "http://x/"},
      {"https:http:HTTPS:http://x/", "http://x/"},
      {"http::http://x/", "http://x/"},
      {"http:\\\\%20\\mailto:HTTP:\\\\x\\y", "HTTP://x/y"},
      {"https:/http:/x/", "https://http:/x/"},
      {"http:/http:/x/", "http://h/http:/x/"},
      {"/http://x/", "http://h/http://x/"},
      {"http:///x/", "http://x/"},
      {"\\\\\\x/y", "http://x/y"},
      {"///x/y", "http://x/y"},
      {"/?q=\"a\"><b", "http://h/?q=%22a%22%3e%3cb"},
      {"http:", "http:"},
      {"///", "http:///"},
      {"http://[v1.a]/", "http://%5bv1.a%5d/"},
      {"https:u@[::1]/[a]", "https://u@[::1]/%5ba%5d"},
      {"http:[::1]/", "http://h/a/%5B::1%5D/"},
      {"http:\\\\\\[::1]", "http://[::1]"},
      {"///[::1]:80/", "http://[::1]:80/"},
      {"http:/http://u@[::1]/[a]", "http://u@[::1]/%5ba%5d"},
      {"//http://[::1]/", "http://[::1]/"},
      {":http:\\\\[::1]\\", "http://[::1]/"},
      {"mailto:http://[::1]/", "http://[::1]/"},
      {"%22http://[::1]/%22", "http://[::1]/"},
      {"http:// https://[::1]/", "https://[::1]/"},
  };
  for (const auto &[link, target] : cases)
    EXPECT_EQ(shown(URLRelativeTo(base, text(link), false, NSISOLatin1StringEncoding, true)), target) << link;
  EXPECT_EQ(shown(URLRelativeTo(u"#e"_ns, base, true)), "http://h/a/b?c");
  EXPECT_EQ(shown(URLRelativeTo(u"///x"_ns, url("file:///a"))), "file:///x");
  EXPECT_EQ(shown(URLRelativeTo(u"http:x/y"_ns, NSURL())), "http://x/y");
  EXPECT_FALSE(URLRelativeTo(u""_ns, NSURL()));
  EXPECT_EQ(shown(URLRelativeTo(u"http://x/./#e"_ns, base, true)), "http://x/./");
  EXPECT_EQ(shown(URLRelativeTo(u"?\x00fc"_ns, base, false, NSUnicodeStringEncoding)), "http://h/a/b?%C3%BC");
  EXPECT_EQ(shown(URLRelativeTo(u"/\xd800"_ns, base)), "http://h/%EF%BF%BD");
  for (const NSURL &none : {NSURL(), url("a/b"), url("//h/")}) EXPECT_FALSE(URLRelativeTo(u"x"_ns, none));
  EXPECT_EQ(shown(URLRelativeTo(u"http://x"_ns, NSURL())), "http://x");
  EXPECT_FALSE(URLRelativeTo(NSString(), base));

  for (const std::string_view beginning : {"http://", "https:", "http:/// "}) {
    std::string nested;
    for (int i = 0; i < 100000; ++i) nested += beginning;
    EXPECT_EQ(shown(URLRelativeTo(text(nested + "http://[::1]/"), base)), "http://[::1]/");
  }
  EXPECT_TRUE(URLRelativeTo(text("/" + std::string(1 << 20, '%')), base));
  EXPECT_TRUE(URLRelativeTo(text("http://" + std::string(1 << 16, '.') + "/"), base));
}

TEST(Making, ChangesOnePart) {
  const NSURL one = url("http://u:p@h:8/a/b;c?d#e");
  const std::pair<NSURL, std::string_view> cases[] = {
      {URLWithAnchor(one, u"x y#\x00e4"_ns), "http://u:p@h:8/a/b;c?d#x%20y%23%C3%A4"},
      {URLWithAnchor(one, u"#x"_ns), "http://u:p@h:8/a/b;c?d#x"},
      {URLWithoutAnchor(one), "http://u:p@h:8/a/b;c?d"},
      {URLWithScheme(one, u"ftp"_ns), "ftp://u:p@h:8/a/b;c?d#e"},
      {URLWithScheme(one, u"a:b"_ns), "-"},
      {URLForUser(one, u"a@b"_ns, u"\x00e4/"_ns), "http://a%40b:%C3%A4%2F@h:8/a/b;c?d#e"},
      {URLForUser(url("http://h"), u"a"_ns, NSString()), "http://a@h"},
      {URLForUser(one, NSString(), u"x"_ns), "http://h:8/a/b;c?d#e"},
      {URLForUser(url("mailto:a"), u"a"_ns, NSString()), "-"},
      {URLByAppendingPathComponent(one, u"x?y"_ns), "http://u:p@h:8/a/b/x%3Fy"},
      {URLByAppendingPathComponent(url("http://h"), u"/x"_ns), "http://h/x"},
      {URLByAppendingPathComponent(url("file:///a;b"), u"c"_ns), "file:///a;b/c"},
      {URLByDeletingLastPathComponent(one), "http://u:p@h:8/a/"},
      {URLByDeletingLastPathComponent(url("http://h/a/")), "http://h/"},
      {URLByDeletingLastPathComponent(url("http://h/")), "http://h/"},
      {URLByDeletingLastPathComponent(url("mailto:a")), "-"},
      {URLWithFormat(u"%@:%@%%41%@"_ns, {u"x"_ns, u"y"_ns}), "x:y%41"},
      {URLWithFormat(u"%@:%@%%41"_ns, {u"x"_ns, u"%@"_ns}), "-"},
      {URLWithStringOrPath(u"/a b"_ns), "file:///a%20b"},
      {URLWithStringOrPath(u"a b"_ns), "-"},
      {URLWithNormalizedStringURL(u" www.h\\a b"_ns), "http://www.h/a%20b"},
      {URLWithNormalizedStringURL(u"ttp://h/{a|b}?[]"_ns), "http://h/%7Ba%7Cb%7D?%5b%5d"},
      {URLWithNormalizedStringURL(u" \"http://h/?a=1&copy=%2525\nb\""_ns), "http://h/?a=1&copy=%2525b"},
      {URLWithNormalizedStringURL(u"a@b://c"_ns), "./a@b://c"},
      {URLWithNormalizedStringURL(u"http:/h/\"x"_ns), "http://h/%22x"},
      {URLWithNormalizedStringURL(u"http:[::1]/"_ns), "http://[::1]/"},
      {URLWithNormalizedStringURL(u"http:http:///[::1]/"_ns), "http://[::1]/"},
  };
  for (const auto &[made, expected] : cases) EXPECT_EQ(shown(made), expected);
}

TEST(TypedURLs, MayBeginWithAHost) {
  const std::string_view cases[][2] = {
      {"example.org:8080/a b", "http://example.org:8080/a%20b"},
      {"example.org?x=1#y", "http://example.org?x=1#y"},
      {"example.org.", "http://example.org."},
      {" a_b.c-d.museum ", "http://a_b.c-d.museum"},
      {"m\u00fcller.\u0440\u0444", "http://xn--mller-kva.xn--p1ai"},
      {"bcher.xn--p1ai", "http://bcher.xn--p1ai"},
      {"LocalHost:80/x", "http://LocalHost:80/x"},
      {"10.0.0.1:80", "http://10.0.0.1:80"},
      {"FTP.example.org/a", "ftp://FTP.example.org/a"},
      // Extensions of files that are those of countries, too, and others.
      {"read.me", "http://read.me"},
      {"script.pl", "http://script.pl"},
      {"script.JS", "script.JS"},
      {"page.tar.gz", "page.tar.gz"},
      {"photo.jpeg", "photo.jpeg"},
      {"list.opml", "list.opml"},
      // No names and addresses of hosts.
      {"example", "example"},
      {"localhosts", "localhosts"},
      {"a/b.org", "a/b.org"},
      {"/b.org", "/b.org"},
      {".example.org", ".example.org"},
      {"a..org", "a..org"},
      {"a!.org", "a!.org"},
      {"user@example.org", "user@example.org"},
      {"example.c", "example.c"},
      {"example.c2", "example.c2"},
      {"10.0.1", "10.0.1"},
      {"10.0.0.0.1", "10.0.0.0.1"},
      {"10.0.0.1000", "10.0.0.1000"},
      {"example.org:a", "example.org:a"},
      {"mailto:example.org", "mailto:example.org"},
      {"http://example.org", "http://example.org"},
      {"", "-"},
      {" \"\" ", "-"},
  };
  for (const auto &[typed, expected] : cases)
    EXPECT_EQ(shown(URLWithTypedString(text(typed))), expected) << typed;
  EXPECT_FALSE(URLWithTypedString(NSString()));
}

TEST(Components, AreThoseOfTheURL) {
  const NSURL one = url("http://u:p@WWW.example.org:8/a/./b%20c.tar;d/e?x=1&y=&X=2#f");
  const std::pair<NSString, std::string_view> cases[] = {
      {invertedHost(one), "org.example.WWW"},
      {invertedHost(url("http://10.0.0.1/")), "10.0.0.1"},
      {invertedHost(url("http://..a../")), "a"},
      {invertedHost(url("file:///a")), "-"},
      {baseDirectory(one), "/a/./"},
      {standardizedBaseDirectory(one), "/a/"},
      {baseDirectory(url("http://h?a/b")), "/"},
      {pathWithParamsAndQuery(one), "/a/./b%20c.tar;d/e?x=1&y=&X=2"},
      {pathWithParamsAndQueryAndFragment(one), "/a/./b%20c.tar;d/e?x=1&y=&X=2#f"},
      {fullPath(one), "/a/./b c.tar;d/e"},
      {lastPathComponent(one), "b c.tar"},
      {pathExtension(one), "tar"},
      {queryParamNamed(one, u"x"_ns), "1"},
      {queryParamNamed(one, u"y"_ns), "-"},
      {absoluteStringWithoutUserAndPassword(one), "http://WWW.example.org:8/a/./b%20c.tar;d/e?x=1&y=&X=2#f"},
      {absoluteStringWithHostAndPath(one), "http://WWW.example.org:8/a/./b%20c.tar"},
      {absoluteStringWithHostAndPath(url("ftp://a;b@h;i/c;j?d")), "ftp://h;i/c"},
      {standardizedStringURL(url("http://h/a/..")), "http://h/"},
      {absoluteStringOrPath(url("file:///a%20b;c")), "/a b;c"},
      {simplifiedStringURL(url("file:///a/./b%20c/")), "/a/b c"},
      {simplifiedStringURL(url("HTTP://H:80/a/index.html#b")), "http://h/a/"},
      {simplifiedStringURL(url("file:///a/./b;c/d;e")), "/a/b;c/d;e"},
      {simplifiedStringURLByRemovingSessionIDs(url("file:///a;sid=1"), true, true, true, true, true),
       "/a;sid=1"},
      {stringURLByRemovingSessionIDs(url("http://h/a;jsessionid=1/b?PHPSESSID=2&utm_x=3&c=")),
       "http://h/a/b?utm_x=3&c="},
      {stringURLByRemovingSessionIDs(url("file:///a/./b;jsessionid=1")), "/a/b;jsessionid=1"},
      {stringURLByRemovingAnalytics(url("http://h/?utm_x=1&PHPSESSID=2&c=")), "http://h/?PHPSESSID=2&c="},
      {stringURLByRemovingEmptyParams(url("http://h/index.html?c=&utm_x=1")), "http://h/index.html?utm_x=1"},
      {stringURLByRemovingIndexPages(url("http://h/index.html#b")), "http://h/#b"},
      {stringURLByRemovingIndexPages(url("file:///a/./index.html")), "/a/index.html"},
      {lastPathComponent(url("file:///a;b.txt")), "a;b.txt"},
      {pathExtension(url("file:///a;b.txt")), "txt"},
      {baseDirectory(url("file:///a;b/c")), "/a;b/"},
      {pathRelativeToDirectory(url("file:///a/b;c"), u"/a"_ns, false, NSString()), "b;c"},
      {stringURLWithoutAnchor(url("file:///a#b")), "file:///a"},
      {fileSystemPathPOSIXStyle(url("file:///a;b/c")), "/a;b/c"},
      {fileSystemPathPOSIXStyle(url("http://h/a")), "-"},
      {fileSystemPathHFSStyle(url("file:///a/b")), "Root:a:b"},
      {baseDirectory(url("mailto:a/b")), "-"},
      {pathWithParamsAndQuery(url("mailto:a?b#c")), "-"},
      {pathWithParamsAndQueryAndFragment(url("mailto:a?b#c")), "-"},
      {pathRelativeToDirectory(url("http://h/a/b/"), u"/a/c"_ns, false, u"index.html"_ns), "../b/index.html"},
  };
  for (const auto &[found, expected] : cases) EXPECT_EQ(shown(found), expected);
  EXPECT_EQ(numberOfQueryParams(one), 3u);
  EXPECT_TRUE(containsQueryParamNamed(one, u"y"_ns) && !containsQueryParamNamed(one, u"z"_ns));
  EXPECT_FALSE(queryParams(url("http://h/")));
  EXPECT_TRUE(isBaseDirectory(url("http://h")) && isBaseDirectory(url("http://h/a/")));
  EXPECT_FALSE(isBaseDirectory(url("http://h/a")) || isBaseDirectory(url("http://h/a/?b")) ||
               isBaseDirectory(NSURL()));
  EXPECT_TRUE(isBaseDirectory(url("file:///a;b/")));
  for (const auto string : {"http://h/a;b/", "http://h/a/#b", "file:///a", "mailto:a/"})
    EXPECT_FALSE(isBaseDirectory(url(string))) << string;
}

TEST(FileReferences, FollowFiles) {
  const TemporaryFolder folder;
  const NSURL file = NSURL::fileURLWithPath(folder.write("a;b%", ""));
  FSRef ref;
  ASSERT_TRUE(getFSRef(file, &ref));
  EXPECT_EQ(URLWithFSRef(ref), file);
  std::filesystem::rename(folder.path() / "a;b%", folder.path() / "c");
  EXPECT_EQ(URLWithFSRef(ref), NSURL::fileURLWithPath(folder.string("c")));
  EXPECT_FALSE(getFSRef(file, &ref) || getFSRef(url("http://h/"), &ref) || getFSRef(NSURL(), nullptr));
  std::filesystem::remove(folder.path() / "c");
  EXPECT_FALSE(URLWithFSRef(ref));
  ASSERT_TRUE(getFSRef(NSURL::fileURLWithPath(folder.string("")), &ref));
  EXPECT_EQ(shown(URLWithFSRef(ref)), shown(NSURL::fileURLWithPath(folder.string(""), true)));
}

TEST(InvertedPaths, StayInTheirFolder) {
  const auto inverted = [](std::string_view string, const NSString &extension = {},
                           std::uint32_t maxComponents = 0, std::uint32_t maxUnits = 0) {
    return shown(
        invertedPathRelativeToDirectory(url(string), u"/d"_ns, true, extension, maxComponents, maxUnits, true));
  };
  EXPECT_EQ(inverted("http://WWW.Example.org/A/b;jsessionid=1?C=d"), "/d/org/example/www/a/b?c=d");
  EXPECT_EQ(inverted("http://h/a/", u"html"_ns), "/d/h/a/index.html");
  EXPECT_EQ(inverted("http://h/a/b/c/d", {}, 3), "/d/h/a/b-c-d");
  EXPECT_EQ(inverted("http://h/abcdef/%F0%9F%98%80x", {}, 0, 1), "/d/h/a");
  EXPECT_EQ(inverted("mailto:a@b"), "-");
  EXPECT_EQ(inverted("file:a"), "-");
  EXPECT_EQ(shown(invertedPathRelativeToDirectory(url("http://H/A;jsessionid=1/B?C=d"), u"/d"_ns)),
            "/d/h/A;jsessionid=1/B?C=d");
  EXPECT_EQ(inverted("http://h/a/b/c", {}, 4), "/d/h/a/b/c");
  EXPECT_EQ(inverted("http://h/abc", {}, 0, 3), "/d/h/abc");
  EXPECT_EQ(inverted("http:///a"), "-");
  for (const auto string : {"http://h/../../x", "http://h/%2e%2e/%2e%2e%2fx", "http://../a",
                            "http://h/a%2f..%2f..%2fx", "http://h/..?/../x"}) {
    const std::filesystem::path path(inverted(string));
    EXPECT_TRUE(path.lexically_normal().native().starts_with("/d/")) << path;
  }
  EXPECT_LE(std::filesystem::path(inverted("http://h/" + std::string(4000, 'a'), u"html"_ns))
                .filename()
                .native()
                .size(),
            255u);

  const NSURL one = url("http://www.h.org/x");
  const NSDate date =
      NSDate{NSDate::dateWithUTC(2006, 12, 31, 23, 59, 59).timeIntervalSinceReferenceDate + 0.125};
  EXPECT_EQ(shown(directoryInPath(one, u"/d"_ns, date, true)), "/d/org.h.www/2006-12-31 23-59-59-125");
  const NSDate next = NSDate{NSDate::dateWithUTC(2007, 1, 1, 0, 0, 0).timeIntervalSinceReferenceDate + 0.123};
  EXPECT_EQ(shown(directoryInPath(one, u"/d"_ns, next, true)), "/d/org.h.www/2007-01-01 00-00-00-123");
  EXPECT_EQ(shown(directoryInPath(one, u"/d"_ns, NSDate{NAN}, true)), "-");
  EXPECT_EQ(shown(directoryInPath(one, u"/d"_ns, date, false)), "/d/org.h.www/2006-12-31 23-59-59");
  EXPECT_EQ(shown(directoryInPath(url("file:///a"), u"/d"_ns, date, false)), "-");
}

TEST(InvertedPaths, TakeTimeByTheLengthOfTheURL) {
  for (const std::uint32_t maxComponents : {0u, 2u}) {
    expectLinearTime(12000, [=](std::size_t components) {
      std::string string = "http://h";
      for (std::size_t i = 0; i < components; ++i) string += "/a";
      const NSString path =
          invertedPathRelativeToDirectory(url(string), u"/d"_ns, true, {}, maxComponents, 0, true);
      EXPECT_GT(path.length(), 255u);
    });
  }
}

}  // namespace
}  // namespace nimbo
