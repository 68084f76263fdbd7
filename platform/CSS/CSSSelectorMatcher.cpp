// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSSelectorMatcher.hpp"

#include <algorithm>
#include <functional>

#include "platform/CSS/CSSSelectorPart.hpp"
#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

using Kind = CSSSelectorPartKind;
using Element = CSSElements::Element;

/// How many attributes or units are compared in the time that a look at an element takes.
constexpr std::size_t kAttributesOfLook = 16, kUnitsOfLook = 16;

/// Whether it is the name of an element that only a script could define.
bool isCustomElementName(std::u16string_view name) {
  return name.find(u'-') != name.npos;
}

/// The names of HTML that pseudo-classes ask for, by their places below.
enum KnownName : std::size_t {
  kA,
  kArea,
  kButton,
  kChecked,
  kContenteditable,
  kDir,
  kDisabled,
  kFieldset,
  kHref,
  kInput,
  kLang,
  kOptgroup,
  kOption,
  kReadonly,
  kRequired,
  kSelect,
  kSelected,
  kTextarea,
  kType,
  kXMLLang,
};
constexpr std::u16string_view kKnownNames[] = {
    u"a",        u"area",     u"button", u"checked",  u"contenteditable", u"dir",      u"disabled", u"fieldset",
    u"href",     u"input",    u"lang",   u"optgroup", u"option",          u"readonly", u"required", u"select",
    u"selected", u"textarea", u"type",   u"xml:lang"};

bool equalsAnyCase(std::u16string_view a, std::u16string_view b) {
  return std::ranges::equal(a, b, {}, toASCIILower<unichar>, toASCIILower<unichar>);
}

bool isEqual(std::u16string_view a, std::u16string_view b, bool ignoresCase) {
  return ignoresCase ? equalsAnyCase(a, b) : a == b;
}

bool containsAnyCase(std::u16string_view text, std::u16string_view part, bool ignoresCase) {
  if (!ignoresCase) return text.find(part) != text.npos;
  const auto isSame = [](unichar a, unichar b) { return toASCIILower(a) == toASCIILower(b); };
  return std::search(text.begin(), text.end(), part.begin(), part.end(), isSame) != text.end();
}

bool containsWord(std::u16string_view text, std::u16string_view word, bool ignoresCase) {
  constexpr std::u16string_view kSpace = u" \t\n\r\f";
  if (word.empty()) return false;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t end = std::min(text.find_first_of(kSpace, i), text.size());
    if (isEqual(text.substr(i, end - i), word, ignoresCase)) return true;
    i = end + 1;
  }
  return false;
}

bool matchesValue(const CSSSelectorPart &part, std::u16string_view value, bool ignoresCase) {
  const std::u16string_view asked = part.text();
  const bool isLongEnough = !asked.empty() && value.size() >= asked.size();
  switch (part.kind) {
    case Kind::kHasAttribute:
      return true;
    case Kind::kAttributeIs:
      return isEqual(value, asked, ignoresCase);
    case Kind::kAttributeHasWord:
      return containsWord(value, asked, ignoresCase);
    case Kind::kAttributeHasDashPrefix:
      return isEqual(value.substr(0, asked.size()), asked, ignoresCase) &&
             (value.size() == asked.size() || value[asked.size()] == u'-');
    case Kind::kAttributeBegins:
      return isLongEnough && isEqual(value.substr(0, asked.size()), asked, ignoresCase);
    case Kind::kAttributeEnds:
      return isLongEnough && isEqual(value.substr(value.size() - asked.size()), asked, ignoresCase);
    default:
      return isLongEnough && containsAnyCase(value, asked, ignoresCase);
  }
}

/// Whether a language such as "de-CH-1996" is of a range such as "de" or "*-CH": subtags may be left out of the
/// range, but not a single letter or digit of the language.
bool isOfLanguageRange(std::u16string_view language, std::u16string_view range) {
  const auto takeSubtag = [](std::u16string_view &text) {
    const std::size_t end = std::min(text.find(u'-'), text.size());
    const std::u16string_view subtag = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return subtag;
  };
  if (language.empty() || range.empty()) return language.empty() && range.empty();
  const std::u16string_view first = takeSubtag(range);
  if (std::u16string_view own = takeSubtag(language); first != u"*" && !equalsAnyCase(own, first)) return false;
  while (!range.empty()) {
    const std::u16string_view asked = takeSubtag(range);
    if (asked == u"*") continue;
    for (;;) {
      if (language.empty()) return false;
      const std::u16string_view own = takeSubtag(language);
      if (equalsAnyCase(own, asked)) break;
      if (own.size() == 1) return false;
    }
  }
  return true;
}

}  // namespace

