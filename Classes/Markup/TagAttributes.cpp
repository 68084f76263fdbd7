// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/TagAttributes.hpp"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/UnicharKernels.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

/// A tag must have more units than its name and these, as in "<a x=".
constexpr std::uint32_t kTagSlack = 5;

/// How an attribute is written.
struct Syntax {
  std::uint32_t slack;
  unichar separator;
  unichar terminator;
  QuotedValue quoted = QuotedValue::kEndsWithTag;
};

bool isQuote(unichar c) {
  return c == u'"' || c == u'\'';
}

/// The index of the first unit of the choice; the length when there is none. Values are short or very long.
std::size_t findOneOf(std::u16string_view units, const detail::UnicharChoice &choice) {
  constexpr std::size_t kNearby = 16;
  std::size_t i = 0;
  for (const std::size_t near = std::min(units.size(), kNearby); i < near; ++i)
    if (units[i] == choice.units[0] || units[i] == choice.units[1]) return i;
  return i + detail::findOneOfChoice(units.data() + i, units.size() - i, choice);
}

/// Reads one attribute out of a tag; `Element` is what its name is made of.
template <class Element>
class AttributeReader {
 public:
  AttributeReader(std::u16string_view tag, std::basic_string_view<Element> name, const Syntax &syntax)
      : tag_(tag), name_(name), syntax_(syntax) {}

  /// A part of the tag, empty when there is no value.
  std::u16string_view value() const {
    if (name_.empty() || name_.size() + syntax_.slack >= tag_.size()) return {};
    const std::optional<std::size_t> start = startOfValue();
    if (!start) return {};
    const std::size_t unquoted = *start + isQuote(tag_[*start]);
    std::size_t end = unquoted == *start ? endOfPlainValue(*start) : endOfQuotedValue(unquoted, tag_[*start]);
    while (end > unquoted && whites_.contains(tag_[end - 1])) --end;
    return tag_.substr(unquoted, end - unquoted);
  }

 private:
  std::optional<std::size_t> startOfValue() const {
    const std::size_t lastStart = tag_.size() - name_.size() - 1;
    const unichar firstOfName = upper_[static_cast<unichar>(name_[0])];
    // It never goes back: white space behind names that are made of it is passed only once.
    std::size_t separator = 0;
    for (std::size_t i = 0; i <= lastStart; ++i) {
      if (isQuote(tag_[i])) {
        const std::u16string_view rest = tag_.substr(i + 1, lastStart - i);
        i += 1 + findOneOf(rest, detail::UnicharChoice::only(tag_[i]));
      } else if (upper_[tag_[i]] == firstOfName && isNameAt(i)) {
        separator = skipWhite(std::max(separator, i + name_.size()));
        if (separator == tag_.size() || tag_[separator] != syntax_.separator) continue;
        const std::size_t start = skipWhite(separator + 1);
        return start < tag_.size() ? std::optional(start) : std::nullopt;
      }
    }
    return std::nullopt;
  }

  bool isNameAt(std::size_t place) const {
    for (std::size_t i = 0; i < name_.size(); ++i) {
      if (upper_[tag_[place + i]] != upper_[static_cast<unichar>(name_[i])]) return false;
    }
    return place == 0 || !alphaNums_.contains(tag_[place - 1]);
  }

  std::size_t skipWhite(std::size_t i) const {
    while (i < tag_.size() && whites_.contains(tag_[i])) ++i;
    return i;
  }

  std::size_t endOfPlainValue(std::size_t i) const {
    while (i < tag_.size() && tag_[i] != syntax_.terminator && !whites_.contains(tag_[i])) ++i;
    return i;
  }

  std::size_t endOfQuotedValue(std::size_t start, unichar quote) const {
    if (syntax_.quoted == QuotedValue::kMayHoldTags) return endOfTolerantValue(start, quote);
    const unichar end = syntax_.terminator;
    return start + findOneOf(tag_.substr(start), {2, {quote, end, quote, quote}});
  }

  std::size_t endOfTolerantValue(std::size_t start, unichar quote) const {
    int openTags = 0;
    for (std::size_t i = start; i < tag_.size(); ++i) {
      if (tag_[i] == quote) return openTags == 1 ? withoutOpening(start, i) : i;
      if (tag_[i] == u'<') {
        if (isMetaAt(i + 1)) return i;
        ++openTags;
      } else if (tag_[i] == u'>' && i > start && --openTags < 0) {
        return i;
      }
    }
    return tag_.size();
  }

  bool isMetaAt(std::size_t place) const {
    constexpr std::u16string_view kMeta = u"META";
    return tag_.size() - place >= kMeta.size() &&
           std::equal(kMeta.begin(), kMeta.end(), tag_.begin() + static_cast<std::ptrdiff_t>(place),
                      [this](unichar expected, unichar c) { return upper_[c] == expected; });
  }

  /// The end of a value whose end is cut off in front of a "<" or "</" at its end.
  std::size_t withoutOpening(std::size_t start, std::size_t end) const {
    const std::u16string_view value = tag_.substr(start, end - start);
    if (value.ends_with(u"<")) return end - 1;
    return value.ends_with(u"</") ? end - 2 : end;
  }

  const std::u16string_view tag_;
  const std::basic_string_view<Element> name_;
  const Syntax syntax_;
  const unichar *const upper_ = initUpperCharsTable();
  const CharacterSetRep &whites_ = *whiteCharacterSetRep();
  const CharacterSetRep &alphaNums_ = *alphaNumCharacterSetRep();
};

/// Some of the units below U+0040, as bits.
struct Delimiters {
  std::uint64_t bits = 0;

