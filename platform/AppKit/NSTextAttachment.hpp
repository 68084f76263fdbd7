// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <utility>

#include "platform/AppKit/NSFileWrapper.hpp"
#include "platform/Foundation/NSGeometry.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The character that an attachment stands in the text as.
inline constexpr unichar NSAttachmentCharacter = 0xfffc;

namespace detail {
struct TextAttachmentStorage;
}
/// Ends what an attachment stands on.
template <>
NIMBO_PUBLIC void destroyShared<detail::TextAttachmentStorage>(ReferenceCounted *storage) noexcept;

/// A picture or another file in a text: an immutable handle, one pointer wide. A default-made one is nil: it
/// tests false and has neither a file nor a size.
///
/// A handle may be copied and read from any thread; one handle is changed by one.
///
///     const NSTextAttachment photo(NSFileWrapper::regularFileWithContents(bytes, u"photo.png"_ns), NSSize{320,
///     200}); photo.fileWrapper().regularFileContents().length(); photo.sizeInPoints()->width;  // 320
class NSTextAttachment {
 public:
  NSTextAttachment() noexcept = default;
  /// An attachment; nil when the file is. Without a size it is shown in its own.
  explicit NSTextAttachment(const NSFileWrapper &file, std::optional<NSSize> sizeInPoints = {},
                            const NSString &alternativeText = {});

  /// The file; its preferred name tells what kind of file it is.
  NSFileWrapper fileWrapper() const;
  /// The size in which it is shown; nothing when it is its own.
  std::optional<NSSize> sizeInPoints() const;
  /// What to say instead of showing it; nil when there is nothing.
  NSString alternativeText() const;

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }
  /// Whether files, sizes and texts are equal; nil equals only nil.
  bool operator==(const NSTextAttachment &other) const;
  /// A hash of file, size and text.
  std::size_t hash() const noexcept;

 private:
  SharedPointer<detail::TextAttachmentStorage> storage_;
};

}  // namespace nimbo