std::size_t CSSSelectorMatcher::CountedHash::operator()(const Counted &counted) const {
  return std::hash<const void *>()(counted.list) ^
         ((std::uint64_t{counted.parent} << 32 | counted.typeOrLength) * 0x9e3779b97f4a7c15);
}

CSSSelectorMatcher::CSSSelectorMatcher(const CSSElements &elements, std::uint64_t budget)
    : elements_(&elements), budget_(budget) {
  for (const std::u16string_view name : kKnownNames) known_.push_back(elements.names().find(name));
}

bool CSSSelectorMatcher::hasAttribute(const Element &element, std::size_t name) const {
  return known(name) != kNoCSSName && elements_->attribute(element, known(name));
}

bool CSSSelectorMatcher::matches(const CSSSelector &selector, CSSElementIndex element) {
  if (!spend(1)) return false;
  const Element &own = (*elements_)[element];
  for (const std::uint16_t bit : selector.ancestorBits) {
    if (bit == CSSSelector::kNoFilterBit) break;
    if (!elements_->mayHaveAncestor(own, bit)) return false;
  }
  return matchFrom(selector.parts, element) == Outcome::kMatches;
}

CSSSelectorMatcher::Outcome CSSSelectorMatcher::matchFrom(std::span<const CSSSelectorPart> parts,
                                                          CSSElementIndex index) {
  if (depth_ >= kMaximumDepth || !spend(1)) return Outcome::kFails;
  ++depth_;
  Outcome outcome = Outcome::kMatches;
  for (std::size_t i = 0; i < parts.size() && outcome == Outcome::kMatches; ++i) {
    if (!matchesPart(parts[i], index)) {
      outcome = Outcome::kFailsHere;
    } else if (parts[i].combinator != CSSCombinator::kNone) {
      outcome = matchAlong(parts.subspan(i + 1), parts[i].combinator, index);
      break;
    }
  }
  --depth_;
  return outcome;
}

/// The nearest ancestor or sibling that matches is as good as a farther one, because what is left of the
/// selector looks at farther ones still. Only where it asks for a parent or the next sibling does a farther one
/// make a difference; how far to go for it is what the outcome says.
CSSSelectorMatcher::Outcome CSSSelectorMatcher::matchAlong(std::span<const CSSSelectorPart> rest,
                                                           CSSCombinator combinator, CSSElementIndex index) {
  const bool isAmongSiblings =
      combinator == CSSCombinator::kNextSibling || combinator == CSSCombinator::kSubsequentSibling;
  const auto next = [&](CSSElementIndex from) {
    return isAmongSiblings ? (*elements_)[from].previousSibling : (*elements_)[from].parent;
  };
  for (CSSElementIndex other = next(index); other != kNoCSSElement; other = next(other)) {
    const Outcome outcome = matchFrom(rest, other);
    if (outcome == Outcome::kMatches || outcome == Outcome::kFails) return outcome;
    if (combinator == CSSCombinator::kNextSibling) return outcome;
    if (combinator == CSSCombinator::kChild) return Outcome::kFailsForSiblings;
    if (combinator == CSSCombinator::kSubsequentSibling && outcome == Outcome::kFailsForSiblings)
      return outcome;
  }
  return isAmongSiblings ? Outcome::kFailsForSiblings : Outcome::kFails;
}

bool CSSSelectorMatcher::matchesPart(const CSSSelectorPart &part, CSSElementIndex index) {
  const Element &element = (*elements_)[index];
  switch (part.kind) {
    case Kind::kUniversal:
      return true;
    case Kind::kType: {
      const CSSName name = element.kind == CSSElements::Kind::kHTML ? part.lowercaseName : part.name;
      return name != kNoCSSName && element.type == name;
    }
    case Kind::kId:
      return element.id == part.name;
    case Kind::kClass:
      return std::ranges::binary_search(elements_->classes(element), part.name);
    case Kind::kHasAttribute:
    case Kind::kAttributeIs:
    case Kind::kAttributeHasWord:
    case Kind::kAttributeHasDashPrefix:
    case Kind::kAttributeBegins:
    case Kind::kAttributeEnds:
    case Kind::kAttributeContains:
      return matchesAttribute(part, element);
    case Kind::kIs:
      return matchesAny(part.list(), index);
    case Kind::kNot:
      return !matchesAny(part.list(), index);
    case Kind::kHas:
      return matchesHas(part.list(), index);
    case Kind::kNthChild:
    case Kind::kNthLastChild:
    case Kind::kNthOfType:
    case Kind::kNthLastOfType:
      return matchesNth(part, index);
    case Kind::kLanguage:
      return matchesLanguage(part, index);
    case Kind::kRightToLeft:
    case Kind::kLeftToRight:
      return isRightToLeft(index) == (part.kind == Kind::kRightToLeft);
    case Kind::kScope:
      return scope_ == kNoCSSElement ? element.parent == kNoCSSElement : index == scope_;
    case Kind::kRoot:
      return element.parent == kNoCSSElement;
    case Kind::kEmpty:
      return element.isEmpty;
    case Kind::kOnlyChild:
      return elements_->siblingCount(element) == 1;
    case Kind::kOnlyOfType:
      return countOfAll({nullptr, element.type, element.parent}, index) == 1;
    case Kind::kDefined:
      return element.kind != CSSElements::Kind::kHTML ||
             !isCustomElementName(elements_->names().text(element.type));
    case Kind::kNever:
      return false;
    default:
      return element.kind == CSSElements::Kind::kHTML && matchesState(part.kind, element);
  }
}

