// SPDX-License-Identifier: Apache-2.0
//
// What functions on strings answer when there is no memory.
#include "Classes/Characters/AnswerOr.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Classes/Characters/FastSearches.hpp"
#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions.hpp"
#include "Classes/Paths/StandardDirectories.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "Classes/Strings/NSString+NSStringTextFinding.hpp"
#include "Classes/Strings/NSString+Sorting.hpp"
#include "Classes/Stripping/NSString+HtmlExtensions+Stripping.hpp"
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"
#include "Classes/URLs/NSString+URLUtilities.hpp"
#include "tests/support/AllocationCount.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

TEST(AnswerOr, TakesOverWhenThereIsNoRoom) {
  EXPECT_EQ(answerOr(1, [] { return 2; }), 2);
  EXPECT_EQ(answerOr(1, []() -> int { throw std::bad_alloc(); }), 1);
  EXPECT_EQ(answerOr(1, []() -> int { throw std::length_error("string too long"); }), 1);
  EXPECT_THROW(answerOr(1, []() -> int { throw std::runtime_error("another"); }), std::runtime_error);
  NSMutableString whole;
  whole.appendCharacter(u'a');
  EXPECT_EQ(answerOr(false, [&] { return whole.setLength(NSNotFound + 1), true; }), false);
}

/// Longer than what functions put on the stack. Each kind of unit that one of them changes is in it.
NSString longText() {
  std::u16string text = u"  \u00c4e\u0301 a\tb \u2028\u2028 1&amp;<b>x</b>?Aa=1&&b=%41 ";
  while (text.size() < 500) text += text;
  return exactString(u"//" + text + u"~. ");
}

struct Function {
  const char *name;
  std::function<NSString(const NSString &)> call;
};

const NSString kList = exactString(u"aA&" + std::u16string(600, u'~'));

const std::vector<NSString> kNames = {u"<b"_ns};

const Function kAnsweringTheString[] = {
    {"uppercaseAsciiString", uppercaseAsciiString},
    {"lowercaseAsciiString", lowercaseAsciiString},
    {"asciiString", asciiString},
    {"nonUmlautedString", nonUmlautedString},
    {"uppercaseNonUmlautedString", uppercaseNonUmlautedString},
    {"nonUmlautedNormalizedString", nonUmlautedNormalizedString},
    {"lowercaseNonUmlautedNormalizedString", lowercaseNonUmlautedNormalizedString},
    {"caseInsensitiveString...", caseInsensitiveStringByRemovingNonAlphaNumericCharacters},
    {"normalizedString", [](const NSString &s) { return normalizedString(s, kCFStringNormalizationFormKD); }},
    {"normalizedUppercaseString", normalizedUppercaseString},
    {"normalizedLowercaseString", normalizedLowercaseString},
    {"fixedAndNormalizedString", fixedAndNormalizedString},
    {"stringByRemovingCharactersOfString",
     [](const NSString &s) { return stringByRemovingCharactersOfString(s, kList); }},
    {"stringByRemovingWhiteCharacters", stringByRemovingWhiteCharacters},
    {"stringByRemovingMultipleFeeds", stringByRemovingMultipleFeeds},
    {"uppercaseStringByRemovingDigits", uppercaseStringByRemovingDigits},
    {"reformattedString...",
     [](const NSString &s) { return reformattedStringByRemovingCharactersOfString(s, kList); }},
    {"stringByReplacingString",
     [](const NSString &s) { return stringByReplacingString(s, u"a"_ns, u"bc"_ns); }},
    {"stringByReplacingCharacter", [](const NSString &s) { return stringByReplacingCharacter(s, u'a', u'b'); }},
    {"stringByTrimmingSuffixCharacter",
     [](const NSString &s) { return stringByTrimmingSuffixCharacter(s, u' '); }},
    {"stringByTrimmingSpacesInRange",
     [](const NSString &s) {
       return stringByTrimmingSpacesInRange(s, {0, 300}, true);
     }},
    {"stringByRotating13", stringByRotating13},
    {"reformattedMailing", reformattedMailing},
    {"firstLine", firstLine},
    {"dump", dump},
    {"dumpAsArray", dumpAsArray},
    {"stringByConvertingEntitiesToCharacters",
     [](const NSString &s) { return stringByConvertingEntitiesToCharacters(s); }},
    {"stringByConvertingCharactersToStandardEntities", stringByConvertingCharactersToStandardEntities},
    {"stringByConvertingHighCharactersToEntities", stringByConvertingHighCharactersToEntities},
    {"stringByConvertingCharactersToEntities",
     [](const NSString &s) { return stringByConvertingCharactersToEntities(s); }},
    {"stripTags", stripTags},
    {"stripTag", [](const NSString &s) { return stripTag(s, "B"); }},
    {"stripTagBodies", [](const NSString &s) { return stripTagBodies(s, kNames); }},
    {"stringByTrimmingInvalidFilenameCharacters", stringByTrimmingInvalidFilenameCharacters},
    {"stringByCreatingFilename", stringByCreatingFilename},
    {"stringByCreatingFileSystemRepresentation", stringByCreatingFileSystemRepresentation},
    {"...ByAppendingExtension",
     [](const NSString &s) {
       return stringByCreatingFileSystemRepresentationByAppendingExtension(s, u"html"_ns);
     }},
    {"stringByReplacingPathExtensionWith",
     [](const NSString &s) { return stringByReplacingPathExtensionWith(s, u"html"_ns); }},
    {"stringByDeletingFileComponent", stringByDeletingFileComponent},
    {"standardizedPath", [](const NSString &s) { return standardizedPath(s); }},
    {"relativePathToDirectory", [](const NSString &s) { return relativePathToDirectory(s, u"/tmp"_ns); }},
    {"HFSPath", HFSPath},
    {"stringByReplacingASCIIPercentEscapesOfURL", stringByReplacingASCIIPercentEscapesOfURL},
    {"stringByAddingStandardPercentEscapesToURL", stringByAddingStandardPercentEscapesToURL},
    {"stringURLByRemovingEmptyParams", stringURLByRemovingEmptyParams},
};

