// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Loading/WebResourceLoader.hpp"

#include <gtest/gtest.h>

#include <string>

#include "platform/WebKit/Loading/DataURL.hpp"
#include "tests/support/LoopbackServer.hpp"
#include "tests/support/SilentNames.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

using detail::DataURL;
using detail::WebLoadLimits;
using detail::WebResourceLoader;

NSURL url(std::string_view string) {
  return NSURL::URLWithString(NSString::stringWithUTF8String(string));
}

/// Refuses the paths that hold "refused", and what it is told to refuse at the connection.
class Gate final : public WebResourceLoadDelegate {
 public:
  NSURLRequest webViewWillSendRequest(const WebView &, std::uint32_t, const NSURLRequest &request,
                                      const NSURLResponse &redirect, const WebDataSource &) override {
    asked.push_back((redirect ? std::to_string(redirect.statusCode) + " " : "") +
                    request.URL.path().UTF8String());
    return asked.back().find("refused") == std::string::npos ? request : NSURLRequest();
  }
  bool mayConnectToAddress(const sockaddr &) override { return mayConnect; }

  std::vector<std::string> asked;
  bool mayConnect = true;
};

/// Says nothing about addresses.
class OpenGate final : public WebResourceLoadDelegate {
 public:
  NSURLRequest webViewWillSendRequest(const WebView &, std::uint32_t, const NSURLRequest &request,
                                      const NSURLResponse &, const WebDataSource &) override {
    return request;
  }
};

std::string loaded(WebResourceLoader &loader, std::string_view string) {
  const NSURL one = url(string);
  const WebResource resource = loader.load({&one, 1}).front();
  return resource ? std::string(resource.data().view()) : "nil";
}

TEST(DataURL, HoldsTypeAndBytes) {
  const std::string_view cases[][4] = {
      {"data:,A%20brief%20note", "text/plain", "-", "A brief note"},
      {"data:text/html;charset=utf-8,%3Cp%3E", "text/html", "utf-8", "<p>"},
      {"DATA:image/PNG;base64,aGFsbG8=", "image/png", "-", "hallo"},
      {"data:image/svg+xml;charset=%22x-y%22;base64,aGFsbG8#x", "image/svg+xml", "x-y", "hallo"},
      {"data:image/png%20;%20BASE64%20,aGFsbG8", "image/png", "-", "hallo"},
      {"data:;base64,aGFs%0AbG8%3D", "text/plain", "-", "hallo"},
      {"data:;base64;x=y,aGFsbG8", "text/plain", "-", "aGFsbG8"},
      {"data:base64,aGFsbG8", "text/plain", "-", "aGFsbG8"},
      {"data:text;x=y;CharSet='z';charset=w,a", "text/plain", "z", "a"},
      {"data:text/html;charset=;charset=%22%22;charset=%22z,a", "text/html", "\"z", "a"},
      {"data:text/html;charset=%22,a,b", "text/html", "\"", "a,b"},
  };
  for (const auto &[string, type, charset, bytes] : cases) {
    const auto data = DataURL::ofURL(url(string));
    ASSERT_TRUE(data) << string;
    EXPECT_EQ(data->type.MIMEType.UTF8String(), type);
    EXPECT_EQ(data->type.charset ? data->type.charset.UTF8String() : "-", charset);
    EXPECT_EQ(data->data.view(), bytes);
  }
  for (const std::string_view other : {"data:text/html", "http://a/,b"})
    EXPECT_FALSE(DataURL::ofURL(url(other)));
}

TEST(WebResourceLoader, LoadsFilesDataAndHTTPTogether) {
  LoopbackServer server;
  server.answer("/sheet", "HTTP/1.0 200 OK\r\nContent-Type: text/css; charset=\"latin1\"\r\n\r\np{}");
  server.answer("/moved", "HTTP/1.0 302 Found\r\nLocation: /sheet\r\n\r\n");
  server.answer("/gone", "HTTP/1.0 404 Not Found\r\n\r\nnothing here");
  server.answer("/loop", "HTTP/1.0 301 Moved\r\nLocation: /loop\r\n\r\n");
  server.answer("/lost", "HTTP/1.0 302 Found\r\nLocation: http://[\r\n\r\nnothing here");
  server.answer("/file", "HTTP/1.0 301 Moved\r\nLocation: file:///etc/hostname\r\n\r\n");
  const TemporaryFolder folder;
  const NSString file = folder.write("a b.txt", "of a file");
  const NSURL urls[] = {
      url(server.url("/moved")), NSURL::fileURLWithPath(file), url("data:,x"),
      url(server.url("/gone")),  url(server.url("/loop")),     url(server.url("/file")),
      url("ftp://127.0.0.1/x"),  url("file:///no/such/file"),  NSURL(),
      url("file:///dev/zero"),   url(server.url("/lost")),     url("http:/" + server.url("/sheet").substr(7)),
  };
  WebResourceLoader loader({}, {Deadline::after(20)}, {});
  const std::vector<WebResource> resources = loader.load(urls);
  EXPECT_EQ(resources[0].data().view(), "p{}");
  EXPECT_EQ(resources[0].URL().absoluteString().UTF8String(), server.url("/sheet"));
  EXPECT_EQ(resources[0].MIMEType().UTF8String(), "text/css");
  EXPECT_EQ(resources[0].textEncodingName().UTF8String(), "latin1");
  EXPECT_EQ(resources[1].data().view(), "of a file");
  EXPECT_EQ(resources[2].data().view(), "x");
  for (std::size_t index = 3; index < std::size(urls); ++index) EXPECT_FALSE(resources[index]) << index;
  EXPECT_EQ(loader.failures().size(), 9U);
}

