// SPDX-License-Identifier: Apache-2.0
#include "Classes/MetaData/MDImporterAttributeDictionary.hpp"

#include <algorithm>
#include <string_view>

namespace nimbo {
namespace {

/// Stores what `makeValue` answers. Nothing may be thrown through an importer in C.
template <class MakeValue>
MDImporterBoolean set(MDImporterAttributes *attributes, const char *name, MakeValue makeValue) noexcept {
  try {
    const NSString key = name ? NSString::stringWithUTF8String(name) : NSString();
    id value = makeValue();
    if (key.length() == 0 || !value) return 0;
    static_cast<MDImporterAttributeDictionary *>(attributes)->dictionary.setObject(std::move(value), key);
    return 1;
  } catch (...) {
    return 0;
  }
}

id UTF8String(const void *bytes, std::size_t length) {
  return NSString::stringWithLossyUTF8String({static_cast<const char *>(bytes), length});
}

id characters(const void *units, std::size_t length) {
  return NSString::stringWithCharacters({static_cast<const unichar *>(units), length});
}

/// Nil when an element is of an unknown kind, too long or nested too deeply.
id array(const MDImporterValue *elements, std::size_t count, int depth) {
  if (depth > MDImporterAttributeDictionary::kMaximumArrayDepth || count > NSNotFound) return id();
  NSArray result = NSArray::array();
  for (std::size_t i = 0; i < count; ++i) {
    const auto &value = elements[i].value;
    id element;
    switch (elements[i].kind) {
      case kMDImporterNull:
        element = NSNull();
        break;
      case kMDImporterBoolean:
        element = value.boolean != 0;
        break;
      case kMDImporterInteger:
        element = value.integer;
        break;
      case kMDImporterReal:
        element = value.real;
        break;
      case kMDImporterDate:
        element = NSDate{value.date};
        break;
      case kMDImporterUTF8String:
        element = UTF8String(value.list.elements, value.list.count);
        break;
      case kMDImporterCharacters:
        element = characters(value.list.elements, value.list.count);
        break;
      case kMDImporterData:
        element = NSData::dataWithBytes(value.list.elements, value.list.count);
        break;
      case kMDImporterArray:
        element = array(static_cast<const MDImporterValue *>(value.list.elements), value.list.count, depth + 1);
        break;
    }
    if (!element) return id();
    result.addObject(std::move(element));
  }
  return result;
}

constexpr bool isCode(int code, ErrorCode meaning) {
  return static_cast<ErrorCode>(code) == meaning;
}
static_assert(isCode(kMDImporterOther, ErrorCode::other) &&
              isCode(kMDImporterNoSuchFile, ErrorCode::noSuchFile) &&
              isCode(kMDImporterUnreadable, ErrorCode::unreadable) &&
              isCode(kMDImporterTooLarge, ErrorCode::tooLarge) &&
              isCode(kMDImporterUnsupportedType, ErrorCode::unsupportedType) &&
              isCode(kMDImporterDamaged, ErrorCode::damaged) && isCode(kMDImporterLocked, ErrorCode::locked) &&
              isCode(kMDImporterTimeLimit, ErrorCode::timeLimit) &&
              isCode(kMDImporterMemoryLimit, ErrorCode::memoryLimit) &&
              isCode(kMDImporterIncomplete, ErrorCode::incomplete));

/// Codes of later versions are passed on.
MDImporterBoolean setReason(MDImporterAttributes *attributes, std::int32_t code, const char *reason,
                            std::size_t length) noexcept {
  try {
    if (!reason || length == 0) return 0;
    static_cast<MDImporterAttributeDictionary *>(attributes)->error =
        NSError::errorWithCode(code > 0 ? static_cast<ErrorCode>(code) : ErrorCode::other,
                               {reason, std::min(length, MDImporterAttributeDictionary::kMaximumReasonBytes)});
    return 1;
  } catch (...) {
    return 0;
  }
}

const MDImporterAttributesFunctions kFunctions = {
    sizeof(MDImporterAttributesFunctions),
    [](MDImporterAttributes *attributes, const char *name, const char *bytes, std::size_t length) {
      return set(attributes, name, [&] { return UTF8String(bytes, length); });
    },
    [](MDImporterAttributes *attributes, const char *name, const MDImporterUnichar *units, std::size_t length) {
      return set(attributes, name, [&] { return characters(units, length); });
    },
    [](MDImporterAttributes *attributes, const char *name, std::int64_t integer) {
      return set(attributes, name, [&] { return id(integer); });
    },
    [](MDImporterAttributes *attributes, const char *name, double real) {
      return set(attributes, name, [&] { return id(real); });
    },
    [](MDImporterAttributes *attributes, const char *name, MDImporterBoolean boolean) {
      return set(attributes, name, [&] { return id(boolean != 0); });
    },
    [](MDImporterAttributes *attributes, const char *name, double seconds) {
      return set(attributes, name, [&] { return id(NSDate{seconds}); });
    },
    [](MDImporterAttributes *attributes, const char *name, const void *bytes, std::size_t length) {
      return set(attributes, name, [&] { return id(NSData::dataWithBytes(bytes, length)); });
    },
    [](MDImporterAttributes *attributes, const char *name) {
      return set(attributes, name, [] { return id(NSNull()); });
    },
    [](MDImporterAttributes *attributes, const char *name, const MDImporterValue *elements, std::size_t count) {
      return set(attributes, name, [&] { return array(elements, count, 1); });
    },
    setReason,
};

}  // namespace

MDImporterAttributeDictionary::MDImporterAttributeDictionary() : MDImporterAttributes{&kFunctions} {}

}  // namespace nimbo
