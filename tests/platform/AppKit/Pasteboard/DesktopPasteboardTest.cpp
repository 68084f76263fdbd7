// SPDX-License-Identifier: Apache-2.0
//
// The general pasteboard and other programs of the desktop, both ways.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <future>
#include <iterator>
#include <string>
#include <utility>

#include "platform/AppKit/Pasteboard/NSPasteboard.hpp"
#include "tests/support/DesktopSession.hpp"

namespace nimbo {
namespace {

using enum DesktopSession::Kind;
using Types = std::vector<NSString>;

NSData dataOf(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

std::string fileOf(const std::string &name) {
  std::ifstream stream(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class DesktopPasteboard : public testing::TestWithParam<DesktopSession::Kind> {
 protected:
  void SetUp() override {
    std::string missing;
    session_ = DesktopSession::start(GetParam(), &missing);
    if (!session_ && !missing.empty()) GTEST_SKIP() << missing << " is not installed";
    ASSERT_TRUE(session_) << "the desktop does not start";
  }
  std::string read(const NSString &type) const {
    NSError error;
    const NSData data = pasteboard_.dataForType(type, &error);
    return data ? std::string(data.view()) : "nil: " + error.localizedFailureReason.UTF8String();
  }

  const NSPasteboard pasteboard_ = NSPasteboard::generalPasteboard();
  std::unique_ptr<DesktopSession> session_;
};
INSTANTIATE_TEST_SUITE_P(Desktops, DesktopPasteboard, testing::Values(X11, Wayland),
                         testing::PrintToStringParamName());

TEST_P(DesktopPasteboard, ReadsWhatOthersCopy) {
  NSError error;
  EXPECT_TRUE(pasteboard_.isAvailable(&error)) << error.localizedFailureReason.UTF8String();
  EXPECT_EQ(read(NSStringPboardType), "nil: the clipboard is empty");
  constexpr char kURL[] = "http://example.org/a?b=c";
  const struct {
    const char *target;
    std::string bytes;
    NSString type;
    std::string read;
  } kCases[] = {
      {"UTF8_STRING", "gr\xc3\xbc\xc3\x9f", NSStringPboardType, "gr\xc3\xbc\xc3\x9f"},
      {"text/plain; charset=UTF-8", "\xe2\x82\xac", NSStringPboardType, "\xe2\x82\xac"},
      {"text/html", std::string("\xff\xfe<\0b\0>\0\xe4\0", 10), NSHTMLPboardType, "<b>\xc3\xa4"},
      {"text/uri-list", "# two\r\n" + std::string(kURL) + "\r\nfile:///b\r\n", NSURLPboardType, kURL},
      {"text/csv", "a,b\n", NSTabularTextPboardType, "a,b\n"},
      {"text/rtf", "{\\rtf1 a}", NSRTFPboardType, "{\\rtf1 a}"},
      {"image/x-pict", "\1", NSPICTPboardType, "\1"},
      {"application/pdf", "%PDF-", NSPDFPboardType, "%PDF-"},
      {"application/postscript", "%!PS", NSPostScriptPboardType, "%!PS"},
      {"text/vcard", "BEGIN:VCARD", NSVCardPboardType, "BEGIN:VCARD"},
      {"application/x-own", std::string("\0\1\xff", 3), u"application/x-own"_ns, std::string("\0\1\xff", 3)},
      {"UTF8_STRING", "", NSStringPboardType, ""},
      {"application/x-own", "", u"application/x-own"_ns, ""},
      {"text/uri-list", "", NSURLPboardType, "nil: the clipboard holds no data of this type"},
      {"application/x-own", "a", NSStringPboardType, "nil: the clipboard holds no data of this type"},
  };
  for (const auto &one : kCases) {
    session_->copy(one.bytes, one.target);
    EXPECT_EQ(read(one.type), one.read) << one.target;
  }
  EXPECT_EQ(pasteboard_.types(), Types{u"application/x-own"_ns});
}

TEST_P(DesktopPasteboard, OffersSeveralTypesAtOnce) {
  NSError error;
  const NSString own = u"CorePasteboardFlavorType 0x75726C6E"_ns;
  ASSERT_TRUE(pasteboard_.declareTypes({NSStringPboardType, NSURLPboardType, own, NSHTMLPboardType}, &error))
      << error.localizedFailureReason.UTF8String();
  EXPECT_EQ(read(NSHTMLPboardType), "nil: the clipboard holds no data of this type");
  EXPECT_FALSE(pasteboard_.setString(u"a"_ns, NSRTFPboardType, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType);
  EXPECT_TRUE(pasteboard_.setString(u"http://a/"_ns, NSURLPboardType));
  EXPECT_TRUE(pasteboard_.setString(u"T\u00fc"_ns, own));
  EXPECT_TRUE(pasteboard_.setString(u"\u20ac \u00fc"_ns, NSStringPboardType));
  const struct {
    const char *target;
    std::string bytes;
  } kCases[] = {{"text/plain;charset=utf-8", "\xe2\x82\xac \xc3\xbc"},
                {"UTF8_STRING", "\xe2\x82\xac \xc3\xbc"},
                {"TEXT", "\xe2\x82\xac \xc3\xbc"},
                {"STRING", "? \xfc"},
                {"text/uri-list", "http://a/\r\n"},
                {"text/x-moz-url", std::string("h\0t\0t\0p\0:\0/\0/\0a\0/\0\n\0T\0\xfc\0", 24)},
                {"CorePasteboardFlavorType 0x75726C6E", "T\xc3\xbc"}};
  for (const auto &one : kCases) EXPECT_EQ(session_->paste(one.target), one.bytes) << one.target;
  EXPECT_NE(session_->offered().find("text/html"), std::string::npos);
  EXPECT_EQ(read(u"public.url-name"_ns), "T\xc3\xbc");
  const Types types = pasteboard_.types();
  ASSERT_GT(types.size(), 2);
  EXPECT_EQ(types[0], NSStringPboardType);
  EXPECT_EQ(types[1], NSURLPboardType);
  // What has been set may be set again, and what is declared next replaces it all.
  EXPECT_TRUE(pasteboard_.setString(u"new"_ns, NSStringPboardType));
  EXPECT_EQ(session_->paste("UTF8_STRING"), "new");
  EXPECT_TRUE(pasteboard_.declareTypes({u"own type"_ns}));
  EXPECT_TRUE(pasteboard_.setData(dataOf("x"), u"own type"_ns));
  EXPECT_EQ(pasteboard_.types(), Types{u"own type"_ns});
  EXPECT_TRUE(pasteboard_.setData(NSData::data(), u"own type"_ns));
  EXPECT_EQ(read(u"own type"_ns), "");
  EXPECT_TRUE(pasteboard_.declareTypes({}));
  EXPECT_EQ(read(u"own type"_ns), "nil: the clipboard is empty");
  EXPECT_TRUE(session_->isGone("quiverleaf-pasteboard"));
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), 0) << "a process that has ended is left";
}

TEST_P(DesktopPasteboard, OffersAsManyTypesAsItSays) {
  constexpr char kNames[] = "the clipboard takes no types of such names",
                 kSum[] = "the names of these types are too long for the clipboard";
  const struct {
    std::size_t count, nameBytes;
    std::string last;
    const char *reason;
  } kCases[] = {{2048, 31, std::string(31, 'z'), ""},
                {2048, 31, std::string(32, 'z'), kSum},
                {32, 2047, std::string(2047, 'z'), ""},
                {100, 2048, "last", kSum},
                {2048, 2048, "last", kSum},
                {2049, 9, "last", "these are too many types for the clipboard"},
                {1, 0, std::string(2048, 'a'), ""},
                {1, 0, std::string(2049, 'a'), kNames},
                {1, 0, "a\nb", kNames},
                {1, 0, "", kNames}};
  for (const auto &[count, nameBytes, lastName, reason] : kCases) {
    Types types;
    for (std::size_t i = 1; i < count; ++i) {
      std::string name = "type " + std::to_string(i);
      name.resize(nameBytes, '-');
      types.push_back(NSString::stringWithUTF8String(name));
    }
    const NSString last = NSString::stringWithUTF8String(lastName);
    types.push_back(last);
    const Types before = pasteboard_.types();
    NSError error;
    EXPECT_EQ(pasteboard_.declareTypes(types, &error), *reason == '\0');
    EXPECT_EQ(error.localizedFailureReason.UTF8String(), reason);
    if (error) {
      EXPECT_EQ(pasteboard_.types(), before);
      continue;
    }
    EXPECT_TRUE(pasteboard_.setString(u"a"_ns, last));
    EXPECT_EQ(pasteboard_.types(), types);
    EXPECT_EQ(read(last), "a");
  }
}

TEST_P(DesktopPasteboard, OffersTheBestOfTypesThatMeanTheSame) {
  const NSString apple = u"Apple URL pasteboard type"_ns, name = u"public.url-name"_ns;
  const struct {
    NSString given;
    const char *value, *list, *lines;
  } kCases[] = {{u"public.url"_ns, "a:p", "a:p\r\n", "a:p\nT"},
                {apple, "a:a", "a:a\r\n", "a:a\nT"},
                {u"public.url"_ns, "a:q", "a:a\r\n", "a:a\nT"},
                {NSURLPboardType, "a:n", "a:n\r\n", "a:n\nT"}};
  ASSERT_TRUE(pasteboard_.declareTypes({apple, u"public.url"_ns, NSURLPboardType, name}));
  ASSERT_TRUE(pasteboard_.setString(u"T"_ns, name));
  for (const auto &[given, value, list, lines] : kCases) {
    ASSERT_TRUE(pasteboard_.setData(dataOf(value), given));
    EXPECT_EQ(read(given), value);
    EXPECT_EQ(session_->paste("text/uri-list"), list) << value;
    std::string read = session_->paste("text/x-moz-url");
    std::erase(read, '\0');
    EXPECT_EQ(read, lines) << value;
  }
}

TEST_P(DesktopPasteboard, ReadsItsOwnFromWhateverTypeIsGiven) {
  const NSString url = u"public.url"_ns, name = u"public.url-name"_ns, mime = u"text/plain; charset=utf-8"_ns;
  constexpr char kNothing[] = "nil: the clipboard holds no data of this type";
  const struct {
    Types declared;
    std::vector<std::pair<NSString, const char *>> given;
    NSString type;
    const char *read;
  } kCases[] = {
      {{NSURLPboardType, url}, {}, NSURLPboardType, kNothing},
      {{NSURLPboardType, url}, {{url, "a:p"}}, NSURLPboardType, "a:p"},
      {{NSURLPboardType, url}, {{NSURLPboardType, "a:n"}}, url, "a:n"},
      {{NSStringPboardType, mime}, {{NSStringPboardType, "s"}}, mime, "s"},
      {{mime, NSStringPboardType}, {{NSStringPboardType, "s"}}, mime, "s"},
      {{mime, NSStringPboardType}, {{mime, "s"}}, NSStringPboardType, "s"},
      {{NSURLPboardType, name}, {{NSURLPboardType, "a:n"}}, name, kNothing},
      {{NSURLPboardType, name}, {{NSURLPboardType, "a:n"}, {name, ""}}, name, ""},
      {{NSURLPboardType, name}, {{name, ""}}, name, ""},
      {{name, url}, {{url, ""}, {name, "T"}}, url, ""},
      {{name, url}, {{url, "a:p"}, {name, "T"}, {url, ""}}, url, ""},
      {{name, url}, {{url, ""}, {name, "T"}}, NSURLPboardType, kNothing},
  };
  for (const auto &[declared, given, type, result] : kCases) {
    ASSERT_TRUE(pasteboard_.declareTypes(declared));
    for (const auto &[one, value] : given) ASSERT_TRUE(pasteboard_.setData(dataOf(value), one));
    EXPECT_EQ(read(type), result) << declared.front().UTF8String();
  }
}

TEST_P(DesktopPasteboard, KeepsTextThatHasManyNamesOnce) {
  constexpr std::size_t kBytes = 32 << 20;
  ASSERT_TRUE(pasteboard_.declareTypes({NSStringPboardType}));
  ASSERT_TRUE(pasteboard_.setData(dataOf(std::string(kBytes, 'a')), NSStringPboardType));
  EXPECT_EQ(session_->paste("TEXT").size(), kBytes);
  EXPECT_EQ(session_->paste("STRING").size(), kBytes);
  const auto owners = session_->processes("quiverleaf-pasteboard");
  ASSERT_EQ(owners.size(), 1);
  std::ifstream stream("/proc/" + std::to_string(owners.front()) + "/statm");
  std::size_t allPages = 0, residentPages = 0;
  stream >> allPages >> residentPages;
  EXPECT_LT(residentPages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)), 3 * kBytes);
}

TEST_P(DesktopPasteboard, KeepsWhatWasCopiedWhenTheProcessHasEnded) {
  const pid_t writer = ::fork();
  if (writer == 0) {
    const bool isWritten = pasteboard_.declareTypes({NSStringPboardType, NSHTMLPboardType}) &&
                           pasteboard_.setString(u"kept"_ns, NSStringPboardType);
    ::_exit(isWritten ? EXIT_SUCCESS : EXIT_FAILURE);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(writer, &status, 0), writer);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(session_->paste("UTF8_STRING"), "kept");
  EXPECT_EQ(read(NSStringPboardType), "kept");
  // Nobody is there to give what has been declared alone; on Wayland, he cannot say so.
  EXPECT_EQ(read(NSHTMLPboardType), GetParam() == X11 ? "nil: the clipboard holds no data of this type" : "");
  session_->copy("other", "UTF8_STRING");
  EXPECT_TRUE(session_->isGone("quiverleaf-pasteboard"));
}

TEST_P(DesktopPasteboard, MovesLargeContentsBothWays) {
  std::string bytes(20 << 20, '\0');
  std::uint32_t state = 1;
  for (char &byte : bytes) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
  session_->copy(bytes, "application/x-own");
  EXPECT_TRUE(read(u"application/x-own"_ns) == bytes);
  ASSERT_TRUE(pasteboard_.declareTypes({u"application/x-own"_ns}));
  ASSERT_TRUE(pasteboard_.setData(dataOf(bytes), u"application/x-own"_ns));
  auto second = std::async(std::launch::async, [this] { return session_->paste("application/x-own"); });
  EXPECT_TRUE(session_->paste("application/x-own") == bytes);
  EXPECT_TRUE(second.get() == bytes);
}

TEST_P(DesktopPasteboard, LetsOthersWaitForData) {
  ASSERT_TRUE(pasteboard_.declareTypes({NSStringPboardType}));
  auto pasted = std::async(std::launch::async, [this] { return session_->paste("UTF8_STRING"); });
  EXPECT_TRUE(session_->isRunning(GetParam() == X11 ? "xclip" : "wl-paste"));
  ASSERT_TRUE(pasteboard_.setString(u"late"_ns, NSStringPboardType));
  EXPECT_EQ(pasted.get(), "late");
}

TEST_P(DesktopPasteboard, AnswersByItsDeadline) {
  session_->copy("there", "UTF8_STRING");
  pasteboard_.setDeadline(Deadline::after(0));
  NSError errors[4];
  EXPECT_FALSE(pasteboard_.isAvailable(&errors[0]));
  EXPECT_TRUE(pasteboard_.types(&errors[1]).empty());
  EXPECT_FALSE(pasteboard_.dataForType(NSStringPboardType, &errors[2]));
  EXPECT_FALSE(pasteboard_.declareTypes({NSStringPboardType}, &errors[3]));
  for (const NSError &error : errors) EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit);
  pasteboard_.setDeadline(Deadline::never());
  EXPECT_EQ(read(NSStringPboardType), "there");
}

TEST_P(DesktopPasteboard, TellsWhenSomebodyElseHasCopied) {
  const std::int64_t count = pasteboard_.changeCount();
  ASSERT_TRUE(pasteboard_.declareTypes({NSStringPboardType}));
  EXPECT_EQ(pasteboard_.changeCount(), count + 1);
  session_->copy("other", "UTF8_STRING");
  EXPECT_TRUE(session_->isGone("quiverleaf-pasteboard"));
  NSError error;
  EXPECT_FALSE(pasteboard_.setString(u"a"_ns, NSStringPboardType, &error));
  EXPECT_EQ(error.localizedFailureReason,
            u"another program has copied something since, or the desktop is gone"_ns);
  EXPECT_EQ(read(NSStringPboardType), "other");
}

TEST_P(DesktopPasteboard, ConvertsPicturesAndRichText) {
  const std::string png = fileOf(EXAMPLES_FOLDER "/leaf.png");
  ASSERT_FALSE(png.empty());
  session_->copy(png, "image/png");
  EXPECT_EQ(pasteboard_.types(), (Types{u"Apple PNG pasteboard type"_ns, NSTIFFPboardType}));
  const std::string tiff = read(NSTIFFPboardType);
  ASSERT_TRUE(tiff.starts_with("II*") || tiff.starts_with("MM")) << tiff.substr(0, 80);
  ASSERT_TRUE(pasteboard_.declareTypes({NSTIFFPboardType}));
  ASSERT_TRUE(pasteboard_.setData(dataOf(tiff), NSTIFFPboardType));
  EXPECT_EQ(session_->paste("image/tiff"), tiff);
  EXPECT_TRUE(session_->paste("image/png").starts_with("\x89PNG"));
}

TEST(DesktopPasteboardWithoutDesktop, SaysWhatIsMissing) {
  const NSPasteboard pasteboard = NSPasteboard::generalPasteboard();
  const TemporaryFolder folder;
  const struct {
    const char *display, *waylandDisplay, *reason;
  } kCases[] = {
      {"", "", "there is no desktop: neither WAYLAND_DISPLAY nor DISPLAY is set"},
      {":4711", "", "the X server that DISPLAY names does not answer, or refuses this user"},
      {":4711", "wayland-4711", "the X server that DISPLAY names does not answer, or refuses this user"},
      {"", "wayland-4711",
       "the Wayland compositor that WAYLAND_DISPLAY names does not answer, and DISPLAY is not set"}};
  ::setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  for (const auto &one : kCases) {
    ::setenv("DISPLAY", one.display, 1);
    ::setenv("WAYLAND_DISPLAY", one.waylandDisplay, 1);
    NSError errors[5];
    EXPECT_FALSE(pasteboard.isAvailable(&errors[0]));
    EXPECT_TRUE(pasteboard.types(&errors[1]).empty());
    EXPECT_FALSE(pasteboard.dataForType(NSStringPboardType, &errors[2]));
    EXPECT_FALSE(pasteboard.declareTypes({NSStringPboardType}, &errors[3]));
    EXPECT_FALSE(pasteboard.stringForType(NSStringPboardType, &errors[4]));
    for (const NSError &error : errors) EXPECT_EQ(error.localizedFailureReason.UTF8String(), one.reason);
    EXPECT_FALSE(pasteboard.setString(u"a"_ns, NSStringPboardType));
  }
}

}  // namespace
}  // namespace nimbo
