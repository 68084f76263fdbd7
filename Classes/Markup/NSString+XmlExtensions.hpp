// SPDX-License-Identifier: Apache-2.0
//
// Tags, texts and attributes of markup as strings and ranges. Any thread may call these.
//
//     const NSArray texts = getXmlContents(u"<p>one<p>two"_ns);
//     const NSString link = attributeOfTagWithName(u"<a href='page.html'>"_ns, u"href"_ns);
//     const NSString charset = headerCharset(u"text/html; charset=utf-8"_ns);
#pragma once

#include <cstdint>

#include "Classes/Markup/TagScanner.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSArray.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace XmlExtensions {

/// As `GetTagsOfString`, but an `NSException` is caught, logged and answers false. Others pass through.
bool parseXmlWithHandler(const NSString &string, TagHandler handler, void *context, Flag isMutable);

/// The ranges of all tags, comments and marked sections, and those of the texts in front of them; the last tag
/// is an empty one at the end. Answers how many there are, 0 when the string is nil or empty. The arrays are
/// the caller's, to `free`; null when there is nothing or no memory. A range may end one unit behind the
/// string, and a text's length is then "-1" (0xffffffff).
std::uint32_t getXml(const NSString &string, NSRange **tagRanges, NSRange **textRanges);
/// The ranges of the tags alone, as those of `getXml`.
std::uint32_t getXmlTags(const NSString &string, NSRange **tagRanges);
/// The ranges of the texts alone, as those of `getXml`.
std::uint32_t getXmlContents(const NSString &string, NSRange **textRanges);

/// A dictionary for each tag: "Tag" is the tag, "Content" the text in front of it when there is any. The last
/// one stands for the end, with an empty "Tag". An empty array when the string is nil or empty.
NSArray getXml(const NSString &string);
/// The tags as strings, of which none is empty.
NSArray getXmlTags(const NSString &string);
/// The texts between the tags as strings, of which none is empty.
NSArray getXmlContents(const NSString &string);

/// An attribute of the tag that has `length` units, as `attributeOfTag` reads it; nil when the tag has none of
/// that name or it is empty. `name` ends with a zero byte.
NSString attributeOfTagCharacters(const unichar *characters, std::uint32_t length, const char *name);
/// The same of the tag that stands at a range of the units.
NSString attributeOfTagCharacters(const unichar *characters, NSRange range, const char *name);
/// The same of the tag that stands at a range of a string, which is cut to the string's bounds.
NSString attributeOfTagInRange(const NSString &string, NSRange range, const NSString &name);
/// The same of a string that is a tag.
NSString attributeOfTagWithName(const NSString &string, const NSString &name);

/// A property of a list as "style" attributes have it, "name: value; ...", at a range of a string, which is cut
/// to the string's bounds; nil when the list has none of that name or it is empty.
NSString attributeOfStyleInRange(const NSString &string, NSRange range, const NSString &name);
/// The same of a string that is a list of properties.
NSString attributeOfStyleWithName(const NSString &string, const NSString &name);

/// A field of a header's text, as `fieldOfHeader` reads it strictly; `name` must be in upper case. Nil when
/// there is no such field.
NSString headerFieldNamed(const NSString &string, const NSString &name, unichar quotation = u'\'');
/// The character set of a content type, "text/html; charset=utf-8", read leniently; nil when it has none.
NSString headerCharset(const NSString &string);
/// Where a refresh goes, "5; url=page.html", read leniently; nil when it goes nowhere.
NSString headerRefresh(const NSString &string);

}  // namespace XmlExtensions
}  // namespace nimbo
