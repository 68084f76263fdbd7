// SPDX-License-Identifier: Apache-2.0
#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"

#include <array>
#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/Entities/EntityConversion.hpp"
#include "Classes/Entities/EntityEncoding.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {
inline namespace HtmlExtensions {

namespace {

/// No shorter string is decoded, although "&lt" is a reference.
constexpr std::uint32_t kMinDecodedLength = 4;
/// Up to this length a string that stays as it is costs no memory.
constexpr std::uint32_t kStackLength = 256;

/// Decodes by `decode(source, destination, length)`, which answers how many units it wrote: fewer than it read
/// when, and only when, it decoded anything.
template <class Decode>
NSString stringByDecoding(const NSString &string, Decode decode) {
  const std::uint32_t length = string.length();
  const unichar *const units = string.characters();
  if (length < kMinDecodedLength || findUnichar(units, length, u'&') == NSNotFound) return string;
  return answerOr(string, [&] {
    if (length <= kStackLength) {
      std::array<unichar, kStackLength> decoded;
      const std::uint32_t written = decode(units, decoded.data(), length);
      return written == length ? string : NSString::stringWithCharacters(decoded.data(), written);
    }
    NSMutableString decoded;
    decoded.setLength(length);
    const std::uint32_t written = decode(units, decoded.mutableCharacters(), length);
    if (written == length) return string;
    decoded.setLength(written);
    return std::move(decoded).string();
  });
}

}  // namespace

NSString stringByConvertingEntitiesToCharacters(const NSString &string, Flag standard, Flag onlyNumericEntities,
                                                Flag nonUmlauted) {
  return stringByDecoding(string, [=](const unichar *source, unichar *destination, std::uint32_t length) {
    return convertEntities2Characters(source, destination, 0, length, standard, onlyNumericEntities,
                                      nonUmlauted);
  });
}

NSString stringByConvertingEntitiesToCharacters(const NSString &string) {
  return stringByConvertingEntitiesToCharacters(string, true, false, false);
}

NSString stringByConvertingEntitiesToCharactersNonUmlauted(const NSString &string, Flag nonUmlauted) {
  return stringByConvertingEntitiesToCharacters(string, true, false, nonUmlauted);
}

NSString stringByConvertingStandardEntitiesToCharacters(const NSString &string) {
  return stringByDecoding(string, convertStandardEntities2Characters);
}

NSString stringByConvertingCharactersToStandardEntities(const NSString &string) {
  return answerOr(string, [&] { return nimbo::stringByConvertingCharactersToEntities(string, false); });
}

NSString stringByConvertingHighCharactersToEntities(const NSString &string) {
  return answerOr(string, [&] { return nimbo::stringByConvertingCharactersToEntities(string, true); });
}

NSString stringByConvertingCharactersToEntities(const NSString &string) {
  return answerOr(string, [&] { return stringByConvertingCharactersToNamedEntities(string); });
}

void initConversionTables() {
  alphaNumCharacterSetRep();
}

}  // namespace HtmlExtensions
}  // namespace nimbo
