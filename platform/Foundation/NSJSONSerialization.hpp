// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// JSON by RFC 8259 as values. Any number of threads may read at once.
///
///     NSError error;
///     const id value = NSJSONSerialization::JSONObjectWithString(text, &error);
///     if (!value) NSLog(error.localizedFailureReason);
///     const NSString title = value.dictionary().objectForKey(u"title"_ns).string();
struct NSJSONSerialization {
  /// How many arrays and objects may stand inside of each other.
  static constexpr std::uint32_t kMaximumDepth = 512;

  /// The value that the text is, whatever its kind; a byte order mark may precede it. Whole numbers that 64
  /// bits hold are integers, other numbers reals, which must be finite, null is the null object; of equal keys
  /// the last one counts, and escapes may make lone surrogates. Nil when the text is no JSON; `*error` then
  /// says why: `damaged`, `incomplete` when it is empty, `tooLarge` beyond the depth.
  static id JSONObjectWithString(const NSString &text, NSError *error = nullptr);
};

}  // namespace nimbo
