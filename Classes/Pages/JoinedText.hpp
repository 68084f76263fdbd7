// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>
#include <utility>

#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The values of several tags as one text; nothing until there is the first. One thread uses it at a time.
///
///     JoinedText words;
///     words.join(u"a"), words.join(u"b");
///     std::move(words).string();  // "a b"
class JoinedText {
 public:
  /// Appends a value, behind the separator unless it is the first.
  void join(std::u16string_view value, std::u16string_view separator = u" ") {
    if (text_)
      text_->append(separator);
    else
      text_.emplace();
    text_->append(value);
  }
  /// Takes a value unless there is one.
  void joinFirst(std::u16string_view value) {
    if (!text_) join(value);
  }
  /// Whether there is a value.
  explicit operator bool() const noexcept { return text_.has_value(); }
  /// The values, without a copy; nil when there are none. It is not to be used afterwards.
  NSString string() && { return text_ ? std::move(*text_).string() : NSString(); }

 private:
  std::optional<NSMutableString> text_;
};

}  // namespace nimbo
