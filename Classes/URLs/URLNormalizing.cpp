// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/URLNormalizing.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Characters/AsciiSetKernels.hpp"
#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Entities/EntityConversion.hpp"
#include "Classes/URLs/URLEscapes.hpp"
#include "Classes/URLs/URLEscaping.hpp"
#include "Classes/URLs/URLRepair.hpp"
#include "Classes/URLs/URLStringParts.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/URLs/URLScheme.hpp"
#include "platform/Foundation/Unicode/CharacterReferences.hpp"

namespace nimbo {

namespace {

using detail::AsciiSet;

/// Up to this length the work is done on the stack.
constexpr std::uint32_t kStackLength = 256;

/// What may not stand in a URL. "[" and "]" may in its host.
constexpr auto kIsEscaped = [](unichar c) {
  return c <= u' ' || c == 0x7f || c == u'"' || c == u'<' || c == u'>' || c == u'[' || c == u'\\' || c == u']';
};
constexpr AsciiSet kEscapedUnits = AsciiSet::of(kIsEscaped);

/// What asks for a closer look; with the anchor, too, when it is trimmed.
constexpr auto kIsSpecial = [](unichar c) { return kIsEscaped(c) || c == u'%' || c == u'&'; };
constexpr AsciiSet kSpecialUnits = AsciiSet::of(kIsSpecial, true);
constexpr AsciiSet kSpecialUnitsAndAnchor =
    AsciiSet::of([](unichar c) { return kIsSpecial(c) || c == u'#'; }, true);

/// Line breaks and what looks like nothing. End of text is a line break elsewhere, and a control character
/// here.
constexpr bool isDropped(unichar c) {
  return c == u'\t' || (isLineBreak(c) && c != 0x0003);
}

constexpr AsciiSet kDroppedUnitsAndOthers = AsciiSet::of(isDropped, true);

/// Copies units, which may be where they are copied to, without those that are dropped; answers how many are
/// left.
std::uint32_t copyWithoutDropped(std::u16string_view units, unichar *out) {
  const std::size_t clean = detail::findOneOfAsciiSet(units.data(), units.size(), kDroppedUnitsAndOthers);
  if (out != units.data()) std::copy_n(units.data(), clean, out);
  unichar *end = out + clean;
  for (const unichar c : units.substr(clean))
    if (!isDropped(c)) *end++ = c;
  return static_cast<std::uint32_t>(end - out);
}

/// Converts in place the references of an attribute's value as browsers do; answers how many units are left.
std::uint32_t convertReferencesOfAttribute(unichar *units, std::uint32_t length) {
  unichar *out = units;
  for (std::u16string_view rest(units, length); !rest.empty();) {
    const std::size_t plain = std::min(rest.find(u'&'), rest.size());
    out = std::copy_n(rest.data(), plain, out);
    rest.remove_prefix(plain);
    if (rest.empty()) break;
    const CharacterReference reference = readCharacterReference(rest, true);
    const std::size_t read = std::max(reference.length, 1U);
    out = std::ranges::copy(reference.length > 0 ? reference.view() : rest.substr(0, 1), out).out;
    rest.remove_prefix(read);
  }
  return static_cast<std::uint32_t>(out - units);
}

constexpr AsciiSet kMarks = AsciiSet::of([](unichar c) { return c == u'"' || c == u'>'; });

bool beginsWithEscapedQuote(std::u16string_view url) {
  return url.starts_with(u"\\\"");
}

/// The run without the quote at the end, if there is one, and the backslash before it.
std::u16string_view withoutLastQuote(std::u16string_view url) {
  if (!url.ends_with(u'"')) return url;
  url.remove_suffix(1);
  if (url.ends_with(u'\\')) url.remove_suffix(1);
  return url;
}

/// The run without what stands around the URL. When `marksEnd`, a quote or ">" ends it, unless its scheme's
/// URLs are text.
std::u16string_view trimmedURL(std::u16string_view url, bool marksEnd) {
  const auto white = [](unichar c) { return c <= u' ' || (c >= 0x80 && isWhite()(c)); };
  bool isQuoted = false, isBracketed = false;
  for (; !url.empty(); url.remove_prefix(1)) {
    if (beginsWithEscapedQuote(url)) url.remove_prefix(1);
    const unichar first = url.front();
    if (first == u'"')
      isQuoted = true;
    else if (first == u'<')
      isBracketed = true;
    else if (!white(first))
      break;
  }
  const std::size_t mark = marksEnd ? detail::findOneOfAsciiSet(url.data(), url.size(), kMarks) : url.size();
  if (mark < url.size() && !isTextScheme(schemeOfStringURL(url)))
    url = url[mark] == u'"' ? withoutLastQuote(url.substr(0, mark + 1)) : url.substr(0, mark);
  for (;;) {
    while (!url.empty() && white(url.back())) url.remove_suffix(1);
    const std::size_t length = url.size();
    if (isQuoted) url = withoutLastQuote(url);
    if (isBracketed && url.ends_with(u'>')) url.remove_suffix(1);
    if (url.size() == length) return url;
  }
}

/// What browsers read as the authority, also with too few or too many slashes in front of it.
std::u16string_view authorityOf(std::u16string_view url, const URLStringParts &parts) {
  if (parts.pathStart > parts.authorityStart)
    return url.substr(parts.authorityStart, parts.pathStart - parts.authorityStart);
  const bool isRelative = parts.schemeLength == 0 && parts.authorityStart > 0;
  std::u16string_view path = url.substr(parts.pathStart, parts.queryStart - parts.pathStart);
  if (!isRelative && !isSlashedScheme(url.substr(0, parts.schemeLength))) return path.substr(0, 0);
  path.remove_prefix(std::min(path.find_first_not_of(u"/\\"), path.size()));
  return path.substr(0, path.find_first_of(u"/\\"));
}

/// The IPv6 address in brackets that is the URL's host, or no units of it.
std::u16string_view bracketedHost(std::u16string_view url, const URLStringParts &parts) {
  std::u16string_view host = authorityOf(url, parts);
  host.remove_prefix(startOfHost(host));
  const std::size_t end = host.find(u']');
  if (!host.starts_with(u'[') || end == host.npos) return host.substr(0, 0);
  const std::u16string_view address = host.substr(1, end - 1);
  const auto isPartOfAddress = [](unichar c) { return c == u':' || c == u'.' || isASCIIHexDigit(c); };
  const bool isAddress = address.find(u':') != address.npos && std::ranges::all_of(address, isPartOfAddress);
  return host.substr(0, isAddress ? end + 1 : 0);
}

/// Writes the URL with "\" turned round and with escapes, and answers the length. `out` may lie before the URL
/// if there are at least twice as many units between them.
std::uint32_t writeEscapedURL(std::u16string_view url, unichar *out) {
  const std::u16string_view meant = withoutWrongBeginning(url);
  const URLStringParts parts = partsOfURLString(meant);
  const std::u16string_view host = bracketedHost(meant, parts);
  const std::size_t slashesEnd = parts.isHierarchical ? url.size() - meant.size() + parts.queryStart : 0;
  const auto hostStart = static_cast<std::size_t>(host.data() - url.data()), hostEnd = hostStart + host.size();
  const unichar *const start = out;
  for (std::size_t read = 0;; ++read) {
    const std::size_t count = detail::findOneOfAsciiSet(url.data() + read, url.size() - read, kEscapedUnits);
    out = std::copy_n(url.data() + read, count, out);
    read += count;
    if (read == url.size()) return static_cast<std::uint32_t>(out - start);
    const unichar unit = url[read];
    if (read >= hostStart && read < hostEnd)
      *out++ = unit;
    else if (unit == u'\\' && read < slashesEnd)
      *out++ = u'/';
    else
      out = writeEscape(unit, out);
  }
}

}  // namespace

bool isPlainURL(const unichar *units, std::uint32_t length, Flag trimAnchor) {
  const AsciiSet &special = trimAnchor ? kSpecialUnitsAndAnchor : kSpecialUnits;
  return length > 0 && detail::findOneOfAsciiSet(units, length, special) == length;
}

std::uint32_t normalizeURLUnits(const unichar *units, std::uint32_t length, Flag trimAnchor, unichar *out,
                                Flag preservingMeaning) {
  if (isPlainURL(units, length, trimAnchor)) {
    std::copy_n(units, length, out);
    return length;
  }
  // The URL is worked on at the end of `out`, so that it can grow towards there when it is written at the
  // front.
  unichar *const work = out + (kMaxURLGrowth - 1) * std::size_t{length};
  std::uint32_t workLength = copyWithoutDropped(trimmedURL({units, length}, !preservingMeaning), work);
  if (findUnichar(work, workLength, u'&') != NSNotFound) {
    workLength = preservingMeaning ? convertReferencesOfAttribute(work, workLength)
                                   : convertEntities2Characters(work, work, 0, workLength, true, false, false);
    workLength = copyWithoutDropped({work, workLength}, work);
  }
  std::u16string_view url(work, workLength);
  if (trimAnchor) url = url.substr(0, url.find(u'#'));
  url = trimmedURL(url, false);
  unichar *const start = work + (url.data() - work);
  const auto urlLength = static_cast<std::uint32_t>(url.size());
  return writeEscapedURL({start, preservingMeaning ? convertPercentEscapesPreservingMeaning(start, urlLength)
                                                   : convertPercentEscapesOfURL(start, urlLength, true)},
                         out);
}

std::uint32_t cleanURLUnits(const unichar *units, std::uint32_t length, unichar *out) {
  unichar *const work = out + (kMaxURLGrowth - 1) * std::size_t{length};
  const std::uint32_t workLength = copyWithoutDropped(trimmedURL({units, length}, false), work);
  return writeEscapedURL(trimmedURL({work, workLength}, false), out);
}

NSString stringURLWrittenBy(URLUnitsWriter write, const NSString &string) {
  const std::uint32_t length = string.length();
  if (length > kMaxNormalizedURLLength) return {};
  const auto result = [&](std::u16string_view url) {
    if (url.empty()) return NSString();
    return url == string.view() ? string : NSString::stringWithCharacters(url);
  };
  return answerOr(NSString(), [&] {
    if (length <= kStackLength) {
      std::array<unichar, std::size_t{kMaxURLGrowth} * kStackLength> out;
      return result({out.data(), write(string.characters(), length, out.data())});
    }
    NSMutableString out;
    out.setLength(kMaxURLGrowth * length);
    return result({out.characters(), write(string.characters(), length, out.mutableCharacters())});
  });
}

}  // namespace nimbo
