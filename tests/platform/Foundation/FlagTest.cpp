// SPDX-License-Identifier: Apache-2.0
// Wrong calls of functions with flags do not compile; nothing here runs.
#include <type_traits>
#include <utility>
#include <vector>

#include "Classes/Characters/AsciiSetKernels.hpp"
#include "Classes/Characters/SetFilteredComparisons.hpp"
#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Collections/NSDictionary+NimboDictionaryExtensions.hpp"
#include "Classes/Collections/NSMutableDictionary+NimboDictionaryExtensions.hpp"
#include "Classes/Entities/EntityConversion.hpp"
#include "Classes/Entities/EntityEncoding.hpp"
#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Markup/NSString+XmlExtensions.hpp"
#include "Classes/Markup/TagAttributes.hpp"
#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "Classes/Strings/NSString+NSStringTextFinding.hpp"
#include "Classes/Stripping/NSString+HtmlExtensions+Stripping.hpp"
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"
#include "Classes/URLs/NSString+URLUtilities.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions.hpp"
#include "Classes/URLs/URLEscaping.hpp"
#include "Classes/URLs/URLNormalizing.hpp"
#include "clients/cpp/HelperClient.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/Foundation/NSConnection.hpp"
#include "platform/Foundation/NSURL.hpp"
#include "platform/Foundation/System/DataWriting.hpp"

