// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A set of the code units U+0000 to U+FFFF. The platform's sets are made from Unicode's general categories at
/// each call: keep what you need. Surrogates are in none of them. A set never
/// changes, and any thread may read it.
///
///     static const NSCharacterSet letters = NSCharacterSet::letterCharacterSet();
///     letters.characterIsMember(u'é');  // true
///     letters.characterIsMember(u'1');  // false
class NSCharacterSet {
 public:
  /// How many bytes a bitmap has: a bit for each unit.
  static constexpr std::size_t kBitmapBytes = 8192;
  /// Code unit `c` is a member when bit `c & 7` of byte `c >> 3` is set.
  using BitmapRepresentation = std::array<std::uint8_t, kBitmapBytes>;

  /// Letters and marks: L* and M*.
  static NSCharacterSet letterCharacterSet();
  /// Lowercase letters: Ll.
  static NSCharacterSet lowercaseLetterCharacterSet();
  /// Uppercase and titlecase letters: Lu and Lt.
  static NSCharacterSet uppercaseLetterCharacterSet();
  /// Decimal digits: Nd.
  static NSCharacterSet decimalDigitCharacterSet();
  /// Letters, marks and numbers: L*, M* and N*.
  static NSCharacterSet alphanumericCharacterSet();
  /// Horizontal blanks: Zs and U+0009.
  static NSCharacterSet whitespaceCharacterSet();
  /// All white space: Z*, U+0009 to U+000D and U+0085.
  static NSCharacterSet whitespaceAndNewlineCharacterSet();

  /// Whether the unit is in the set.
  bool characterIsMember(unichar c) const noexcept { return bitmap_[c >> 3] >> (c & 7) & 1; }
  /// The set's bitmap; borrowed from the set.
  const BitmapRepresentation &bitmapRepresentation() const noexcept NIMBO_LIFETIMEBOUND { return bitmap_; }

 private:
  NSCharacterSet() = default;
  static NSCharacterSet setOfCategories(std::uint32_t categories);
  void addCharacter(unichar c) noexcept {
    bitmap_[c >> 3] = static_cast<std::uint8_t>(bitmap_[c >> 3] | 1u << (c & 7));
  }

  BitmapRepresentation bitmap_{};
};

inline namespace Bitmap {

/// The first of the `kBitmapBytes` bytes of the set's bitmap; borrowed from the set.
inline const std::uint8_t *bitmap(const NSCharacterSet &set NIMBO_LIFETIMEBOUND) noexcept {
  return set.bitmapRepresentation().data();
}

}  // namespace Bitmap
}  // namespace nimbo
