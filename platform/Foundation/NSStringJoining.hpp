// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <ranges>
#include <string_view>
#include <utility>

#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

namespace detail {

/// The units of a piece that is a string.
inline std::u16string_view viewOfPiece(const NSString &string NIMBO_LIFETIMEBOUND) {
  return string.view();
}
/// The units of a piece that is a mutable string.
inline std::u16string_view viewOfPiece(const NSMutableString &string NIMBO_LIFETIMEBOUND) {
  return string.view();
}
/// The units of a piece that is a view.
inline std::u16string_view viewOfPiece(std::u16string_view units) {
  return units;
}
/// The units of a piece that is a single one.
template <std::same_as<unichar> Unit>
std::u16string_view viewOfPiece(const Unit &unit NIMBO_LIFETIMEBOUND) {
  return {&unit, 1};
}

}  // namespace detail

/// The pieces with the separator between them, made with one allocation: a range of strings or of views of
/// units. Nil counts as empty; the result is never nil. More than `NSNotFound` units raise `std::length_error`.
/// Any thread may join.
///
///     const std::vector<NSString> labels = {u"www"_ns, u"example"_ns, u"org"_ns};
///     const NSString host = stringByJoining(labels, u".");  // "www.example.org"
template <std::ranges::forward_range Pieces>
NSString stringByJoining(const Pieces &pieces, std::u16string_view separator) {
  std::size_t length = 0;
  for (const auto &piece : pieces) length += detail::viewOfPiece(piece).size() + separator.size();
  NSMutableString result;
  result.reserve(length - std::min(length, separator.size()));
  bool isFirst = true;
  for (const auto &piece : pieces) {
    if (!std::exchange(isFirst, false)) result.append(separator);
    result.append(detail::viewOfPiece(piece));
  }
  return std::move(result).string();
}

/// The pieces, one behind the other, as above: strings, views of units and single units.
///
///     const NSString path = stringByConcatenating(u"/tmp"_ns, u'/', u"a"_ns, u".txt"sv);  // "/tmp/a.txt"
template <class... Pieces>
NSString stringByConcatenating(const Pieces &...pieces) {
  const std::u16string_view views[] = {detail::viewOfPiece(pieces)...};
  return stringByJoining(views, {});
}

}  // namespace nimbo