namespace nimbo {
namespace {

static_assert(std::is_trivially_copyable_v<Flag> && sizeof(Flag) == sizeof(bool));
static_assert(Flag(true) && !Flag(false));

#define OVERLOADS(function)                                                                        \
  [](auto &&...arguments) -> decltype(function(std::forward<decltype(arguments)>(arguments)...)) { \
    return function(std::forward<decltype(arguments)>(arguments)...);                              \
  }

/// Whether the call compiles with another type in place of the flag at `Index`.
template <class Call, class Wrong, std::size_t Index, class... Arguments, std::size_t... Places>
constexpr bool takesInstead(std::index_sequence<Places...>) {
  return std::is_invocable_v<Call, std::conditional_t<Places == Index, Wrong, Arguments>...>;
}

template <class Call, std::size_t Index, class... Arguments>
constexpr bool takesAnythingInstead() {
  constexpr auto places = std::index_sequence_for<Arguments...>();
  return takesInstead<Call, int, Index, Arguments...>(places) ||
         takesInstead<Call, std::uint32_t, Index, Arguments...>(places) ||
         takesInstead<Call, const char *, Index, Arguments...>(places) ||
         takesInstead<Call, NSString, Index, Arguments...>(places);
}

/// Whether the function takes these arguments, but nothing else in place of each `bool` among them.
template <class... Arguments, class Call>
constexpr bool takesFlags(Call) {
  return []<std::size_t... Places>(std::index_sequence<Places...>) {
    return std::is_invocable_v<Call, Arguments...> &&
           !((std::is_same_v<Arguments, bool> && takesAnythingInstead<Call, Places, Arguments...>()) || ...);
  }
  (std::index_sequence_for<Arguments...>());
}

static_assert(!takesFlags<bool>([](bool) {}));

using Count = std::uint32_t;
using Set = const CharacterSetRep *;
using Strings = std::vector<NSString>;

// An index, too, does not stand for the flag.
static_assert(takesFlags<NSString, unichar, bool>(OVERLOADS(findCharacter)));
static_assert(takesFlags<NSString, unichar, Count, bool>(OVERLOADS(findCharacter)));
static_assert(takesFlags<NSString, unichar, bool>(OVERLOADS(containsCharacter)));
static_assert(takesFlags<NSString, unichar, Count, bool>(OVERLOADS(containsCharacter)));
static_assert(takesFlags<NSString, unichar, bool>(OVERLOADS(countCharacter)));
static_assert(takesFlags<NSString, unichar, Count, bool>(OVERLOADS(countCharacter)));
static_assert(takesFlags<NSString, unichar, bool>(OVERLOADS(findLastCharacter)));
static_assert(takesFlags<NSString, unichar, int, bool>(OVERLOADS(findLastCharacter)));
static_assert(takesFlags<NSString, NSString, bool>(OVERLOADS(findOneOf)));
static_assert(takesFlags<NSString, NSString, Count, bool>(OVERLOADS(findOneOf)));

static_assert(takesFlags<NSString, NSString, bool>(OVERLOADS(containsSubstring)));
static_assert(takesFlags<NSString, Strings, bool>(OVERLOADS(containsSubstrings)));
static_assert(takesFlags<NSString, std::span<const char *const>, bool>(OVERLOADS(containsSubCStrings)));
static_assert(takesFlags<NSString, NSString, bool>(OVERLOADS(countSubstring)));
static_assert(takesFlags<NSString, NSString, NSRange, bool, FindDirection, bool>(OVERLOADS(findString)));
static_assert(takesFlags<const char *, Count, const unichar *, Count, bool>(OVERLOADS(positionOfCharacters)));

static_assert(takesFlags<NSString, NSString, NSString, bool>(OVERLOADS(stringByReplacingString)));
static_assert(takesFlags<NSString, unichar, unichar, bool>(OVERLOADS(stringByReplacingCharacter)));
static_assert(takesFlags<NSMutableString &, NSString, NSString, bool>(OVERLOADS(replaceString)));
static_assert(takesFlags<NSMutableString &, unichar, unichar, bool>(OVERLOADS(replaceCharacter)));
static_assert(takesFlags<NSString, bool>(OVERLOADS(stringByRemovingMultipleSpacesAndFeeds)));
static_assert(takesFlags<NSMutableString &, bool>(OVERLOADS(removeMultipleSpacesAndFeeds)));
static_assert(takesFlags<NSString, bool>(OVERLOADS(stringByTrimmingSpacesAndFeeds)));
static_assert(takesFlags<NSString, bool>(OVERLOADS(stringByTrimmingSpacesOfLeftSideAndFeeds)));
static_assert(takesFlags<NSString, bool>(OVERLOADS(stringByTrimmingSpacesOfRightSideAndFeeds)));
static_assert(takesFlags<NSString, NSRange, bool>(OVERLOADS(stringByTrimmingSpacesInRange)));
static_assert(takesFlags<NSString, NSRange, bool>(OVERLOADS(trimSpacesInRange)));

// An encoding, too.
static_assert(takesFlags<NSString, NSString, bool, NSStringEncoding>(OVERLOADS(writeToFile)));
static_assert(takesFlags<NSString, NSString, bool>(OVERLOADS(writeToFileUsingDefaultEncoding)));
static_assert(takesFlags<NSString, NSURL, bool, NSStringEncoding, bool>(OVERLOADS(URLRelativeTo)));
static_assert(takesFlags<NSURL, NSString, bool, NSStringEncoding, bool>(OVERLOADS(URLRelativeTo)));

static_assert(takesFlags<bool>(OVERLOADS(isSpace)));
static_assert(takesFlags<NSString, Set, bool>(OVERLOADS(charactersPartOfSet)));
static_assert(takesFlags<NSString, NSString, Set, bool, bool>(OVERLOADS(_equalStringsUsingCharacterSetRep)));

static_assert(takesFlags<NSString, bool>(OVERLOADS(normalizedStringURL)));
static_assert(takesFlags<NSString, bool>(OVERLOADS(stringByAddingPercentEscapesToURL)));
static_assert(takesFlags<unichar *, Count, bool>(OVERLOADS(convertPercentEscapesOfURL)));
static_assert(takesFlags<const unichar *, Count, bool, unichar *>(OVERLOADS(normalizeURLUnits)));
static_assert(
    takesFlags<NSString, bool, bool, bool, bool, bool>(OVERLOADS(simplifiedStringURLByRemovingSessionIDs)));
static_assert(
    takesFlags<NSURL, bool, bool, bool, bool, bool>(OVERLOADS(simplifiedStringURLByRemovingSessionIDs)));
static_assert(takesFlags<NSURL, NSString, NSDate, bool>(OVERLOADS(directoryInPath)));
static_assert(takesFlags<NSString, bool, bool, bool>(OVERLOADS(isMultimediaType)));
static_assert(takesFlags<NSString, bool, bool, bool, bool, bool>(OVERLOADS(isOfficeTypeIncludingMSWord)));
static_assert(takesFlags<bool, bool, bool, bool, bool, bool>(OVERLOADS(binaryFileTypesIncludingRichText)));

static_assert(takesFlags<NSDictionary, NSString, bool>(OVERLOADS(boolForKey)));
static_assert(takesFlags<NSDictionary &, bool, NSString>(OVERLOADS(setBool)));
static_assert(takesFlags<bool (*)(unichar), bool>(OVERLOADS(detail::AsciiSet::of)));

static_assert(takesFlags<const unichar *, unichar *, Count, Count, bool, bool, bool>(
    OVERLOADS(convertEntities2Characters)));
static_assert(takesFlags<NSString, bool, bool, bool>(OVERLOADS(stringByConvertingEntitiesToCharacters)));
static_assert(takesFlags<NSString, bool>(OVERLOADS(stringByConvertingEntitiesToCharactersNonUmlauted)));
static_assert(takesFlags<NSString, bool>(OVERLOADS(stringByConvertingCharactersToEntities)));

static_assert(takesFlags<NSString, TagHandler, void *, bool>(OVERLOADS(GetTagsOfString)));
static_assert(takesFlags<NSString, TagHandler, void *, bool>(OVERLOADS(parseXmlWithHandler)));
static_assert(takesFlags<const unichar *, Count, Count, const char *, bool>(
    OVERLOADS(_attributeOfTagCharactersWithName)));
static_assert(takesFlags<NSString, const unichar *, Count, unichar, bool>(OVERLOADS(_copyOfAttributeOfString)));
static_assert(takesFlags<NSString, Strings, bool>(OVERLOADS(stripTagBodies)));

static_assert(takesFlags<NSString, bool>(OVERLOADS(stringByConvertingHtml2PlainTextNonUmlauted)));
static_assert(
    takesFlags<NSString, bool, bool, bool, bool>(OVERLOADS(stringByConvertingHtml2PlainTextNonUmlauted)));
static_assert(takesFlags<NSString, bool, bool, bool, bool, bool *, bool>(
    OVERLOADS(stringByConvertingHtml2PlainTextNonUmlauted)));
static_assert(takesFlags<NSString, bool, bool, bool, bool, bool, bool, bool *, bool>(
    OVERLOADS(stringByConvertingHtml2PlainTextEntities)));

static_assert(takesFlags<NSString, bool>(OVERLOADS(NSURL::fileURLWithPath)));
static_assert(takesFlags<NSData, NSString, bool>(OVERLOADS(writeDataToFile)));
static_assert(takesFlags<std::string_view, bool>(OVERLOADS(stringWithDetectedEncoding)));
static_assert(takesFlags<NSConnection &, bool>(&NSConnection::setIndependentConversationQueueing));
static_assert(takesFlags<HelperClient &, bool, NSData>(&HelperClient::attributedStringWithPDF));
static_assert(takesFlags<HelperClient &, NSData, NSString, bool>(&HelperClient::RTFDWithHTML));
static_assert(takesFlags<HelperClient &, NSString, bool, bool>(&HelperClient::imageWithContentsOfFile));

}  // namespace
}  // namespace nimbo
