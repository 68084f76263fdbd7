// SPDX-License-Identifier: Apache-2.0
//
// Markup with some of it taken out. Any thread may call these.
//
//     const NSString words = stripTags(u"<p>Hello <b>you</b>"_ns);
//     const NSString plain = stripAttributesOfTag(page, "P");
//     const NSString rest = stripTagBodies(page, {u"<nav"_ns, u"<footer"_ns});
#pragma once

#include <vector>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace HtmlExtensions {

// Each answers nil for nil. When there is no memory for the result it answers the string itself, but
// `stripTagBodiesExcept` nil.

/// The text runs alone, each behind a space unless the text in front of it ends in white space; the first too.
/// Entities stay. A new string in any case.
NSString stripTags(const NSString &string);

/// Without the start and end tags of a name, which is ASCII in upper case. The string itself when it has no
/// such tag, and when the name is null or empty.
NSString stripTag(const NSString &string, const char *name);

/// As `stripTag`, but the tags lose only their attributes: what is left is written as "<NAME>", "</NAME>" or,
/// where the tag has a link or a source, "<NAME HREF="...">" or "<NAME SRC="...">". An empty-element tag
/// without either goes.
NSString stripAttributesOfTag(const NSString &string, const char *name);

/// Without the elements whose start tags begin with one of the names, and without all that is in them. Names
/// are given with their "<", as "<div"; case does not count, and empty names do not either. An element that
/// never ends reaches to the end of the string, and so does, unless a later "<script/>" ends it, a "script" or
/// "style" element. The string itself when it or `names` is empty.
NSString stripTagBodies(const NSString &string, const std::vector<NSString> &names);

/// Only the elements that `stripTagBodies` takes out, a line feed behind each; nil when there is none, and when
/// the string or `names` is empty.
NSString stripTagBodiesExcept(const NSString &string, const std::vector<NSString> &names);

/// With `except` as `stripTagBodiesExcept`, else as `stripTagBodies` of two parameters.
NSString stripTagBodies(const NSString &string, const std::vector<NSString> &names, Flag except);

/// Without embedded objects, as `StripObjectsHandler` tells, their "ALT" or "TITLE" text in their place. The
/// string itself when it has none.
NSString stripObjects(const NSString &string);

}  // namespace HtmlExtensions
}  // namespace nimbo
