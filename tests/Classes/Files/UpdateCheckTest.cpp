// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/UpdateCheck.hpp"

#include <gtest/gtest.h>

#include "tests/support/LoopbackServer.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kUpToDate = "Your software is up-to-date";
constexpr std::string_view kOffer =
    "A New Version is Available|A new version of App is available (2.0). Would you like to download the new "
    "version "
    "now?|Download|Cancel";

/// Writes down what is shown and opened, and presses one button.
class FakeDesktop final : public DesktopServices {
 public:
  explicit FakeDesktop(std::optional<std::size_t> pressed) : pressed_(pressed) {}

  std::optional<std::size_t> runAlert(const DesktopAlert &alert) override {
    told += alert.title.UTF8String();
    if (alert.message) told += "|" + alert.message.UTF8String();
    for (const NSString &button : alert.buttons) told += "|" + button.UTF8String();
    return alert.buttons.empty() ? std::nullopt : pressed_;
  }
  bool openURL(const NSURL &url) override {
    opened += url.absoluteString().UTF8String();
    return true;
  }

  std::string told;
  std::string opened;

 private:
  std::optional<std::size_t> pressed_;
};

TEST(UpdateCheck, OffersWhatTheListHasForTheProgram) {
  constexpr const char *kInformation = "{ CFBundleName = App; CFBundleVersion = \"1.0b\"; }";
  const struct {
    const char *list;
    const char *information = kInformation;
    std::optional<std::size_t> pressed = 0;
    bool isOffered = true;
    std::string_view told = kOffer;
    std::string_view opened = "http://h/d?a=1";
  } cases[] = {
      {"{ App = \"2.0\"; Download = \"http://h/d?a=1\"; }"},
      {"{ App = \"2.0\"; Download = \"http://h/d\"; }", kInformation, 1, true, kOffer, ""},
      {"{ App = \"2.0\"; Download = \"http://h/d\"; }", kInformation, std::nullopt, true, kOffer, ""},
      {"{ App = \"2.0\"; Download = \"file:///bin/sh\"; }", kInformation, 0, true, kOffer, ""},
      {"{ App = \"2.0\"; Download = \"no URL\"; }", kInformation, 0, true, kOffer, ""},
      {"{ App = \"2.0\"; }", kInformation, 0, true, "", ""},
      {"{ App = \"2.0\"; Download = (x); }", kInformation, 0, true, "", ""},
      {"{ App = \"1.0B\"; Download = \"http://h/d\"; }", kInformation, 0, false, kUpToDate, ""},
      {"{ App = \"1.0\u00c4\"; Download = \"http://h/d\"; }",
       "{ CFBundleName = App; CFBundleVersion = \"1.0\u00e4\"; }", 0, false, kUpToDate, ""},
      {"{ Other = \"2.0\"; Download = \"http://h/d\"; }", kInformation, 0, false, kUpToDate, ""},
      {"{ App = (\"2.0\"); Download = \"http://h/d\"; }", kInformation, 0, false, kUpToDate, ""},
      {"(App)", kInformation, 0, false, kUpToDate, ""},
      {"{ App = ", kInformation, 0, false, kUpToDate, ""},
      {"", kInformation, 0, false, kUpToDate, ""},
      {"{ App = \"2.0\"; Download = \"http://h/d\"; }", "{ CFBundleName = App; }", 0, false, kUpToDate, ""},
      {"{ App = \"2.0\"; Download = \"http://h/d\"; }", "{ CFBundleVersion = 1; }", 0, false, kUpToDate, ""},
      {"{ App = \"2.0\"; Download = \"http://h/d\"; }", "{ ", 0, false, kUpToDate, ""},
  };
  const TemporaryFolder folder;
  for (const auto &[list, information, pressed, isOffered, told, opened] : cases) {
    LoopbackServer server;
    server.answer("/Updates.plist", std::string("HTTP/1.0 200 OK\r\n\r\n") + list);
    folder.write("App/Contents/Info.plist", information);
    FakeDesktop desktop(pressed);
    const NSURL url = updateListOfHost(NSString::stringWithUTF8String(server.url("")));
    EXPECT_EQ((UpdateCheck{NSBundle(folder.string("App")), NSBundle(), url, 60, desktop}.run()), isOffered)
        << list;
    EXPECT_EQ(desktop.told, told) << list << information;
    EXPECT_EQ(desktop.opened, opened) << list;
  }
}

TEST(UpdateCheck, SpeaksTheUsersLanguage) {
  const TemporaryFolder folder;
  LoopbackServer server;
  server.answer("/Updates.plist", "HTTP/1.0 200 OK\r\n\r\n{ App = \"%s%@%n\"; Download = x; }");
  folder.write("App/Contents/Info.plist", "{ CFBundleName = App; CFBundleVersion = 1; }");
  // In UTF-16, as many tables are.
  const std::string pairs =
      "\"A new version of %@ is available (%@). Would you like to download the new version now?\" = \"%@ neu: "
      "%@?\";\n"
      "Cancel = Abbrechen;";
  std::string units = "\xff\xfe";
  for (const char c : pairs) units += {c, '\0'};
  folder.write("Library/Contents/Resources/de.lproj/Bundle.strings", units);
  FakeDesktop desktop(1);
  const NSURL url = NSURL::URLWithString(NSString::stringWithUTF8String(server.url("/Updates.plist")));
  ASSERT_EQ(::setenv("LANGUAGE", "de_AT", 1), 0);
  ASSERT_EQ(::setenv("LC_ALL", "C.UTF-8", 1), 0);
  EXPECT_TRUE((
      UpdateCheck{NSBundle(folder.string("App")), NSBundle(folder.string("Library")), url, 60, desktop}.run()));
  ::unsetenv("LANGUAGE");
  ::unsetenv("LC_ALL");
  EXPECT_EQ(desktop.told, "A New Version is Available|App neu: %s%@%n?|Download|Abbrechen");
}

TEST(UpdateCheck, AsksTheHostSecurelyUnlessToldOtherwise) {
  const std::pair<NSString, const char *> cases[] = {
      {u"example.org"_ns, "https://example.org/Updates.plist"},
      {u"example.org:8080"_ns, "https://example.org:8080/Updates.plist"},
      {u"http://[::1]:80"_ns, "http://[::1]:80/Updates.plist"},
      {u"HTTPS://h"_ns, "HTTPS://h/Updates.plist"},
      {u"a b"_ns, nullptr},
      {u""_ns, nullptr},
      {NSString(), nullptr}};
  for (const auto &[host, list] : cases) {
    const NSURL url = updateListOfHost(host);
    EXPECT_EQ(url ? url.absoluteString().UTF8String() : "nil", list ? list : "nil");
  }
}

}  // namespace
}  // namespace nimbo
