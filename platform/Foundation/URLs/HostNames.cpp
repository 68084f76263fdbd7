// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/URLs/HostNames.hpp"

#include <unicode/uidna.h>

#include <algorithm>
#include <array>

namespace nimbo {
namespace {

/// What a name may break that many names in use break, and that does no harm in a URL.
constexpr std::uint32_t kToleratedErrors = UIDNA_ERROR_EMPTY_LABEL | UIDNA_ERROR_LABEL_TOO_LONG |
                                           UIDNA_ERROR_DOMAIN_NAME_TOO_LONG | UIDNA_ERROR_LEADING_HYPHEN |
                                           UIDNA_ERROR_TRAILING_HYPHEN | UIDNA_ERROR_HYPHEN_3_4;

/// A label of n characters grows to at most "xn--" and some units for each of them.
constexpr std::int32_t kMaximumASCIIUnits = 16 * static_cast<std::int32_t>(kMaximumHostNameUnits);

}  // namespace

NSString ASCIIHostName(const NSString &host) {
  if (std::ranges::all_of(host.view(), [](unichar c) { return c < 0x80; })) return host;
  if (host.length() > kMaximumHostNameUnits) return NSString();
  UErrorCode status = U_ZERO_ERROR;
  static const UIDNA *const idna =
      uidna_openUTS46(UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ | UIDNA_NONTRANSITIONAL_TO_ASCII |
                          UIDNA_NONTRANSITIONAL_TO_UNICODE,
                      &status);
  if (!idna) return NSString();
  status = U_ZERO_ERROR;
  std::array<unichar, kMaximumASCIIUnits> name;
  UIDNAInfo info = UIDNA_INFO_INITIALIZER;
  const std::int32_t length =
      uidna_nameToASCII(idna, host.characters(), static_cast<std::int32_t>(host.length()), name.data(),
                        kMaximumASCIIUnits, &info, &status);
  if (U_FAILURE(status) || (info.errors & ~kToleratedErrors) != 0) return NSString();
  return NSString::stringWithCharacters(name.data(), static_cast<std::uint32_t>(length));
}

}  // namespace nimbo