bool CSSSelectorMatcher::matchesAttribute(const CSSSelectorPart &part, const Element &element) {
  const bool isHTML = element.kind == CSSElements::Kind::kHTML;
  const CSSName name = isHTML ? part.lowercaseName : part.name;
  if (name == kNoCSSName || !spend(element.attributeCount / kAttributesOfLook)) return false;
  const std::optional<std::u16string_view> value = elements_->attribute(element, name);
  if (!value || !spend(value->size() / kUnitsOfLook)) return false;
  // A text of one letter in another is looked for at each place.
  if (part.kind == Kind::kAttributeContains && !spend(value->size() * part.count / kUnitsOfLook)) return false;
  return matchesValue(part, *value, part.ignoresCase || (isHTML && part.ignoresCaseInHTML));
}

bool CSSSelectorMatcher::matchesState(Kind state, const Element &element) {
  const auto is = [&](std::initializer_list<KnownName> names) {
    return std::ranges::any_of(names, [&](KnownName name) { return element.type == known(name); });
  };
  const bool isControl = is({kButton, kInput, kSelect, kTextarea, kOptgroup, kOption, kFieldset});
  const bool isRequirable = is({kInput, kSelect, kTextarea});
  switch (state) {
    case Kind::kLink:
      return is({kA, kArea}) && hasAttribute(element, kHref);
    case Kind::kChecked: {
      if (is({kOption})) return hasAttribute(element, kSelected);
      const std::u16string_view type = elements_->attribute(element, known(kType)).value_or(u"");
      return is({kInput}) && hasAttribute(element, kChecked) &&
             equalsOneOfASCIINoCase(type, {"checkbox", "radio"});
    }
    case Kind::kDisabled:
      return isControl && isDisabled(element);
    case Kind::kEnabled:
      return isControl && !isDisabled(element);
    case Kind::kRequired:
      return isRequirable && hasAttribute(element, kRequired);
    case Kind::kOptional:
      return isRequirable && !hasAttribute(element, kRequired);
    default: {
      const std::optional<std::u16string_view> editable =
          elements_->attribute(element, known(kContenteditable));
      const std::u16string_view type = elements_->attribute(element, known(kType)).value_or(u"");
      const bool isText =
          is({kTextarea}) ||
          (is({kInput}) && !equalsOneOfASCIINoCase(type, {"button", "checkbox", "color", "file", "hidden",
                                                          "image", "radio", "range", "reset", "submit"}));
      const bool isWritable = (isText && !hasAttribute(element, kReadonly) && !isDisabled(element)) ||
                              (editable && !equalsASCIINoCase(*editable, "false"));
      return isWritable == (state == Kind::kReadWrite);
    }
  }
}

bool CSSSelectorMatcher::isDisabled(const Element &element) {
  if (hasAttribute(element, kDisabled)) return true;
  if (element.type == known(kOption)) {
    if (element.parent == kNoCSSElement) return false;
    const Element &group = (*elements_)[element.parent];
    return group.type == known(kOptgroup) && hasAttribute(group, kDisabled);
  }
  if (element.type == known(kOptgroup)) return false;
  for (CSSElementIndex i = element.parent; i != kNoCSSElement && spend(1); i = (*elements_)[i].parent) {
    const Element &ancestor = (*elements_)[i];
    if (ancestor.type == known(kFieldset) && hasAttribute(ancestor, kDisabled)) return true;
  }
  return false;
}

bool CSSSelectorMatcher::matchesLanguage(const CSSSelectorPart &part, CSSElementIndex index) {
  for (CSSElementIndex i = index; i != kNoCSSElement && spend(1); i = (*elements_)[i].parent) {
    for (const KnownName name : {kLang, kXMLLang}) {
      if (known(name) == kNoCSSName) continue;
      const std::optional<std::u16string_view> language = elements_->attribute((*elements_)[i], known(name));
      if (!language) continue;
      return std::ranges::any_of(
          part.languages(), [&](std::u16string_view range) { return isOfLanguageRange(*language, range); });
    }
  }
  return false;
}

