// SPDX-License-Identifier: Apache-2.0
//
// URLs as people type them, mended. Any thread may mend them.
//
//     repairedStringURL(u"ttp://example.org"_ns);  // "http://example.org"
//     ASCIIStringURL(u"http://bücher.de/ä"_ns, NSUTF8StringEncoding);  // "http://xn--bcher-kva.de/%C3%A4"
//     isForeignLink(u"mailto:me@example.org"_ns);  // true
#pragma once

#include <string_view>

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The URL without what is wrong in front of it: an escaped quote, the first letter of "hhttp:" and "emailto:",
/// and all that stands before the last of several beginnings of web pages. Between these stand colons, slashes
/// and blanks, as they are or escaped, "ttp:" and "mailto:"; the last is "http:" or "https:" with at least two
/// slashes. "\" is as good as "/". In any case. What begins with a single "/" is a path, and stays.
std::u16string_view withoutWrongBeginning(std::u16string_view url NIMBO_LIFETIMEBOUND);

/// Mends what goes wrong when links are typed or pasted: what `withoutWrongBeginning` drops, with the escaped
/// quote at the end; "ttp://" without its "h".
///
/// It has then the two slashes that browsers read into one of the schemes http, https and ftp: "http:/h/" and
/// "https:h" mean "http://h/" and "https://h", unless the page has the same scheme: they then lead to "/h/" and
/// "h" from there. More slashes than two count as two; so do those of "///h/" where the page has one of these
/// schemes.
///
/// The string itself when nothing is wrong. `string` is as `normalizedStringURL` gives it, `baseScheme` the
/// page's, or empty.
NSString repairedStringURL(const NSString &string, std::u16string_view baseScheme = {});

/// Whether `repairedStringURL` is sure to leave the string and it is no foreign link, by one quick look;
/// `false` says nothing.
bool isUsualLink(std::u16string_view link);

/// Whether the string begins with the scheme of a link that is no address in the web, as "mailto:" or "irc:".
/// In these a "#" or a "." has another meaning.
bool isForeignLink(const NSString &string);

/// The string as a URL may be written, in ASCII: with escapes for what is not allowed where it stands, and for
/// each "%" that begins none. A host becomes its ASCII form. What is not ASCII is escaped as UTF-8; in a query
/// in `encoding`, as servers expect it, if that has the characters and contains ASCII. Lone surrogates count as
/// U+FFFD. Nil for nil and for a host that has no ASCII form. The result may still be no URL, when the port is
/// no number, say.
NSString ASCIIStringURL(const NSString &string, NSStringEncoding encoding);

}  // namespace nimbo
