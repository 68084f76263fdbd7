// SPDX-License-Identifier: Apache-2.0
//
// Replacing texts and units. One thread changes a string at a time.
//
//     NSMutableString text(u"Dear NAME,"_ns);
//     replaceStringWithFormat(text, u"NAME"_ns, u"%@ %@"_ns, {u"Ada"_ns, u"Lovelace"_ns});
//     replaceCharacter(text, u',', u'!');
//     text.view();  // "Dear Ada Lovelace!"
#pragma once

#include <initializer_list>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSMutableStringNimboExtensions {

/// Replaces every occurrence of `replaced`, from left to right; without regard to case by `upperCharsTable`.
/// Changes nothing when either string is nil or `replaced` is empty.
void replaceString(NSMutableString &string, const NSString &replaced, const NSString &withString,
                   Flag caseSensitive = true);
/// Replaces as `replaceString` does with regard to case, by `format`, in which each "%@" stands for the next
/// of the arguments (for nothing when it is nil or there are no more) and "%%" for one "%".
void replaceStringWithFormat(NSMutableString &string, const NSString &replaced, const NSString &format,
                             std::initializer_list<NSString> arguments);

/// Replaces every such unit. Letters are always replaced exactly: the case is disregarded only for characters
/// that have none.
void replaceCharacter(NSMutableString &string, unichar character, unichar withCharacter,
                      Flag caseSensitive = true);

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