bool CSSSelectorMatcher::isRightToLeft(CSSElementIndex index) {
  if (known(kDir) == kNoCSSName) return false;
  for (CSSElementIndex i = index; i != kNoCSSElement && spend(1); i = (*elements_)[i].parent) {
    const std::u16string_view direction = elements_->attribute((*elements_)[i], known(kDir)).value_or(u"");
    if (equalsASCIINoCase(direction, "rtl")) return true;
    if (equalsASCIINoCase(direction, "ltr")) return false;
  }
  return false;
}

bool CSSSelectorMatcher::matchesAny(std::span<const CSSSelector> list, CSSElementIndex index) {
  return std::ranges::any_of(list, [&](const CSSSelector &selector) { return matches(selector, index); });
}

/// A selector in ":has()" begins with the element itself, so that its other compounds are the element's
/// descendants, or its later siblings and theirs.
bool CSSSelectorMatcher::matchesHas(std::span<const CSSSelector> list, CSSElementIndex index) {
  const CSSElementIndex outerScope = scope_;
  const Element &element = (*elements_)[index];
  const CSSElementIndex endOfSiblings = element.parent == kNoCSSElement
                                            ? static_cast<CSSElementIndex>(elements_->size())
                                            : (*elements_)[element.parent].end;
  bool isFound = false;
  for (const CSSSelector &selector : list) {
    // The scope is the last part; the part in front of it has the combinator behind the scope.
    const CSSCombinator first = selector.parts[selector.parts.size() - 2].combinator;
    const bool isOfSiblings =
        first == CSSCombinator::kNextSibling || first == CSSCombinator::kSubsequentSibling;
    const CSSElementIndex begin = isOfSiblings ? element.end : index + 1;
    const CSSElementIndex end = std::min(isOfSiblings ? endOfSiblings : element.end,
                                         begin > endOfSiblings ? begin : begin + kMaximumHasElements);
    for (CSSElementIndex i = begin; i < end && !isFound && spend(1); ++i) {
      scope_ = index;
      isFound = matches(selector, i);
    }
    if (isFound) break;
  }
  scope_ = outerScope;
  return isFound;
}

bool CSSSelectorMatcher::isCounted(const Counted &counted, CSSElementIndex index) {
  if (counted.list) return spend(1) && matchesAny({counted.list, counted.typeOrLength}, index);
  return spend(1) && (*elements_)[index].type == counted.typeOrLength;
}

/// In the order of the document only the element itself is looked at, for its last sibling's count is kept.
std::uint32_t CSSSelectorMatcher::countUpTo(const Counted &counted, CSSElementIndex index) {
  const auto known = counts_.find(counted);
  std::uint32_t count = 0;
  for (CSSElementIndex i = index; i != kNoCSSElement; i = (*elements_)[i].previousSibling) {
    if (known != counts_.end() && known->second.element == i) {
      count += known->second.count;
      break;
    }
    if (isCounted(counted, i)) ++count;
  }
  counts_.insert_or_assign(counted, Count{index, count});
  return count;
}

std::uint32_t CSSSelectorMatcher::countOfAll(const Counted &counted, CSSElementIndex index) {
  if (const auto known = totals_.find(counted); known != totals_.end()) return known->second;
  std::uint32_t count = countUpTo(counted, index);
  for (CSSElementIndex i = (*elements_)[index].nextSibling; i != kNoCSSElement; i = (*elements_)[i].nextSibling)
    if (isCounted(counted, i)) ++count;
  totals_.emplace(counted, count);
  return count;
}

bool CSSSelectorMatcher::matchesNth(const CSSSelectorPart &part, CSSElementIndex index) {
  const Element &element = (*elements_)[index];
  const bool isOfType = part.kind == Kind::kNthOfType || part.kind == Kind::kNthLastOfType;
  const bool isFromEnd = part.kind == Kind::kNthLastChild || part.kind == Kind::kNthLastOfType;
  std::int64_t place;
  if (!isOfType && part.count == 0) {
    place = isFromEnd ? std::int64_t{elements_->siblingCount(element)} - element.childIndex + 1
                      : std::int64_t{element.childIndex};
  } else {
    if (!isOfType && !matchesAny(part.list(), index)) return false;
    const Counted counted{isOfType ? nullptr : part.selectors, isOfType ? element.type : part.count,
                          element.parent};
    place = countUpTo(counted, index);
    if (isFromEnd) place = std::int64_t{countOfAll(counted, index)} - place + 1;
  }
  const std::int64_t difference = place - part.offset;
  if (part.step == 0) return difference == 0;
  return difference % part.step == 0 && difference / part.step >= 0;
}

}  // namespace nimbo