TEST(WebResourceLoader, AsksTheDelegateOfEachRequestAndRedirect) {
  LoopbackServer server;
  server.answer("/a", "HTTP/1.0 200 OK\r\n\r\na");
  server.answer("/a?open", "HTTP/1.0 200 OK\r\n\r\na");
  server.answer("/away", "HTTP/1.0 307 Over There\r\nLocation: /refused\r\n\r\n");
  server.answer("/refused", "HTTP/1.0 200 OK\r\n\r\nno");
  const auto gate = makeShared<Gate>();
  WebResourceLoader loader(gate, {Deadline::after(20)}, {});
  EXPECT_EQ(loaded(loader, server.url("/a")), "a");
  EXPECT_EQ(loaded(loader, server.url("/away")), "nil");
  EXPECT_EQ(loaded(loader, server.url("/refused")), "nil");
  EXPECT_EQ(gate->asked, (std::vector<std::string>{"/a", "/away", "307 /refused", "/refused"}));
  EXPECT_EQ(server.requests("/refused"), 0);
  server.answer("/idn",
                "HTTP/1.0 302 Found\r\nLocation: http://b\xC3\xBC"
                "cher.example/refused\r\n\r\n");
  EXPECT_EQ(loaded(loader, server.url("/idn")), "nil");
  EXPECT_EQ(gate->asked.back(), "302 /refused");
  ASSERT_EQ(loader.failures().size(), 3U);
  EXPECT_EQ(loader.failures()[0].URL.path().UTF8String(), "/refused");
  WebResourceLoader open(makeShared<OpenGate>(), {Deadline::after(20)}, {});
  EXPECT_EQ(loaded(open, server.url("/a?open")), "a");
  gate->mayConnect = false;
  EXPECT_EQ(loaded(loader, server.url("/a", "localhost")), "nil");
  EXPECT_EQ(server.requests("/a"), 1);
}

TEST(WebResourceLoader, KeepsToItsLimits) {
  LoopbackServer server;
  for (const char *path : {"/large", "/large?2", "/large?3"})
    server.answer(path, "HTTP/1.0 200 OK\r\n\r\n" + std::string(5000, 'x'));
  const WebLoadLimits limits{.resources = 3, .bytesOfResource = 1000, .bytesInAll = 1500};
  WebResourceLoader loader({}, {Deadline::after(20)}, {}, limits);
  EXPECT_EQ(loaded(loader, server.url("/large")), std::string(1000, 'x'));
  EXPECT_EQ(loaded(loader, server.url("/large")), std::string(1000, 'x'));
  EXPECT_EQ(loaded(loader, server.url("/large#fragment")), std::string(1000, 'x'));
  EXPECT_EQ(server.requests("/large"), 1);
  EXPECT_EQ(loaded(loader, server.url("/large?2")), std::string(500, 'x'));
  EXPECT_EQ(loaded(loader, server.url("/large?3")), "nil");
  EXPECT_EQ(loaded(loader, "data:,x"), "nil");
  ASSERT_EQ(loader.failures().size(), 4U);
  EXPECT_EQ(loader.failures()[0].reason, "it is too large");
  EXPECT_EQ(loader.failures()[3].reason, "the page refers to too many parts");
  const NSURL known = url("http://name.invalid/");
  loader.provide(std::vector{WebResource::resourceWithData(NSData::dataWithBytes("at hand", 7), known, {})});
  EXPECT_EQ(loaded(loader, "http://name.invalid/"), "at hand");
  WebResourceLoader other({}, {Deadline::after(20)}, {});
  const NSURL none;
  other.provide(std::vector{WebResource::resourceWithData(NSData::dataWithBytes("x", 1), none, {})});
  EXPECT_FALSE(other.load({&none, 1}).front()) << "what has no URL is nothing's";
}

TEST(WebResourceLoader, SharesTheBytesAmongPartsOfOneTime) {
  LoopbackServer server;
  std::vector<NSURL> urls;
  for (const char *path : {"/1", "/2", "/3", "/4"}) {
    server.answer(path, "HTTP/1.0 200 OK\r\n\r\n" + std::string(1000, 'x'));
    urls.push_back(url(server.url(path)));
  }
  WebResourceLoader loader({}, {Deadline::after(20)}, {}, {.bytesOfResource = 1000, .bytesInAll = 1500});
  std::size_t bytes = 0;
  for (const WebResource &resource : loader.load(urls)) bytes += resource.data().length();
  EXPECT_EQ(bytes, 1500U);
  EXPECT_EQ(loader.failures().size(), 3U);
}

TEST(WebResourceLoader, WaitsForNoNameBeyondTheDeadline) {
  WebResourceLoader loader({}, {Deadline::after(1)}, {});
  std::vector<NSURL> urls;
  for (int host = 0; host < 20; ++host)
    urls.push_back(url("http://" + std::to_string(host) + ".silent.invalid/"));
  loader.load(urls);
  EXPECT_EQ(endedSilentLookups(), 0);
  EXPECT_EQ(loader.failures().size(), urls.size());
}

TEST(WebResourceLoader, TakesWhatHasComeAtTheDeadline) {
  LoopbackServer server;
  server.answer("/begun", "HTTP/1.0 200 OK\r\nContent-Length: 100\r\n\r\nthe beginning");
  WebResourceLoader loader({}, {Deadline::after(1)}, {});
  const NSURL urls[] = {url(server.url("/never")), url(server.url("/begun"))};
  const std::vector<WebResource> resources = loader.load(urls);
  EXPECT_FALSE(resources[0]);
  EXPECT_EQ(resources[1].data().view(), "the beginning");
  EXPECT_EQ(loader.failures().size(), 2U);
  EXPECT_EQ(loaded(loader, server.url("/begun?late")), "nil");
}

}  // namespace
}  // namespace nimbo
