// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/ICCProfile.hpp"

#include <algorithm>
#include <string_view>

#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo::detail {
namespace {

constexpr std::size_t kHeaderLength = 128;
constexpr std::size_t kTagEntryLength = 12;
constexpr std::size_t kNameRecordLength = 12;
/// Profiles have some ten tags, and a description in some forty languages.
constexpr std::uint32_t kMaximumEntries = 1000;

using Bytes = std::span<const std::uint8_t>;

/// 0 beyond the end, as everywhere here: a length of 0 then ends the search.
std::uint32_t bigEndianAt(Bytes bytes, std::size_t offset) {
  if (offset > bytes.size() || bytes.size() - offset < 4) return 0;
  return std::uint32_t{bytes[offset]} << 24 | bytes[offset + 1] << 16 | bytes[offset + 2] << 8 |
         bytes[offset + 3];
}

Bytes part(Bytes bytes, std::size_t offset, std::size_t length) {
  if (offset > bytes.size()) return {};
  return bytes.subspan(offset, std::min(length, bytes.size() - offset));
}

constexpr std::uint32_t signature(const char (&text)[5]) {
  return static_cast<std::uint32_t>(text[0]) << 24 | static_cast<std::uint32_t>(text[1]) << 16 |
         static_cast<std::uint32_t>(text[2]) << 8 | static_cast<std::uint32_t>(text[3]);
}

/// Version 2: ASCII with its length, terminated.
NSString stringOfTextDescription(Bytes tag) {
  const Bytes bytes = part(tag, 12, bigEndianAt(tag, 8));
  std::string_view text(reinterpret_cast<const char *>(bytes.data()), bytes.size());
  return NSString::stringWithLossyUTF8String(text.substr(0, text.find('\0')));
}

/// Version 4: UTF-16 in several languages.
NSString stringOfLocalizedUnicode(Bytes tag) {
  const std::uint32_t count = std::min(bigEndianAt(tag, 8), kMaximumEntries);
  Bytes best;
  for (std::uint32_t i = 0; i < count; ++i) {
    const Bytes record = part(tag, 16 + i * kNameRecordLength, kNameRecordLength);
    const Bytes text = part(tag, bigEndianAt(record, 8), bigEndianAt(record, 4));
    const bool isEnglish = record.size() > 1 && record[0] == 'e' && record[1] == 'n';
    if (best.empty() || isEnglish) best = text;
    if (isEnglish) break;
  }
  NSMutableString string;
  for (std::size_t i = 0; i + 1 < best.size(); i += 2)
    string.appendCharacter(static_cast<unichar>(best[i] << 8 | best[i + 1]));
  return std::move(string).string();
}

}  // namespace

NSString descriptionOfICCProfile(std::span<const std::uint8_t> profile) {
  const std::uint32_t count = std::min(bigEndianAt(profile, kHeaderLength), kMaximumEntries);
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::size_t entry = kHeaderLength + 4 + i * kTagEntryLength;
    if (bigEndianAt(profile, entry) != signature("desc")) continue;
    const Bytes tag = part(profile, bigEndianAt(profile, entry + 4), bigEndianAt(profile, entry + 8));
    const NSString string = bigEndianAt(tag, 0) == signature("mluc")   ? stringOfLocalizedUnicode(tag)
                            : bigEndianAt(tag, 0) == signature("desc") ? stringOfTextDescription(tag)
                                                                       : NSString();
    return string.length() > 0 ? string : NSString();
  }
  return {};
}

}  // namespace nimbo::detail
