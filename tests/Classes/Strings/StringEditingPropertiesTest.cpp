// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <functional>

#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "tests/support/AllocationCount.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

constexpr int kSamples = 400;

using Answer = std::function<NSString(const NSString &)>;
using Edit = std::function<void(NSMutableString &)>;

struct Method {
  const char *name;
  Answer answer;
  /// The same in place, where there is one.
  Edit edit = nullptr;
  /// Whether a second time changes nothing.
  bool isIdempotent = true;
  /// Whether it must work on a copy to know that nothing changes.
  bool needsCopy = false;
};

const CharacterSetRep *const kAlphaSet = alphaCharacterSetRep();

/// All methods that answer the string itself when they change nothing.
const Method kMethods[] = {
    {"uppercaseAsciiString", uppercaseAsciiString},
    {"lowercaseAsciiString", lowercaseAsciiString},
    {"asciiString", asciiString},
    {"nonUmlautedString", nonUmlautedString},
    {"uppercaseNonUmlautedString", uppercaseNonUmlautedString},
    {"lowercaseNonUmlautedString", lowercaseNonUmlautedString},
    {"nonUmlautedNormalizedString", nonUmlautedNormalizedString, nullptr, true, true},
    {"uppercaseNonUmlautedNormalizedString", uppercaseNonUmlautedNormalizedString, nullptr, true, true},
    {"lowercaseNonUmlautedNormalizedString", lowercaseNonUmlautedNormalizedString, nullptr, true, true},
    {"caseInsensitiveStringByRemovingNonAlphaNumericCharacters",
     caseInsensitiveStringByRemovingNonAlphaNumericCharacters},
    {"removeCharacters", [](auto &s) { return stringByRemovingCharacters(s, kAlphaSet); },
     [](auto &s) { removeCharacters(s, kAlphaSet); }},
    {"removeCharactersOfString", [](auto &s) { return stringByRemovingCharactersOfString(s, u"aB.\n"_ns); },
     [](auto &s) { removeCharactersOfString(s, u"aB.\n"_ns); }},
    {"removeWhiteCharacters", stringByRemovingWhiteCharacters, removeWhiteCharacters},
    {"removeSpaces", stringByRemovingSpaces, removeSpaces},
    {"removeTabs", stringByRemovingTabs, removeTabs},
    {"removeFeeds", stringByRemovingFeeds, removeFeeds},
    {"removeMultipleFeeds", stringByRemovingMultipleFeeds, removeMultipleFeeds},
    {"removeMultipleSpaces", [](auto &s) { return stringByRemovingMultipleSpacesAndFeeds(s, false); },
     removeMultipleSpaces},
    {"removeMultipleSpacesAndFeeds", [](auto &s) { return stringByRemovingMultipleSpacesAndFeeds(s, true); },
     [](auto &s) { removeMultipleSpacesAndFeeds(s, true); }},
    {"removeDigits", stringByRemovingDigits, removeDigits},
    {"uppercaseStringByRemovingDigits", uppercaseStringByRemovingDigits},
    {"lowercaseStringByRemovingDigits", lowercaseStringByRemovingDigits},
    {"reformattedStringByRemovingCharactersOfString",
     [](auto &s) { return reformattedStringByRemovingCharactersOfString(s, u"-b"_ns); }},
    {"trimWhiteSpaces", stringByTrimmingWhiteSpaces, trimWhiteSpaces},
    {"trimFeeds", stringByTrimmingFeeds, trimFeeds},
    {"trimCharacter", [](auto &s) { return stringByTrimmingCharacter(s, u'a'); },
     [](auto &s) { trimCharacter(s, u'a'); }},
    {"trimPrefixCharacter", [](auto &s) { return stringByTrimmingPrefixCharacter(s, u'a'); },
     [](auto &s) { trimPrefixCharacter(s, u'a'); }},
    {"trimSuffixCharacter", [](auto &s) { return stringByTrimmingSuffixCharacter(s, u'a'); },
     [](auto &s) { trimSuffixCharacter(s, u'a'); }},
    {"trimEnclosingCharacter", [](auto &s) { return stringByTrimmingEnclosingCharacter(s, u'a'); }, nullptr,
     false},
    {"trimDigits", stringByTrimmingDigits},
    {"trimEllipsis", stringByTrimmingEllipsis},
    {"trimSpaces", [](auto &s) { return stringByTrimmingSpacesAndFeeds(s, false); }},
    {"trimLeft", [](auto &s) { return stringByTrimmingSpacesOfLeftSideAndFeeds(s, true); }},
    {"trimRight", [](auto &s) { return stringByTrimmingSpacesOfRightSideAndFeeds(s, true); }},
    {"trimRange",
     [](auto &s) {
       return stringByTrimmingSpacesInRange(s, {0, NSNotFound}, true);
     }},
    {"replaceString", [](auto &s) { return stringByReplacingString(s, u"a"_ns, u"xyz"_ns); },
     [](auto &s) { replaceString(s, u"a"_ns, u"xyz"_ns); }},
    {"replaceStringNoCase", [](auto &s) { return stringByReplacingString(s, u"\u00e4"_ns, u""_ns, false); },
     [](auto &s) { replaceString(s, u"\u00e4"_ns, u""_ns, false); }},
    {"replaceBySame", [](auto &s) { return stringByReplacingString(s, u"a"_ns, u"a"_ns); },
     [](auto &s) { replaceString(s, u"a"_ns, u"a"_ns); }},
    {"replaceByCase", [](auto &s) { return stringByReplacingString(s, u"B"_ns, u"b"_ns, false); },
     [](auto &s) { replaceString(s, u"B"_ns, u"b"_ns, false); }},
    {"deleteString", [](auto &s) { return stringByReplacingString(s, u"  "_ns, u""_ns); },
     [](auto &s) { deleteString(s, u"  "_ns); }, false},
    {"replaceCharacter", [](auto &s) { return stringByReplacingCharacter(s, u'-', u'+', false); },
     [](auto &s) { replaceCharacter(s, u'-', u'+', false); }},
    {"stringByRotating", [](auto &s) { return stringByRotating(s, 5); }, nullptr, false},
    {"reformattedMailing", reformattedMailing},
    {"firstLine", firstLine},
    {"string", string},
};

