// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <limits>

#include "platform/CSS/CSSSelectorReader.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo::detail {

namespace {

/// Takes the digits off the front; the largest number for more than fit.
std::optional<std::int32_t> takeDigits(std::u16string_view &text) {
  std::int64_t value = 0;
  const std::size_t size = text.size();
  while (!text.empty() && isASCIIDigit(text.front())) {
    value =
        std::min<std::int64_t>(value * 10 + digitValue(text.front()), std::numeric_limits<std::int32_t>::max());
    text.remove_prefix(1);
  }
  return text.size() < size ? std::optional(static_cast<std::int32_t>(value)) : std::nullopt;
}

/// 1 or -1 when a sign was taken off the front, else 0.
std::int32_t takeSign(std::u16string_view &text) {
  if (text.empty() || (text.front() != u'+' && text.front() != u'-')) return 0;
  const std::int32_t sign = text.front() == u'-' ? -1 : 1;
  text.remove_prefix(1);
  return sign;
}

}  // namespace

std::optional<NthPlaces> nthPlaces(std::u16string_view text) {
  text = trimmed(text, isASCIIWhiteSpace<unichar>);
  if (equalsASCIINoCase(text, "odd")) return NthPlaces{2, 1};
  if (equalsASCIINoCase(text, "even")) return NthPlaces{2, 0};
  const std::int32_t sign = takeSign(text) < 0 ? -1 : 1;
  const std::optional<std::int32_t> number = takeDigits(text);
  if (text.empty()) return number ? std::optional(NthPlaces{0, sign * *number}) : std::nullopt;
  if (toASCIILower(text.front()) != u'n') return std::nullopt;
  text.remove_prefix(1);
  NthPlaces places{sign * number.value_or(1), 0};
  text = trimmed(text, isASCIIWhiteSpace<unichar>);
  if (text.empty()) return places;
  const std::int32_t offsetSign = takeSign(text);
  text = trimmed(text, isASCIIWhiteSpace<unichar>);
  const std::optional<std::int32_t> offset = takeDigits(text);
  if (offsetSign == 0 || !offset || !text.empty()) return std::nullopt;
  places.offset = offsetSign * *offset;
  return places;
}

}  // namespace nimbo::detail
