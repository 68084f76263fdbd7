// SPDX-License-Identifier: Apache-2.0
#include "importers/Media/SoundTags.hpp"

#include <taglib/fileref.h>
#include <taglib/tfilestream.h>
#include <taglib/tpropertymap.h>

#include <string>
#include <string_view>
#include <utility>

namespace nimbo {
namespace {

/// More texts, and longer ones, are damage; the words of a song are among them.
constexpr std::uint32_t kMaximumTexts = 1000;
constexpr std::size_t kMaximumTextLengthInBytes = 1 << 20;

/// Reads nothing after the deadline. The name says what to expect of the content.
class BoundedStream final : public TagLib::FileStream {
 public:
  BoundedStream(FileDescriptor file, std::string name, const Deadline &deadline)
      : FileStream(file.release(), true), name_(std::move(name)), deadline_(deadline) {}

  TagLib::FileName name() const override { return name_.c_str(); }
  TagLib::ByteVector readBlock(unsigned long length) override {
    return deadline_.isOver() ? TagLib::ByteVector() : FileStream::readBlock(length);
  }

 private:
  std::string name_;
  Deadline deadline_;
};

NSArray arrayOfStrings(const TagLib::StringList &list) {
  NSArray array;
  for (const TagLib::String &text : list) {
    const std::string bytes = text.to8Bit(true);
    const std::string_view kept = std::string_view(bytes).substr(0, kMaximumTextLengthInBytes);
    if (kept.find_first_not_of(" \t\r\n") != kept.npos && array.count() < kMaximumTexts)
      array.addObject(NSString::stringWithLossyUTF8String(kept));
  }
  return array;
}

}  // namespace

NSDictionary tagsOfSoundFile(FileDescriptor file, const NSString &name, const Deadline &deadline) {
  if (!file) return {};
  BoundedStream stream(std::move(file), name.UTF8String(), deadline);
  const TagLib::FileRef reference(&stream, false);
  if (reference.isNull()) return {};
  NSDictionary tags;
  for (const auto &[tag, texts] : reference.file()->properties())
    if (tags.count() < kMaximumTexts)
      tags.setObject(arrayOfStrings(texts), NSString::stringWithLossyUTF8String(tag.upper().to8Bit(true)));
  return tags;
}

}  // namespace nimbo
