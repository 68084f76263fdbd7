// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Status.hpp"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/Foundation/NSBundleLocalization.hpp"

namespace nimbo {
inline namespace NSURLNimboExtensions {

namespace {

constexpr std::int32_t kTemporaryStatusCodes[] = {307, 408, 500, 502, 503, 504, 507, 509, 510};

struct ReasonPhrase {
  std::int32_t code;
  std::u16string_view phrase;
};

constexpr ReasonPhrase kReasonPhrases[] = {
    {100, u"Continue"},
    {101, u"Switching Protocols"},
    {200, u"OK"},
    {201, u"Created"},
    {202, u"Accepted"},
    {203, u"Non-Authoritative Information"},
    {204, u"No Content"},
    {205, u"Reset Content"},
    {206, u"Partial Content"},
    {207, u"Multi-Status"},
    {226, u"IM Used"},
    {300, u"Multiple Choices"},
    {301, u"Moved Permanently"},
    {302, u"Moved Temporarily"},
    {303, u"See Other"},
    {304, u"Not Modified"},
    {305, u"Use Proxy"},
    {307, u"Temporary Redirect"},
    {400, u"Bad Request"},
    {401, u"Authorization Required"},
    {402, u"Payment Required"},
    {403, u"Forbidden"},
    {404, u"Not Found"},
    {405, u"Method Not Allowed"},
    {406, u"Not Acceptable"},
    {407, u"Proxy Authentication Required"},
    {408, u"Request Timeout"},
    {409, u"Conflict"},
    {410, u"Gone"},
    {411, u"Length Required"},
    {412, u"Precondition Failed"},
    {413, u"Request Entity Too Large"},
    {414, u"Request-URI Too Long"},
    {415, u"Unsupported Media Type"},
    {416, u"Requested Range Not Satisfiable"},
    {417, u"Expectation Failed"},
    {422, u"Unprocessable Entity"},
    {423, u"Locked"},
    {424, u"Failed Dependency"},
    {426, u"Upgrade Required"},
    {500, u"Internal Server Error"},
    {501, u"Not Implemented"},
    {502, u"Bad Gateway"},
    {503, u"Service Unavailable"},
    {504, u"Gateway Timeout"},
    {505, u"HTTP Version Not Supported"},
    {507, u"Insufficient Storage"},
    {509, u"Bandwidth Limit Exceeded"},
    {510, u"Disconnected"},
};
static_assert(std::size(kReasonPhrases) == 49);

}  // namespace

bool isHTTPStatusCodeOkay(std::int32_t code) {
  return code < 300 && (code < 201 || code > 206);
}

bool isHTTPStatusCodeTemporaryError(std::int32_t code) {
  return std::ranges::find(kTemporaryStatusCodes, code) != std::end(kTemporaryStatusCodes);
}

NSString messageForHTTPError(std::int32_t code) {
  const ReasonPhrase *const found = std::ranges::find(kReasonPhrases, code, &ReasonPhrase::code);
  if (found == std::end(kReasonPhrases)) return NSString();
  return localizedStringForKey(NSBundle::mainBundle(), NSString::stringWithCharacters(found->phrase),
                               NSString::string());
}

bool isTemporaryNSURLError(const NSError &error) {
  if (!error) return false;
  switch (error.code) {
    case NSURLErrorBadServerResponse:
    case NSURLErrorNotConnectedToInternet:
    case NSURLErrorNetworkConnectionLost:
    case NSURLErrorTimedOut:
      return true;
    default:
      return false;
  }
}

std::int32_t HTTPStatusCodeForNSURLError(const NSError &error) {
  if (!error) return 0;
  switch (error.code) {
    case NSURLErrorNoPermissionsToReadFile:
      return 403;
    case NSURLErrorFileDoesNotExist:
      return 404;
    case NSURLErrorZeroByteResource:
      return 204;
    case NSURLErrorUserAuthenticationRequired:
    case NSURLErrorUserCancelledAuthentication:
      return 401;
    case NSURLErrorRedirectToNonExistentLocation:
    case NSURLErrorHTTPTooManyRedirects:
      return 302;
    case NSURLErrorTimedOut:
      return 408;
    default:
      return 0;
  }
}

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
