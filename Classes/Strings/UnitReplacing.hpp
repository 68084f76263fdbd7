// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {

/// Writes `units`, with each occurrence of `replaced` replaced, to `result`, which must be empty. Writes
/// nothing and answers false when that changes nothing, when `replaced` is nil or empty, or `withString` nil.
bool replaceOccurrences(std::u16string_view units, const NSString &replaced, const NSString &withString,
                        bool caseSensitive, NSMutableString &result);

/// A predicate that tells which units are replaced when `character` is: none when it is replaced by itself.
class IsReplaced {
 public:
  IsReplaced(unichar character, unichar withCharacter, bool caseSensitive);

  bool operator()(unichar c) const noexcept {
    return !isSame_ && (table_ ? table_[c] == character_ : c == character_);
  }

 private:
  unichar character_;
  bool isSame_;
  const unichar *table_ = nullptr;
};

}  // namespace nimbo