  constexpr explicit Delimiters(std::u16string_view units) {
    for (const unichar c : units) bits |= std::uint64_t{1} << c;
  }
  bool contains(unichar c) const { return c < 64 && (bits >> c & 1) != 0; }
  /// The first index from `i` on of one of them, or of another unit; the length when there is none.
  std::size_t find(std::u16string_view units, std::size_t i) const {
    while (i < units.size() && !contains(units[i])) ++i;
    return i;
  }
  std::size_t findOther(std::u16string_view units, std::size_t i) const {
    while (i < units.size() && contains(units[i])) ++i;
    return i;
  }
};

constexpr Delimiters kBlanks(kMarkupWhiteSpace), kTagNameEnds(u" \t\n\r\f/>"), kNameEnds(u" \t\n\r\f/>="),
    kValueEnds(u" \t\n\r\f>"), kBetweenAttributes(u" \t\n\r\f/");

NSString stringUnlessEmpty(std::u16string_view value) {
  return value.empty() ? NSString() : NSString::stringWithCharacters(value);
}

}  // namespace

std::u16string_view attributeOfTag(std::u16string_view tag, std::string_view name, QuotedValue quoted) {
  return AttributeReader<char>(tag, name, {kTagSlack, u'=', u'>', quoted}).value();
}

TagAttributeReader::TagAttributeReader(std::u16string_view tag)
    : tag_(tag), position_(kTagNameEnds.find(tag, 0)) {}

std::optional<TagAttribute> TagAttributeReader::next() {
  std::size_t start = kBetweenAttributes.findOther(tag_, position_);
  position_ = start;
  // The text of a raw-text element stands behind its start tag.
  if (start == tag_.size() || tag_[start] == u'>') return std::nullopt;
  // A name may begin with "=".
  std::size_t end = kNameEnds.find(tag_, start + 1);
  position_ = end;
  TagAttribute attribute{tag_.substr(start, end - start), {}};
  start = kBlanks.findOther(tag_, end);
  if (start == tag_.size() || tag_[start] != u'=') return attribute;
  start = kBlanks.findOther(tag_, start + 1);
  if (start < tag_.size() && isQuote(tag_[start])) {
    const auto quote = detail::UnicharChoice::only(tag_[start++]);
    end = start + findOneOf(tag_.substr(start), quote);
    position_ = std::min(end + 1, tag_.size());
  } else {
    position_ = end = kValueEnds.find(tag_, start);
  }
  attribute.value = tag_.substr(start, end - start);
  return attribute;
}

std::u16string_view ownAttributeOfTag(std::u16string_view tag, std::string_view lowerCaseName) {
  TagAttributeReader attributes(tag);
  while (const std::optional<TagAttribute> attribute = attributes.next())
    if (equalsASCIINoCase(attribute->name, lowerCaseName)) return attribute->value;
  return {};
}

bool hasAttribute(std::u16string_view tag, std::string_view lowerCaseName) {
  TagAttributeReader attributes(tag);
  while (const std::optional<TagAttribute> attribute = attributes.next())
    if (equalsASCIINoCase(attribute->name, lowerCaseName)) return true;
  return false;
}

NSString _attributeOfTagCharactersWithName(const unichar *characters, std::uint32_t offset,
                                           std::uint32_t length, const char *name, Flag isTolerant) {
  return stringUnlessEmpty(attributeOfTag({characters + offset, length}, name,
                                          isTolerant ? QuotedValue::kMayHoldTags : QuotedValue::kEndsWithTag));
}

NSString _attributeOfStringWithName(const NSString &string, std::uint32_t location, std::uint32_t length,
                                    const NSString &name, std::uint32_t slack, unichar separator,
                                    unichar terminator) {
  if (location >= string.length()) return {};
  return stringUnlessEmpty(AttributeReader<unichar>(string.view().substr(location, length), name.view(),
                                                    {slack, separator, terminator})
                               .value());
}

std::u16string_view fieldOfHeader(std::u16string_view header, std::u16string_view upperCaseName, unichar quote,
                                  HeaderValue value) {
  if (header.size() <= upperCaseName.size()) return {};
  const bool isLenient = value == HeaderValue::kLenient;
  const unichar *const upper = initUpperCharsTable();
  const CharacterSetRep &whites = *whiteCharacterSetRep();
  const auto skipWhite = [&](std::size_t i) {
    while (i < header.size() && whites.contains(header[i])) ++i;
    return i;
  };
  // They never go back: white space behind names that are empty or made of it is passed only once.
  std::size_t separator = 0, start = 0;
  for (std::size_t place = 0; place + upperCaseName.size() < header.size(); ++place) {
    if (!std::equal(upperCaseName.begin(), upperCaseName.end(), header.data() + place,
                    [upper](unichar expected, unichar c) { return upper[c] == expected; })) {
      continue;
    }
    separator = skipWhite(std::max(separator, place + upperCaseName.size()));
    if (separator == header.size() || header[separator] != u'=') continue;
    start = isLenient ? skipWhite(std::max(start, separator + 1)) : separator + 1;
    if (start == header.size()) continue;
    const bool isQuoted = header[start] == quote;
    std::size_t end = start + 1;
    if (isQuoted) {
      end = std::min(header.find(quote, end), header.size());
      if (end == start + 1) continue;
    } else {
      while (end < header.size() && header[end] != u';' && !(isLenient && whites.contains(header[end]))) ++end;
    }
    return header.substr(start + isQuoted, end - start - isQuoted);
  }
  return {};
}

NSString _copyOfAttributeOfString(const NSString &string, const unichar *name, std::uint32_t nameLength,
                                  unichar quote, Flag isLenient) {
  return stringUnlessEmpty(fieldOfHeader(string.view(), {name, nameLength}, quote,
                                         isLenient ? HeaderValue::kLenient : HeaderValue::kStrict));
}

}  // namespace nimbo
