// SPDX-License-Identifier: Apache-2.0
//
// Lines, words and links in text. Ranges are {NSNotFound, 0} when nothing stands at the index or the index is
// not below the length; strings are then empty (nil for nil). Any thread may ask.
//
//     lines(u"one\r\ntwo\n"_ns).size();  // 2
//     firstWord(u"Hello, world"_ns);  // "Hello"
//     getLinkAtIndex(u"see www.example.org."_ns, 6);  // "www.example.org"
#pragma once

#include <cstdint>
#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// The texts between line breaks (CR LF is one). A break at the end begins no further line; an empty or nil
/// string has none.
std::vector<NSString> lines(const NSString &string);
/// How many `lines` there are.
std::uint32_t numberOfLines(const NSString &string);
/// The text in front of the first line break; the string itself when it has none.
NSString firstLine(const NSString &string);
/// Whether there is a line break.
bool hasFeedOfLine(const NSString &string);
/// The first line break, CR LF in one; empty when there is none, nil for nil.
NSString feedOfLine(const NSString &string);

/// How many runs of units of the alphaNum set there are.
std::uint32_t numberOfWordsUsingDefaultSeparation(const NSString &string);
/// The run of units of the alphaNum set around the index.
NSRange getWordRangeAtIndex(const NSString &string, std::uint32_t index);
/// The text at `getWordRangeAtIndex`.
NSString getWordAtIndex(const NSString &string, std::uint32_t index);
/// The word at index 0: empty when the string begins with another unit.
NSString firstWord(const NSString &string);
/// The word at NSNotFound, which is always empty.
NSString lastWord(const NSString &string);

/// The run of units around the index that are none of `separators`: nothing when these are nil, the whole
/// string when they are empty.
NSRange getSubstringRangeAtIndex(const NSString &string, std::uint32_t index, const NSString &separators);
/// The text at `getSubstringRangeAtIndex`.
NSString getSubstringAtIndex(const NSString &string, std::uint32_t index, const NSString &separators);

/// What looks like a link around the index: from behind a white character or "<" up to one or ">", without
/// punctuation at its end.
/// At an "@" it is a mail address, which ends at brackets, quotation marks and the like too.
NSRange getLinkRangeAtIndex(const NSString &string, std::uint32_t index);
/// The text at `getLinkRangeAtIndex`.
NSString getLinkAtIndex(const NSString &string, std::uint32_t index);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
