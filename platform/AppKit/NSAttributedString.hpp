// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "platform/AppKit/TextAttributes.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Characters with the same attributes, up to an index.
struct AttributeRun {
  /// The index behind the last character; the run begins where the one before it ends.
  std::uint32_t end = 0;
  /// What they have in common.
  Interned<TextAttributes> attributes;

  /// Whether both are equal.
  friend bool operator==(const AttributeRun &, const AttributeRun &) = default;
};

namespace detail {

struct AttributedStringStorage : ReferenceCounted {
  AttributedStringStorage(NSString text, std::vector<AttributeRun> attributeRuns)
      : string(std::move(text)), runs(std::move(attributeRuns)) {}
  AttributedStringStorage(const AttributedStringStorage &) = delete;
  ~AttributedStringStorage();

  const NSString string;
  std::vector<AttributeRun> runs;
};

}  // namespace detail

/// Text with attributes: an immutable handle, one pointer wide. A default-made one is nil: it tests false, has
/// length 0, a nil string and equals only nil. Neighbouring runs differ, none is empty, and the last one ends
/// where the text ends.
///
/// A handle may be copied and read from any thread; one handle is changed by one.
///
///     NSMutableAttributedString builder;
///     builder.append(u"bold", bold);
///     builder.append(u" and not", plain);
///     const NSAttributedString text = std::move(builder).attributedString();
///     NSRange range;
///     text.attributesAtIndex(2, &range)->font.isBold();  // true, range is {0, 4}
class NSAttributedString {
 public:
  NSAttributedString() noexcept = default;
  /// Text of which all has the same attributes; nil for a nil string.
  explicit NSAttributedString(const NSString &string, const Interned<TextAttributes> &attributes = {});

  /// How many units the text has; 0 when nil.
  std::uint32_t length() const noexcept { return storage_ ? storage_->string.length() : 0; }
  /// The text; nil when this is.
  NSString string() const noexcept { return storage_ ? storage_->string : NSString(); }
  /// The runs, borrowed; none when nil or empty.
  std::span<const AttributeRun> runs() const noexcept NIMBO_LIFETIMEBOUND {
    return storage_ ? std::span<const AttributeRun>(storage_->runs) : std::span<const AttributeRun>();
  }
  /// The attributes of the character at `index`, which must be below the length; `*range` gets all of their
  /// run.
  Interned<TextAttributes> attributesAtIndex(std::uint32_t index, NSRange *range = nullptr) const;
  /// The part of the text in `range`, which is cut to its bounds; the receiver itself when that is all of it.
  NSAttributedString attributedSubstringFromRange(NSRange range) const;

  /// Whether any character has an attachment.
  bool containsAttachments() const noexcept;

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }
  /// Whether both share their storage (or are both nil).
  bool identicalTo(const NSAttributedString &other) const noexcept { return storage_ == other.storage_; }
  /// Whether texts and attributes are equal; nil equals only nil.
  bool operator==(const NSAttributedString &other) const;

 private:
  friend class NSMutableAttributedString;

  NSAttributedString(NSString string, std::vector<AttributeRun> runs);

  SharedPointer<detail::AttributedStringStorage> storage_;
};

/// Text with attributes that grows at its end; never nil. Becoming an `NSAttributedString` copies nothing. A
/// length above `NSNotFound` raises `std::length_error`. One thread uses it at a time.
///
///     NSMutableAttributedString builder;
///     builder.append(u"a", attributes);
///     builder.append(u"b", attributes);  // Still one run.
///     const NSAttributedString text = std::move(builder).attributedString();
class NSMutableAttributedString {
 public:
  /// An empty text.
  NSMutableAttributedString() noexcept = default;

  /// How many units there are.
  std::uint32_t length() const noexcept { return text_.length(); }
  /// The text, which is borrowed until it grows.
  std::u16string_view view() const noexcept NIMBO_LIFETIMEBOUND { return text_.view(); }
  /// The runs, borrowed until the text grows.
  std::span<const AttributeRun> runs() const noexcept NIMBO_LIFETIMEBOUND { return runs_; }

  /// Makes room for so many units and runs in all.
  void reserve(std::size_t units, std::size_t runs);
  /// Appends units, which must be none of this text.
  void append(std::u16string_view units, const Interned<TextAttributes> &attributes);
  /// Appends units; asking for the attributes of the last call again takes no lock.
  void append(std::u16string_view units, const TextAttributes &attributes) {
    append(units, interned(attributes));
  }
  /// Appends one unit.
  void append(unichar unit, const Interned<TextAttributes> &attributes) { append({&unit, 1}, attributes); }
  /// Appends a text; nil has nothing.
  void append(const NSAttributedString &text);
  /// Gives all characters of the range, which is cut to the text's bounds, these attributes.
  void setAttributes(const Interned<TextAttributes> &attributes, NSRange range);
  /// Cuts the text; a length beyond its own changes nothing.
  void truncate(std::uint32_t length);

  /// The text, without a copy; this object is empty afterwards.
  NSAttributedString attributedString() &&;

 private:
  const Interned<TextAttributes> &interned(const TextAttributes &attributes);

  NSMutableString text_;
  std::vector<AttributeRun> runs_;
  Interned<TextAttributes> lastInterned_;
};

}  // namespace nimbo
