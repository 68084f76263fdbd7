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

/// Mends what goes wrong when links are typed or pasted: an escaped quote in front, with the one at the end;
/// ":http://" and "ttp://"; a doubled beginning as "hhttp:", "http://http://" or "http://%20http://"; a web
/// page as "mailto:http://"; "emailto:". All of them where several stand together; "https" as "http". In any
/// case. The string itself when nothing is wrong. `string` is as `normalizedStringURL` gives it.
NSString repairedStringURL(const NSString &string);

/// The string with the two slashes that browsers read into one of the schemes http, https and ftp: "http:/h/"
/// and "https:h" mean "http://h/" and "https://h", unless the page has the same scheme: they then lead to "/h/"
/// and "h" from there. More slashes than two count as two; so do those of "///h/" where the page has one of
/// these schemes. The string itself when that changes nothing. `baseScheme` is the page's, or empty.
NSString stringURLWithTwoSlashes(const NSString &string, std::u16string_view baseScheme);

/// Whether the functions above are sure to leave the string and it is no foreign link, by one quick look;
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
