// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/FinderInfo.hpp"

#include <string>

#include "platform/Foundation/System/BigEndian.hpp"
#include "platform/Foundation/System/ForkStorage.hpp"

namespace nimbo {
namespace {

AppleDouble::EntryID numberOf(FinderField::Entry entry) {
  switch (entry) {
    case FinderField::Entry::finderInfo:
      return AppleDouble::kFinderInfo;
    case FinderField::Entry::fileDates:
      return AppleDouble::kFileDates;
    case FinderField::Entry::AFPFileInfo:
      break;
  }
  return AppleDouble::kAFPFileInfo;
}

/// What the file has, with the length that the field needs at least.
NSData entryAtPath(const NSString &path, const FinderField &field) {
  const AppleDouble::EntryID number = numberOf(field.entry);
  const NSData data = metadataEntry(path, number);
  return data.length() >= field.offset + field.size ? data : AppleDouble::metadata().entry(number);
}

}  // namespace

std::uint64_t finderField(const NSString &path, const FinderField &field) {
  return bigEndian(entryAtPath(path, field).bytes() + field.offset, field.size) & field.mask;
}

bool setFinderField(const NSString &path, const FinderField &field, std::uint64_t value, NSError *error) {
  const NSData old = entryAtPath(path, field);
  std::string entry(old.view());
  const std::uint64_t kept = bigEndian(old.bytes() + field.offset, field.size) & ~field.mask;
  std::string bytes;
  appendBigEndian(bytes, kept | (value & field.mask), field.size);
  entry.replace(field.offset, field.size, bytes);
  return setMetadataEntry(path, numberOf(field.entry), NSData::dataWithBytes(entry.data(), entry.size()),
                          error);
}

}  // namespace nimbo
