// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSURL.hpp"

#include <gtest/gtest.h>

#include <cstdlib>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "platform/Foundation/NSBundleLocalization.hpp"
#include "platform/Foundation/URLs/HostNames.hpp"
#include "tests/support/TemporaryFolder.hpp"
#include "tests/support/URLTexts.hpp"

namespace nimbo {
namespace {

TEST(NSURL, ResolvesReferencesAsTheStandardsExamples) {
  const NSURL base = url("http://a/b/c/d;p?q");
  // Each reference stands before its target.
  std::istringstream cases(
      R"(g:h g:h  g http://a/b/c/g  ./g http://a/b/c/g  g/ http://a/b/c/g/  /g http://a/g  //g http://g
      ?y http://a/b/c/d;p?y  g?y http://a/b/c/g?y  #s http://a/b/c/d;p?q#s  g#s http://a/b/c/g#s
      g?y#s http://a/b/c/g?y#s  ;x http://a/b/c/;x  g;x http://a/b/c/g;x  g;x?y#s http://a/b/c/g;x?y#s
      . http://a/b/c/  ./ http://a/b/c/  .. http://a/b/  ../ http://a/b/  ../g http://a/b/g
      ../.. http://a/  ../../ http://a/  ../../g http://a/g  ../../../g http://a/g
      ../../../../g http://a/g  /./g http://a/g  /../g http://a/g  g. http://a/b/c/g.  .g http://a/b/c/.g
      g.. http://a/b/c/g..  ..g http://a/b/c/..g  ./../g http://a/b/g  ./g/. http://a/b/c/g/
      g/./h http://a/b/c/g/h  g/../h http://a/b/c/h  g;x=1/./y http://a/b/c/g;x=1/y
      g;x=1/../y http://a/b/c/y  g?y/./x http://a/b/c/g?y/./x  g?y/../x http://a/b/c/g?y/../x
      g#s/./x http://a/b/c/g#s/./x  g#s/../x http://a/b/c/g#s/../x  http:g http:g
      //u@[2001:DB8::1]:8/g/.. http://u@[2001:DB8::1]:8/)");
  for (std::string reference, target; cases >> reference >> target;) {
    const NSURL resolved = NSURL::URLWithString(text(reference), base);
    EXPECT_EQ(shown(resolved.absoluteString()), target) << reference;
    EXPECT_EQ(resolved.relativeString(), text(reference));
    EXPECT_EQ(static_cast<bool>(resolved.baseURL()),
              !resolved.absoluteURL().baseURL() && resolved != resolved.absoluteURL());
  }
  const std::string_view oddBases[][3] = {
      {"http://h///a/b", "c", "http://h///a/c"},
      {"http://h///a/b?q", "#s", "http://h///a/b?q#s"},
      {"http://h//a/b", "../../c", "http://h/c"},
      {"http://h", "g", "http://h/g"},
      {"http://h:/a/./b?q#f", "?y", "http://h:/a/./b?y"},
      {"http://h/./b?q#f", "", "http://h/./b?q"},
      {"file:/x", "./", "file:/"},
      {"x:/a//b", "..", "x:/a/"},
      {"x:/a/b", "..//c", "x:/.//c"},
      {"mailto:a", "../b", "mailto:b"},
      {"x:a/b", "../../c", "x:/c"},
  };
  for (const auto &[given, reference, target] : oddBases)
    EXPECT_EQ(shown(NSURL::URLWithString(text(reference), url(given)).absoluteString()), target) << given;
  EXPECT_FALSE(NSURL::URLWithString(u"g"_ns, url("b/c")));
  EXPECT_EQ(NSURL::URLWithString(u"g"_ns, NSURL()), url("g"));
}

TEST(NSURL, TakesURLsApart) {
  struct {
    std::string_view string;
    /// Scheme, specifier, user, password, host, path, parameters, query, fragment.
    std::vector<std::string> parts;
    int port = -1;
  } const cases[] = {
      {"HTTP://u:p:q@h.org:8080/a%20b/c;d;e?f?g#h/i?j",
       {"HTTP", "//u:p:q@h.org:8080/a%20b/c;d;e?f?g#h/i?j", "u", "p:q", "h.org", "/a b/c", "d;e", "f?g",
        "h/i?j"},
       8080},
      {"http://h", {"http", "//h", "-", "-", "h", "", "-", "-", "-"}},
      {"http://h/?#", {"http", "//h/?#", "-", "-", "h", "/", "-", "", ""}},
      {"http://u@h:/a/", {"http", "//u@h:/a/", "u", "-", "h", "/a", "-", "-", "-"}},
      {"http://[2001:db8::1]:65535/",
       {"http", "//[2001:db8::1]:65535/", "-", "-", "2001:db8::1", "/", "-", "-", "-"},
       65535},
      {"http://h:65536/", {"http", "//h:65536/", "-", "-", "h", "/", "-", "-", "-"}},
      {"file:///x/%C3%A4", {"file", "///x/%C3%A4", "-", "-", "-", "/x/\u00e4", "-", "-", "-"}},
      {"http://h/%e9", {"http", "//h/%e9", "-", "-", "h", "/%e9", "-", "-", "-"}},
      {"mailto:a@b?subject=x", {"mailto", "a@b?subject=x", "-", "-", "-", "-", "-", "subject=x", "-"}},
      {"mailto:a;b", {"mailto", "a;b", "-", "-", "-", "-", "-", "-", "-"}},
      {"a/b?c", {"-", "a/b?c", "-", "-", "-", "a/b", "-", "c", "-"}},
      {"http://..../", {"http", "//..../", "-", "-", "....", "/", "-", "-", "-"}},
      {"x-1+.://@:/?/?@:%2f#", {"x-1+.", "//@:/?/?@:%2f#", "-", "-", "-", "/", "-", "/?@:%2f", ""}},
      {"//u;%3a:@h;%41,", {"-", "//u;%3a:@h;%41,", "u;%3a", "", "h;%41,", "", "-", "-", "-"}},
      {"./a:b/c:d@", {"-", "./a:b/c:d@", "-", "-", "-", "./a:b/c:d@", "-", "-", "-"}},
      {"http://[v1.a:b]:7", {"http", "//[v1.a:b]:7", "-", "-", "v1.a:b", "", "-", "-", "-"}, 7},
  };
  for (const auto &[string, parts, port] : cases) {
    const NSURL one = url(string);
    const std::vector<NSString> found = {
        one.scheme(), one.resourceSpecifier(), one.user(),  one.password(), one.host(),
        one.path(),   one.parameterString(),   one.query(), one.fragment()};
    for (std::size_t i = 0; i < parts.size(); ++i)
      EXPECT_EQ(shown(found[i]), parts[i]) << string << " part " << i;
    EXPECT_EQ(one.port() ? *one.port() : -1, port) << string;
    EXPECT_EQ(one.absoluteString(), text(string));
  }
  EXPECT_FALSE(NSURL().resourceSpecifier() || NSURL().user() || NSURL().password() || NSURL().host() ||
               NSURL().parameterString() || NSURL().query() || NSURL().fragment() || NSURL().port());
  EXPECT_FALSE(NSURL().scheme() || NSURL().path() || NSURL().absoluteURL() || NSURL().isFileURL());
}

TEST(NSURL, RefusesWhatIsNoURL) {
  for (const std::string_view string : {"",
                                        " ",
                                        "http://h/a b",
                                        "http://h/%",
                                        "http://h/%4",
                                        "http://h/%zz",
                                        "http://h/\"",
                                        "http://h/|",
                                        "http://h/[",
                                        "1a:b",
                                        "http://h:x/",
                                        "http://[::1",
                                        "http://[h]/",
                                        "http://a@b@c/",
                                        "http://h/#a#b",
                                        "http://h/\t",
                                        "http://\u00e9/",
                                        "http://h/<>",
                                        ":a",
                                        "a%:b",
                                        "1:",
                                        "http://h%2/",
                                        "http://u%@h/",
                                        "http://h?%a",
                                        "http://h#%",
                                        "http://h\x7f",
                                        "a:b@[::1]",
                                        "http://[::1]x/",
                                        "http://h/\\"})
    EXPECT_FALSE(url(string)) << string;
  EXPECT_FALSE(NSURL::URLWithString(NSString()));
  EXPECT_FALSE(NSURL::URLWithString(u"http://h/\0"_ns) || NSURL::URLWithString(u"http://h/\xd800"_ns));
  EXPECT_FALSE(url(std::string(1 << 20, '%')));
  EXPECT_FALSE(url("http://h/" + std::string(1 << 24, 'a')));
  EXPECT_FALSE(url("http://h/" + std::string(1 << 20, '/')));
  const std::string half(1 << 23, 'a');
  EXPECT_FALSE(NSURL::URLWithString(text(half), url("http://h/" + half + "/")));
  EXPECT_EQ(url("http://h/" + std::string(1 << 20, 'a')).path().length(), (1u << 20) + 1);
}

TEST(NSURL, StandardizesOnlyPaths) {
  const std::string_view cases[][2] = {
      {"http://h/a/./b/../c", "http://h/a/c"},
      {"http://h/../../a/..", "http://h/"},
      {"HTTP://H/%7e?../a#./b", "HTTP://H/%7e?../a#./b"},
      {"mailto:a/../b", "mailto:a/../b"},
      {"x:/a/..//h", "x:/.//h"},
      {"a/../b", "a/../b"},
      {"file:///a/../b", "file:///b"},
  };
  for (const auto &[before, after] : cases)
    EXPECT_EQ(shown(url(before).standardizedURL().absoluteString()), after);
}

TEST(NSURL, NamesFilesWhateverTheirBytes) {
  const TemporaryFolder folder;
  for (const std::string_view name : {"plain", "a b;c?d#e%41", "\u00e4", "caf\xe9", "~", "a:b", "[x]"}) {
    const NSString path = folder.write(name, "");
    const NSURL file = NSURL::fileURLWithPath(path);
    EXPECT_TRUE(file.isFileURL() && !file.absoluteString().view().ends_with(u'/'));
    EXPECT_EQ(file.path(), path) << name;
    EXPECT_EQ(NSURL::URLWithString(file.absoluteString()).path(), path);
  }
  std::filesystem::create_directory(folder.path() / "d");
  EXPECT_TRUE(NSURL::fileURLWithPath(folder.string("d")).absoluteString().view().ends_with(u"/d/"));
  for (const NSString &path : {u"/no"_ns, u"/no/"_ns})
    EXPECT_EQ(NSURL::fileURLWithPath(path, true), url("file:///no/"));
  EXPECT_EQ(shown(NSURL::fileURLWithPath(u"x y"_ns, false).path()),
            (std::filesystem::current_path() / "x y").native());
  for (const NSString &path : {NSString(), NSString::string(), u"/a\0b"_ns, u"/\xd800"_ns})
    EXPECT_FALSE(NSURL::fileURLWithPath(path));
}

TEST(HostNames, BecomeASCII) {
  const std::string_view cases[][2] = {
      {"B\u00dcCHER.example", "xn--bcher-kva.example"},
      {"Ex_ample..org", "Ex_ample..org"},
      {"\u4f8b\u3048\u3002jp", "xn--r8jz45g.jp"},
      {"stra\u00dfe.de", "xn--strae-oqa.de"},
  };
  for (const auto &[name, ascii] : cases) EXPECT_EQ(shown(ASCIIHostName(text(name))), ascii);
  EXPECT_FALSE(
      ASCIIHostName(NSString::stringWithCharacters(std::u16string(kMaximumHostNameUnits + 1, u'\u00e4'))));
  EXPECT_FALSE(ASCIIHostName(u"\xd800.org"_ns));
}

TEST(HostNames, BecomeReadable) {
  const std::string_view cases[][2] = {
      {"xn--bcher-kva.example", "b\u00fccher.example"},
      {"a.XN--STRAE-OQA.de", "a.stra\u00dfe.de"},
      {"Ex_ample.org", "Ex_ample.org"},
      {"B\u00fccher.example", "b\u00fccher.example"},
      {"xn--\u00e4.org", "-"},
      {"xn--99999999.org", "-"},
  };
  for (const auto &[name, readable] : cases) EXPECT_EQ(shown(UnicodeHostName(text(name))), readable);
}

TEST(NSBundle, LooksTextsUpInTheUsersLanguages) {
  const TemporaryFolder folder;
  folder.write("Contents/Resources/de.lproj/Localizable.strings", "/* Status */ \"Gone\" = \"Weg\";");
  const NSBundle bundle(folder.string(""));
  folder.write("Contents/Resources/de.lproj/Marked.strings", "\xef\xbb\xbf\"Gone\" = \"Fort\";");
  ::setenv("LC_ALL", "de_AT.UTF-8", 1);
  EXPECT_EQ(localizedStringForKey(bundle, u"Gone"_ns, NSString::string()), u"Weg"_ns);
  EXPECT_EQ(localizedStringForKey(bundle, u"OK"_ns, NSString::string()), u"OK"_ns);
  EXPECT_EQ(localizedStringForKey(bundle, u"OK"_ns, u"x"_ns), u"x"_ns);
  EXPECT_EQ(localizedStringForKey(bundle, u"Gone"_ns, NSString::string(), u"Marked"_ns), u"Fort"_ns);
  const std::string line = "\"Gone\" = \"Weg\";", limit(1 << 24, ' ');
  folder.write("Contents/Resources/de.lproj/Large.strings", limit.substr(line.size()) + line);
  folder.write("Contents/Resources/de.lproj/TooLarge.strings", limit.substr(line.size() - 1) + line);
  EXPECT_EQ(localizedStringForKey(bundle, u"Gone"_ns, NSString(), u"Large"_ns), u"Weg"_ns);
  EXPECT_EQ(localizedStringForKey(bundle, u"Gone"_ns, NSString(), u"TooLarge"_ns), u"Gone"_ns);
  // Tables that others' tools write are in UTF-16, with a byte order mark or without one.
  const std::pair<std::string, std::string_view> tables[] = {
      {"Little", "\xff\xfe"}, {"Big", "\xfe\xff"}, {"Plain", ""}};
  for (const auto &[table, mark] : tables) {
    std::string bytes(mark);
    for (const unichar unit : u"// Stra\u00dfe\n\"Gone\" = \"Fu\u00dfweg\";\n"_ns.view())
      for (const int shift : {table == "Big" ? 8 : 0, table == "Big" ? 0 : 8})
        bytes += static_cast<char>(unit >> shift);
    folder.write("Contents/Resources/pt-BR.lproj/" + table + ".strings", bytes);
    ::setenv("LC_ALL", "pt_BR.UTF-8", 1);
    EXPECT_EQ(localizedStringForKey(bundle, u"Gone"_ns, NSString(), NSString::stringWithUTF8String(table)),
              u"Fu\u00dfweg"_ns)
        << table;
  }
  ::unsetenv("LC_ALL");
}

}  // namespace
}  // namespace nimbo
