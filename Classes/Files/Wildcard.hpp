// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// A pattern for names, with "*", "?", "[a-z]", "[!a-z]" and "\", as shells have it; case does not matter. Any
/// thread may ask.
///
///     const Wildcard pages(u"page-?.htm*"_ns);
///     pages.matches(u"Page-1.HTML"_ns);  // true
///     pages.matches(u"page-12.html"_ns);  // false
class Wildcard {
 public:
  /// Takes the pattern; nil matches nothing.
  explicit Wildcard(const NSString &pattern);

  /// Whether the whole name matches. Time is linear in the pattern's length and at most quadratic in the
  /// name's.
  bool matches(const NSString &name) const;

 private:
  NSString pattern_;
};

}  // namespace nimbo
