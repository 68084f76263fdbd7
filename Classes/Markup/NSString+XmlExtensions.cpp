// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/NSString+XmlExtensions.hpp"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "Classes/Markup/StoreTagHandlers.hpp"
#include "Classes/Markup/TagAttributes.hpp"
#include "platform/Foundation/NSException.hpp"
#include "platform/Foundation/System/PageSize.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {
inline namespace XmlExtensions {

namespace {

constexpr std::uint32_t kTagSlack = 5, kStyleSlack = 1;
constexpr std::u16string_view kCharset = u"CHARSET", kURL = u"URL";

/// About a tag for each 16 units is room enough for most pages.
constexpr std::uint32_t kUnitsPerTag = 16;

std::uint32_t storeRanges(const NSString &string, NSRange **tagRanges, NSRange **textRanges) {
  const std::size_t bytes =
      roundUpToMultipleOfPageSize(std::max<std::size_t>(string.length() * sizeof(NSRange) / kUnitsPerTag, 1));
  const auto room = [bytes, &string](bool isWanted) {
    return static_cast<NSRange *>(isWanted && string.length() > 0 ? std::malloc(bytes) : nullptr);
  };
  StoreToRangesContext store{room(tagRanges), room(textRanges), 0,
                             static_cast<std::uint32_t>(bytes / sizeof(NSRange))};
  GetTagsOfString(string, StoreToRangesHandler, &store, false);
  if (tagRanges) *tagRanges = store.tagRanges;
  if (textRanges) *textRanges = store.textRanges;
  return store.count;
}

NSArray storeStrings(const NSString &string, bool wantTags, bool wantContents) {
  StoreToArrayContext store{NSArray::array(), wantTags, wantContents};
  GetTagsOfString(string, StoreToArrayHandler, &store, false);
  return std::move(store.result);
}

NSString lenientField(const NSString &string, std::u16string_view name) {
  return _copyOfAttributeOfString(string, name.data(), static_cast<std::uint32_t>(name.size()), u'\'', true);
}

}  // namespace

bool parseXmlWithHandler(const NSString &string, TagHandler handler, void *context, Flag isMutable) {
  try {
    return GetTagsOfString(string, handler, context, isMutable);
  } catch (const NSException &exception) {
    logException("parseXmlWithHandler:context:mutable:", "NSString", exception);
    return false;
  }
}

std::uint32_t getXml(const NSString &string, NSRange **tagRanges, NSRange **textRanges) {
  return storeRanges(string, tagRanges, textRanges);
}

std::uint32_t getXmlTags(const NSString &string, NSRange **tagRanges) {
  return storeRanges(string, tagRanges, nullptr);
}

std::uint32_t getXmlContents(const NSString &string, NSRange **textRanges) {
  return storeRanges(string, nullptr, textRanges);
}

NSArray getXml(const NSString &string) {
  return storeStrings(string, true, true);
}

NSArray getXmlTags(const NSString &string) {
  return storeStrings(string, true, false);
}

NSArray getXmlContents(const NSString &string) {
  return storeStrings(string, false, true);
}

NSString attributeOfTagCharacters(const unichar *characters, std::uint32_t length, const char *name) {
  return _attributeOfTagCharactersWithName(characters, 0, length, name, false);
}

NSString attributeOfTagCharacters(const unichar *characters, NSRange range, const char *name) {
  return _attributeOfTagCharactersWithName(characters, range.location, range.length, name, false);
}

NSString attributeOfTagInRange(const NSString &string, NSRange range, const NSString &name) {
  return _attributeOfStringWithName(string, range.location, range.length, name, kTagSlack, u'=', u'>');
}

NSString attributeOfTagWithName(const NSString &string, const NSString &name) {
  return attributeOfTagInRange(string, {0, string.length()}, name);
}

NSString attributeOfStyleInRange(const NSString &string, NSRange range, const NSString &name) {
  return _attributeOfStringWithName(string, range.location, range.length, name, kStyleSlack, u':', u';');
}

NSString attributeOfStyleWithName(const NSString &string, const NSString &name) {
  return attributeOfStyleInRange(string, {0, string.length()}, name);
}

NSString headerFieldNamed(const NSString &string, const NSString &name, unichar quotation) {
  return _copyOfAttributeOfString(string, name.characters(), name.length(), quotation, false);
}

NSString headerCharset(const NSString &string) {
  return lenientField(string, kCharset);
}

NSString headerRefresh(const NSString &string) {
  return lenientField(string, kURL);
}

}  // namespace XmlExtensions
}  // namespace nimbo
