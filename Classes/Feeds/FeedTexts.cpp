// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/FeedTexts.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/Entities/EntityConversion.hpp"
#include "Classes/Entities/EntityTable.hpp"
#include "Classes/Markup/ScanTags.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/NumericReference.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo::detail {

namespace {

/// Shorter texts hold no reference.
constexpr std::size_t kShortestReference = 4;

/// A reference and what it stands for; of no units when there is none.
struct Reference {
  std::size_t length = 0;
  char32_t character = 0;
};

char32_t characterNamed(std::u16string_view name) {
  constexpr std::pair<std::u16string_view, char32_t> kXMLNames[] = {
      {u"amp", U'&'}, {u"lt", U'<'}, {u"gt", U'>'}, {u"quot", U'"'}, {u"apos", U'\''}};
  for (const auto &[known, character] : kXMLNames)
    if (name == known) return character;
  if (name.size() <= EntityKey::kMaxLength) {
    EntityKey key;
    for (const unichar c : name) key.append(static_cast<std::uint8_t>(c));
    return characterOfEntity(key);
  }
  for (std::size_t i = 0; i < kEntityCount; ++i)
    if (std::ranges::equal(name, std::string_view(entityStrings[i]))) return entityCharacters[i];
  return 0;
}

/// The text begins with "&".
Reference referenceAt(std::u16string_view text) {
  constexpr std::size_t kLongestName = 8;
  // Escaped markup is full of these.
  if (text.size() > 3 && text[2] == u't' && text[3] == u';' && (text[1] == u'l' || text[1] == u'g'))
    return {4, text[1] == u'l' ? U'<' : U'>'};
  if (text.size() > 2 && text[1] == u'#') {
    const NumericReference number = numericReferenceAt(text);
    return {number.length, number.character};
  }
  const std::size_t most = std::min(text.size(), kLongestName + 2);
  std::size_t end = 1;
  while (end < most && isASCIIAlphanumeric(text[end])) ++end;
  if (end == most || text[end] != u';') return {};
  const char32_t character = characterNamed(text.substr(1, end - 1));
  return character ? Reference{end + 1, character} : Reference{};
}

std::uint32_t lengthOf(std::u16string_view units) {
  return static_cast<std::uint32_t>(units.size());
}

/// Appends the text with its references decoded, once.
void appendDecoded(NSMutableString &result, std::u16string_view text) {
  const std::uint32_t before = result.length();
  // No reference is shorter than what it stands for.
  result.setLength(before + lengthOf(text));
  unichar *const units = result.mutableCharacters();
  if (!units) return;
  unichar *out = units + before;
  const unichar *from = text.data(), *const end = from + text.size();
  while (from < end) {
    if (*from != u'&') {
      *out++ = *from++;
      continue;
    }
    const auto [length, character] = referenceAt({from, static_cast<std::size_t>(end - from)});
    if (length == 0)
      *out++ = *from++;
    else
      out += putUTF16(character, out);
    from += length;
  }
  result.setLength(static_cast<std::uint32_t>(out - units));
}

void append(NSMutableString &result, std::u16string_view text, Decoding decoding) {
  if (decoding == Decoding::kNone || text.size() < kShortestReference) return result.append(text);
  if (decoding == Decoding::kReferences) return appendDecoded(result, text);
  const std::uint32_t before = result.length(), length = lengthOf(text);
  result.append(text);
  unichar *const units = result.mutableCharacters() + before;
  result.setLength(before + (decoding == Decoding::kEntities
                                 ? convertEntities2Characters(units, units, 0, length, true, false, false)
                                 : convertStandardEntities2Characters(units, units, length)));
}

/// Whether the text has no unit that a reference, a section or a tag begins with.
bool isLiteral(std::u16string_view text) {
  // To prepare a search takes longer than such a text.
  constexpr std::size_t kShort = 64;
  if (text.size() < kShort) return std::ranges::none_of(text, [](unichar c) { return c == u'&' || c == u'<'; });
  return findUnichar(text.data(), lengthOf(text), u'&') == NSNotFound &&
         findUnichar(text.data(), lengthOf(text), u'<') == NSNotFound;
}

/// Whether the text may have a CDATA section. Its last unit is searched for, a rare one.
bool mayHaveSection(std::u16string_view text) {
  constexpr std::size_t kBracket = kCDATAStart.size() - 1;
  for (std::size_t at = kBracket; at < text.size(); ++at) {
    const std::uint32_t found =
        findUnichar(text.data() + at, lengthOf(text) - static_cast<std::uint32_t>(at), kCDATAStart[kBracket]);
    if (found == NSNotFound) break;
    at += found;
    if (text.substr(at - kBracket, kCDATAStart.size()) == kCDATAStart) return true;
  }
  return false;
}

/// What stands in a section, whose end may be missing.
std::u16string_view textOfSection(std::u16string_view section) {
  section.remove_prefix(kCDATAStart.size());
  if (section.ends_with(kCDATAEnd)) section.remove_suffix(kCDATAEnd.size());
  return section;
}

/// Calls `take(part, isSection)` for the parts of the text inside and outside of CDATA sections.
template <class Take>
void forEachPart(std::u16string_view text, Take take) {
  const unichar *start = text.data();
  scanXMLTags(text, [&](const TagShape &tag) {
    if (tag.kind() != kClosingCall && !tag.isCDATASection()) return;
    take(between(start, tag.tag().data()), false);
    if (tag.isCDATASection()) take(textOfSection(tag.tag()), true);
    start = endOf(tag.tag());
  });
}

NSString trimmedString(NSMutableString &&text) {
  const std::u16string_view inner = withoutWhiteEnds(text.view());
  if (inner.size() == text.length()) return std::move(text).string();
  return NSString::stringWithCharacters(inner);
}

}  // namespace