TEST(StringEditing, AnswersTheReceiverWhenNothingChanges) {
  for (const Method &method : kMethods) {
    SCOPED_TRACE(method.name);
    EXPECT_FALSE(method.answer(NSString()));
    const NSString empty = NSString::string();
    EXPECT_TRUE(method.answer(empty).identicalTo(empty));
    // The first call may build tables.
    method.answer(u"a\u00e4"_ns);
    RandomStrings strings;
    for (int i = 0; i < kSamples; ++i) {
      const NSString sample = strings.next();
      const std::size_t allocations = allocationCount();
      const NSString answer = method.answer(sample);
      const bool isCopied = allocationCount() != allocations;
      ASSERT_EQ(answer.identicalTo(sample), answer == sample) << sample.UTF8String();
      if (answer == sample && !method.needsCopy) {
        EXPECT_FALSE(isCopied) << sample.UTF8String();
      }
      if (answer.length() == 0) {
        EXPECT_TRUE(answer.identicalTo(empty));
      }
      if (method.isIdempotent) {
        ASSERT_TRUE(method.answer(answer).identicalTo(answer)) << sample.UTF8String();
      }
    }
  }
}

TEST(StringEditing, InPlaceGivesTheSame) {
  for (const Method &method : kMethods) {
    if (!method.edit) continue;
    SCOPED_TRACE(method.name);
    NSMutableString nothing;
    method.edit(nothing);
    EXPECT_EQ(nothing.length(), 0u);
    RandomStrings strings;
    for (int i = 0; i < kSamples; ++i) {
      const NSString sample = strings.next();
      NSMutableString edited(sample);
      method.edit(edited);
      ASSERT_EQ(std::move(edited).string(), method.answer(sample)) << sample.UTF8String();
    }
  }
}

TEST(StringEditing, TabsSurviveARoundTrip) {
  RandomStrings strings;
  for (int i = 0; i < kSamples; ++i) {
    const NSString sample = stringByRemovingTabs(strings.next());
    for (const std::uint32_t width : {0u, 1u, 2u, 3u, 8u, kMaximumTabWidth, kMaximumTabWidth + 1}) {
      NSMutableString edited(sample);
      encodeTabs(edited, width);
      ASSERT_LE(edited.length(), sample.length());
      decodeTabs(edited, width);
      ASSERT_EQ(edited.view(), sample.view()) << width;
    }
  }
}

}  // namespace
}  // namespace nimbo
