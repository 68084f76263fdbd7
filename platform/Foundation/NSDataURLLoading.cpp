// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSDataURLLoading.hpp"

#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/URLs/HTTPTransfers.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

constexpr int kFirstSuccess = 200;
constexpr int kFirstRedirect = 300;

bool hasScheme(const NSURL &url, std::string_view scheme) {
  return equalsASCIINoCase(url.scheme().view(), scheme);
}

}  // namespace

NSData dataWithContentsOfURL(const NSURL &url, const URLLoadingLimits &limits, NSError *error) {
  const auto fail = [error](std::string_view reason, ErrorCode code = ErrorCode::other) {
    setError(error, code, reason);
    return NSData();
  };
  if (!HTTPTransfers::isAvailable()) return fail("libcurl is missing");
  HTTPTransfers transfers(
      {.maximumBytes = limits.maximumBytes, .maximumConnections = 1, .mayUseProxies = true, .mayConnect = {}});
  NSURL asked = url;
  for (int redirects = 0; redirects <= limits.redirects; ++redirects) {
    const bool isSecure = hasScheme(asked, "https");
    if (!isSecure && (!hasScheme(asked, "http") || hasScheme(url, "https")))
      return fail("its scheme is not loaded", ErrorCode::unsupportedType);
    if (!transfers.start(0, asked)) return fail("it cannot be asked for");
    std::optional<HTTPAnswer> answer = transfers.next(limits.deadline);
    if (!answer) return fail("the server took too long", ErrorCode::timeLimit);
    if (const NSURL redirect = NSURL::URLWithString(answer->redirect)) {
      asked = redirect;
      continue;
    }
    if (!answer->failure.empty()) return fail(answer->failure);
    if (answer->statusCode < kFirstSuccess || answer->statusCode >= kFirstRedirect)
      return fail("the server answered " + std::to_string(answer->statusCode));
    return NSData::dataWithBytes(answer->body.data(), answer->body.size());
  }
  return fail("it is redirected too often");
}

}  // namespace nimbo
