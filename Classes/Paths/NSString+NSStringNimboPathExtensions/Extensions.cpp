// SPDX-License-Identifier: Apache-2.0
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/Extensions.hpp"

#include <algorithm>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Comparing.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Finding.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"

namespace nimbo {
namespace {

constexpr std::uint32_t kLongestExtension = 15;
constexpr std::uint32_t kLongestCutExtension = 14;

bool isAlphaNumeric(const NSString &string) {
  return charactersPartOfSet(string, alphaNumCharacterSetRep(), false);
}

/// What may be an extension, and neither a type nor a code.
bool isExtension(const NSString &entry) {
  return entry.length() > 0 && entry.view().find_first_of(u"./'") == std::u16string_view::npos;
}

bool hasExtensionOf(const NSString &path, std::span<const NSString> entries) {
  const NSString own = pathExtension(path);
  return own.length() > 0 && std::any_of(entries.begin(), entries.end(), [&](const NSString &entry) {
           return isEqualToStringNoCase(own, entry);
         });
}

}  // namespace

inline namespace NSStringNimboPathExtensions {

bool isValidPathExtension(const NSString &string) {
  return string.length() <= kLongestExtension && isAlphaNumeric(string);
}

NSString validPathExtension(const NSString &path) {
  return answerOr(NSString::string(), [&] {
    const NSString extension = pathExtension(path);
    const NSString cut = extension.substringWithRange({0, findOneOf(extension, u"?&;=#"_ns)});
    return cut.length() <= kLongestCutExtension && isAlphaNumeric(cut) ? cut : NSString::string();
  });
}

NSString stringByReplacingPathExtensionWith(const NSString &path, const NSString &extension) {
  return answerOr(path, [&] {
    if (!extension || extension == pathExtension(path)) return path;
    return stringByAppendingPathExtension(stringByDeletingPathExtension(path), extension);
  });
}

NSString stringByAppendingPathExtensionIfNecessary(const NSString &path, const NSString &extension) {
  return answerOr(path, [&] {
    if (!extension || isEqualToStringNoCase(extension, pathExtension(path))) return path;
    return stringByAppendingPathExtension(path, extension);
  });
}

NSString pathMatchingExtensions(const NSString &path, std::span<const NSString> extensions) {
  return answerOr(NSString(), [&] {
    if (path.length() == 0) return NSString();
    if (hasExtensionOf(path, extensions)) return path;
    for (const NSString &extension : extensions) {
      if (!isExtension(extension)) continue;
      NSString candidate = stringByAppendingPathExtension(path, extension);
      if (NSFileManager::fileExistsAtPath(candidate)) return candidate;
    }
    return NSString();
  });
}

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
