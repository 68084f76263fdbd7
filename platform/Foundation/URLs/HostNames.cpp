// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/URLs/HostNames.hpp"

#include <unicode/uidna.h>

#include <algorithm>
#include <array>

#include "platform/Foundation/URLs/PercentEscapes.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

/// What a name may break that many names in use break, and that does no harm in a URL.
constexpr std::uint32_t kToleratedErrors = UIDNA_ERROR_EMPTY_LABEL | UIDNA_ERROR_LABEL_TOO_LONG |
                                           UIDNA_ERROR_DOMAIN_NAME_TOO_LONG | UIDNA_ERROR_LEADING_HYPHEN |
                                           UIDNA_ERROR_TRAILING_HYPHEN | UIDNA_ERROR_HYPHEN_3_4;

/// A label of n characters grows to at most "xn--" and some units for each of them.
constexpr std::int32_t kMaximumConvertedUnits = 16 * static_cast<std::int32_t>(kMaximumHostNameUnits);

using Conversion = decltype(&uidna_nameToASCII);

/// Nil when the name has no such form.
NSString converted(const NSString &host, Conversion convert) {
  if (host.length() > kMaximumHostNameUnits) return NSString();
  UErrorCode status = U_ZERO_ERROR;
  static const UIDNA *const idna =
      uidna_openUTS46(UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ | UIDNA_NONTRANSITIONAL_TO_ASCII |
                          UIDNA_NONTRANSITIONAL_TO_UNICODE,
                      &status);
  if (!idna) return NSString();
  status = U_ZERO_ERROR;
  std::array<unichar, kMaximumConvertedUnits> name;
  UIDNAInfo info = UIDNA_INFO_INITIALIZER;
  const std::int32_t length = convert(idna, host.characters(), static_cast<std::int32_t>(host.length()),
                                      name.data(), kMaximumConvertedUnits, &info, &status);
  if (U_FAILURE(status) || (info.errors & ~kToleratedErrors) != 0) return NSString();
  return NSString::stringWithCharacters(name.data(), static_cast<std::uint32_t>(length));
}

bool isASCII(const NSString &host) {
  return std::ranges::all_of(host.view(), [](unichar c) { return c < 0x80; });
}

/// Whether a label may stand for other characters, in any case.
bool hasEncodedLabel(const NSString &host) {
  const auto isEqual = [](unichar c, char16_t lower) { return (c | 0x20) == lower || c == lower; };
  const std::u16string_view prefix = u"xn--";
  const std::u16string_view units = host.view();
  return std::search(units.begin(), units.end(), prefix.begin(), prefix.end(), isEqual) != units.end();
}

/// Whether it has a character that ends a host in a URL, or may not be in one. Labels would take it in.
bool hasForbiddenCharacter(const NSString &host) {
  constexpr std::u16string_view kForbidden = u"#%/:<>?@[\\]^|\x7f";
  return std::ranges::any_of(
      host.view(), [&](unichar c) { return c <= u' ' || kForbidden.find(c) != std::u16string_view::npos; });
}

}  // namespace

NSString ASCIIHostName(const NSString &host) {
  if (isASCII(host)) return host;
  const NSString name = converted(host, uidna_nameToASCII);
  return name.length() == 0 || hasForbiddenCharacter(name) ? NSString() : name;
}

NSString hostWithoutEscapes(const NSString &host) {
  if (host.view().find(u'%') == std::u16string_view::npos) return host;
  const NSString decoded = NSString::stringWithUTF8String(bytesByReplacingPercentEscapes(host.UTF8String()));
  const auto isPlain = [](unichar c) {
    return c >= 0x80 || isASCIIAlphanumeric(c) ||
           std::u16string_view(u"-._~!$&'()*+,;=").find(c) != std::u16string_view::npos;
  };
  return decoded && std::ranges::all_of(decoded.view(), isPlain) ? decoded : host;
}

NSString UnicodeHostName(const NSString &host) {
  return isASCII(host) && !hasEncodedLabel(host) ? host : converted(host, uidna_nameToUnicode);
}

}  // namespace nimbo
