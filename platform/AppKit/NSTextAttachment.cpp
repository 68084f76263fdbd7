// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/NSTextAttachment.hpp"

#include "platform/AppKit/RecordHash.hpp"

namespace nimbo {

struct detail::TextAttachmentStorage : ReferenceCounted {
  NSFileWrapper file;
  std::optional<NSSize> size;
  NSString alternativeText;
};

template <>
void destroyShared<detail::TextAttachmentStorage>(ReferenceCounted *storage) noexcept {
  delete static_cast<detail::TextAttachmentStorage *>(storage);
}

NSTextAttachment::NSTextAttachment(const NSFileWrapper &file, std::optional<NSSize> sizeInPoints,
                                   const NSString &alternativeText) {
  if (!file) return;
  storage_ = makeShared<detail::TextAttachmentStorage>();
  storage_->file = file;
  storage_->size = sizeInPoints;
  storage_->alternativeText = alternativeText;
}

NSFileWrapper NSTextAttachment::fileWrapper() const {
  return storage_ ? storage_->file : NSFileWrapper();
}

std::optional<NSSize> NSTextAttachment::sizeInPoints() const {
  return storage_ ? storage_->size : std::nullopt;
}

NSString NSTextAttachment::alternativeText() const {
  return storage_ ? storage_->alternativeText : NSString();
}

bool NSTextAttachment::operator==(const NSTextAttachment &other) const {
  if (storage_ == other.storage_) return true;
  return storage_ && other.storage_ && storage_->size == other.storage_->size &&
         storage_->alternativeText == other.storage_->alternativeText && storage_->file == other.storage_->file;
}

std::size_t NSTextAttachment::hash() const noexcept {
  if (!storage_) return 0;
  const NSSize size = storage_->size.value_or(NSSize());
  return combinedRecordHash(storage_->file, size.width, size.height, storage_->alternativeText);
}

}  // namespace nimbo