TextForm textFormOfTag(std::u16string_view tag) {
  const std::u16string_view type = attributeOfTag(tag, "type"), mode = attributeOfTag(tag, "mode");
  if (equalsASCIINoCase(mode, "base64")) return TextForm::kBase64;
  if (type.empty()) return TextForm::kUnknown;
  const bool isXML = equalsASCIINoCase(type, "xhtml") || endsWithASCIINoCase(type, "xml");
  if (isXML) return equalsASCIINoCase(mode, "escaped") ? TextForm::kMarkup : TextForm::kInline;
  if (equalsOneOfASCIINoCase(type, {"html", "text/html"})) return TextForm::kMarkup;
  if (equalsOneOfASCIINoCase(type, {"text", "text/plain"})) return TextForm::kPlain;
  return startsWithASCIINoCase(type, "text/") || type.find(u'/') == type.npos ? TextForm::kUnknown
                                                                              : TextForm::kBase64;
}

NSString feedText(std::u16string_view units, Decoding decoding) {
  units = withoutWhiteEnds(units);
  if (isLiteral(units)) return NSString::stringWithCharacters(units);
  const bool hasReferences =
      decoding != Decoding::kNone && findUnichar(units.data(), lengthOf(units), u'&') != NSNotFound;
  if (!hasReferences && !mayHaveSection(units)) return NSString::stringWithCharacters(units);
  NSMutableString text;
  text.reserve(units.size());
  const Decoding inSections = decoding == Decoding::kReferences ? Decoding::kNone : decoding;
  bool hasSection = false;
  forEachPart(units, [&](std::u16string_view part, bool isSection) {
    hasSection = hasSection || isSection;
    append(text, part, isSection ? inSections : decoding);
  });
  // White space at the ends of a section is the element's; what a reference stands for is not.
  return hasSection ? trimmedString(std::move(text)) : std::move(text).string();
}

NSString inlineText(std::u16string_view units) {
  units = withoutWhiteEnds(units);
  if (!mayHaveSection(units)) return NSString::stringWithCharacters(units);
  NSMutableString text;
  forEachPart(units, [&](std::u16string_view part, bool isSection) {
    if (!isSection) return text.append(part);
    for (const unichar c : part) {
      if (c == u'<')
        text.append(u"&lt;");
      else if (c == u'&')
        text.append(u"&amp;");
      else
        text.appendCharacter(c);
    }
  });
  return trimmedString(std::move(text));
}

std::u16string_view withoutEnclosingDiv(std::u16string_view markup) {
  const std::u16string_view whole = withoutWhiteEnds(markup);
  int depth = 0;
  std::size_t start = 0, end = whole.npos;
  scanXMLTags(whole, [&](const TagShape &tag) {
    if (!tag.isOrdinary()) return false;
    const std::u16string_view name = tag.name();
    if (!equalsASCIINoCase(name.substr(std::min(name.find(u':') + 1, name.size())), "div")) return depth == 0;
    if (depth == 0 && (tag.tagRange().location != 0 || !tag.isStartTag())) return true;
    if (depth == 0) start = tag.tag().size();
    depth += tag.depthChange();
    if (depth == 0 && tag.tagRange().location + tag.tagRange().length == whole.size())
      end = tag.tagRange().location;
    return depth == 0;
  });
  return end == whole.npos ? markup : withoutWhiteEnds(whole.substr(start, end - start));
}

NSString textWithoutTags(std::u16string_view units) {
  NSMutableString text;
  scanXMLTags(units, [&](const TagShape &tag) {
    text.append(tag.text());
    if (tag.isCDATASection()) text.append(tag.tag());
  });
  return feedText(text.view(), Decoding::kReferences);
}

NSString firstText(std::u16string_view units) {
  const unichar *start = units.data();
  std::u16string_view first;
  scanXMLTags(units, [&](const TagShape &tag) {
    if (!tag.isOrdinary()) return false;
    first = withoutWhiteEnds(between(start, tag.tag().data()));
    if (!first.empty() && start == units.data()) first = units;
    start = endOf(tag.tag());
    return !first.empty();
  });
  return textWithoutTags(first.empty() ? units : first);
}

NSString plainText(const NSString &text, bool isPlain) {
  if (isPlain || text.view().find_first_of(u"<&") == std::u16string_view::npos) return text;
  NSMutableString stripped;
  scanTags(text, [&](const TagShape &tag) { stripped.append(tag.text()); });
  return feedText(stripped.view(), Decoding::kReferences);
}

std::u16string_view withoutWhiteEnds(std::u16string_view text) {
  const auto isGraphic = [](unichar c) { return c > u' ' && c < 0x7f; };
  if (!text.empty() && isGraphic(text.front()) && isGraphic(text.back())) return text;
  static const CharacterSetRep &white = *whiteCharacterSetRep();
  return trimmed(text, [](unichar c) { return white.contains(c); });
}

}  // namespace nimbo::detail
