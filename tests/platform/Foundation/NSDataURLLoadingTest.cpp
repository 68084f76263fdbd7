// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSDataURLLoading.hpp"

#include <gtest/gtest.h>

#include "tests/support/LoopbackServer.hpp"

namespace nimbo {
namespace {

NSURL url(std::string_view string) {
  return NSURL::URLWithString(NSString::stringWithUTF8String(string));
}

TEST(NSDataURLLoading, AnswersWholeSuccessfulContentWithinItsLimits) {
  LoopbackServer server, closed;
  server.answer("/a", "HTTP/1.0 200 OK\r\n\r\na\r\n");
  server.answer("/empty", "HTTP/1.0 204 No Content\r\n\r\n");
  server.answer("/moved", "HTTP/1.0 302 Found\r\nLocation: a\r\n\r\nno");
  server.answer("/loop", "HTTP/1.0 302 Found\r\nLocation: loop\r\n\r\n");
  server.answer("/file", "HTTP/1.0 302 Found\r\nLocation: file:///etc/passwd\r\n\r\n");
  server.answer("/choice", "HTTP/1.0 300 Multiple Choices\r\n\r\nlist");
  server.answer("/gone", "HTTP/1.0 404 Gone\r\n\r\nlist");
  server.answer("/cut", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nlist");
  server.answer("/huge", "HTTP/1.0 200 OK\r\n\r\n" + std::string(200'000, 'x'));
  server.answer("/largest", "HTTP/1.0 200 OK\r\n\r\n" + std::string(100'000, 'x'));
  server.answer("/noise", "not http at all\r\n\r\n");
  const struct {
    std::string url;
    const char *content;
    ErrorCode code = ErrorCode::none;
  } cases[] = {
      {server.url("/a"), "a\r\n"},
      {server.url("/empty"), ""},
      {server.url("/moved"), "a\r\n"},
      {server.url("/loop"), nullptr, ErrorCode::other},
      {server.url("/file"), nullptr, ErrorCode::unsupportedType},
      {server.url("/choice"), nullptr, ErrorCode::other},
      {server.url("/gone"), nullptr, ErrorCode::other},
      {server.url("/cut"), nullptr, ErrorCode::other},
      {server.url("/huge"), nullptr, ErrorCode::other},
      {server.url("/noise"), nullptr, ErrorCode::other},
      {"http://127.0.0.1:1/", nullptr, ErrorCode::other},
      {"https://127.0.0.1:1/", nullptr, ErrorCode::other},
      {"file:///etc/passwd", nullptr, ErrorCode::unsupportedType},
      {"", nullptr, ErrorCode::unsupportedType},
  };
  const URLLoadingLimits limits{.deadline = Deadline::after(60), .maximumBytes = 100'000};
  for (const auto &[address, content, code] : cases) {
    NSError error;
    const NSData data = dataWithContentsOfURL(url(address), limits, &error);
    EXPECT_EQ(data, content ? NSData::dataWithBytes(content, std::string_view(content).size()) : NSData())
        << address;
    EXPECT_EQ(error.errorCode(), code) << address << ": " << error.localizedFailureReason.UTF8String();
  }
  EXPECT_EQ(server.requests("/loop"), limits.redirects + 1);
  for (const char *field : {"\r\nUser-Agent: Quiverleaf\r\n", "\r\nAccept-Encoding: "})
    EXPECT_NE(server.head("/a").find(field), std::string::npos) << server.head("/a");
  EXPECT_EQ(dataWithContentsOfURL(url(server.url("/largest")), limits).length(), limits.maximumBytes);
}

TEST(NSDataURLLoading, WaitsNoLongerThanItsDeadline) {
  LoopbackServer server;
  server.answer("/then", "HTTP/1.0 302 Found\r\nLocation: /never\r\n\r\n");
  for (const char *path : {"/never", "/then"}) {
    NSError error;
    EXPECT_FALSE(dataWithContentsOfURL(url(server.url(path)), {.deadline = Deadline::after(0.3)}, &error));
    EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit) << path;
  }
  EXPECT_EQ(server.requests("/never"), 2);
}

}  // namespace
}  // namespace nimbo