/// Lets each request for memory fail in turn, until none does. `isAnswered()` says whether the answer is the
/// one without memory.
void expectAnswerWithoutMemory(const std::function<bool()> &isAnswered) {
  ASSERT_FALSE(isAnswered()) << "with memory";
  for (std::size_t first = 0;; ++first) {
    bool isExpected = false, hasFailed = false, hasRaised = false;
    {
      const FailingAllocations failing(first);
      try {
        isExpected = isAnswered();
      } catch (const std::exception &) {
        hasRaised = true;
      }
      hasFailed = failing.haveHappened();
    }
    ASSERT_FALSE(hasRaised) << "at request " << first;
    if (!hasFailed) {
      EXPECT_GT(first, 0u) << "needs no memory";
      return;
    }
    ASSERT_TRUE(isExpected) << "at request " << first;
  }
}

TEST(OutOfMemory, FunctionsAnswerTheString) {
  const NSString text = longText();
  for (const auto &[name, call] : kAnsweringTheString) {
    SCOPED_TRACE(name);
    expectAnswerWithoutMemory([&text, &function = call] { return function(text).identicalTo(text); });
  }
}

TEST(OutOfMemory, SearchesMissAndOthersAnswerNothing) {
  const NSString text = longText();
  const NSString backward = exactString(u"b" + std::u16string(5000, u'a')),
                 wantedBackward = exactString(u"b" + std::u16string(100, u'a')),
                 runs = exactString(std::u16string(3000, u'a') + u"b" + std::u16string(3000, u'a')),
                 wanted = exactString(std::u16string(100, u'a') + u"b");
  const NSString marks = exactString(u"e" + std::u16string(300, u'\u0301'));
  const NSString query = u"http://h/p?a=1&b=2"_ns, escapes = u"  http://h/<a>  "_ns;
  const char bytes[] = "bytes";
  const struct {
    const char *name;
    std::function<bool()> isNothing;
  } functions[] = {
      {"containsSubstring", [&] { return !containsSubstring(runs, wanted); }},
      {"containsSubstring, no case", [&] { return !containsSubstring(runs, wanted, false); }},
      {"countSubstring", [&] { return countSubstring(runs, wanted, false) == 0; }},
      {"findString",
       [&] {
         return findString(backward, wantedBackward, {0, NSNotFound}, true, FindDirection::kBackward, true)
                    .location == NSNotFound;
       }},
      {"sortLocalized", [&] { return sortLocalizedCaseInsensitiveAscending(marks, u"f"_ns) == NSOrderedSame; }},
      {"comparePaths", [&] { return comparePaths(u"/a/b"_ns, u"/a/c"_ns) == NSOrderedSame; }},
      {"lines", [&] { return lines(text).empty(); }},
      {"configLines", [&] { return configLines(text).empty(); }},
      {"configValueForKey", [] { return !configValueForKey(u"key value"_ns, u"key"_ns); }},
      {"getWordAtIndex", [] { return getWordAtIndex(u"a word"_ns, 3).length() == 0; }},
      {"stringWithCharacter", [] { return !stringWithCharacter(u'a'); }},
      {"stringWithCString", [&] { return !stringWithCString(bytes, 5, NSUTF8StringEncoding); }},
      {"encodebase64", [&] { return !encodebase64(text); }},
      {"decodebase64", [] { return !decodebase64(u"QUJD"_ns); }},
      {"validPathExtension", [] { return validPathExtension(u"a.html"_ns).length() == 0; }},
      {"standardizedPathComponents", [] { return standardizedPathComponents(u"/a/b"_ns).empty(); }},
      {"pathInLibraryDirectory", [] { return !pathInLibraryDirectory(u"a"_ns); }},
      {"queryParams", [&] { return queryParams(query).count() == 0; }},
      {"queryParamNamed", [&] { return !queryParamNamed(query, u"b"_ns); }},
      {"normalizedStringURL", [&] { return !normalizedStringURL(escapes); }},
      {"normalizedRelLink", [] { return !normalizedRelLink(u"a"_ns); }},
  };
  for (const auto &[name, isNothing] : functions) {
    SCOPED_TRACE(name);
    expectAnswerWithoutMemory(isNothing);
  }
}

TEST(OutOfMemory, SearchesOfUnitsNeedNoMemory) {
  const NSString text = exactString(std::u16string(9000, u'a') + u"b"),
                 wanted = exactString(std::u16string(1000, u'a') + u"b");
  const auto find = [&](auto search) {
    return search(text.characters(), text.length(), wanted.characters(), wanted.length());
  };
  const unichar *const found = text.characters() + text.length() - wanted.length();
  find(fastCaseInsensitiveContainsUnichars);
  const FailingAllocations failing(0);
  EXPECT_EQ(find(fastContainsUnichars), found);
  EXPECT_EQ(find(fastCaseInsensitiveContainsUnichars), found);
  EXPECT_EQ(findOneOf(text, kList, true), 0u);
  EXPECT_TRUE(hasSuffixNoCase(text, wanted));
}

}  // namespace
}  // namespace nimbo
