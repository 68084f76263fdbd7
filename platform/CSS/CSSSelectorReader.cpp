// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSSelectorReader.hpp"

#include <algorithm>
#include <array>
#include <string>

#include "platform/CSS/CSSComponents.hpp"
#include "platform/CSS/CSSElements.hpp"
#include "platform/CSS/CSSNameLookup.hpp"

namespace nimbo {

namespace detail {

namespace {

using Kind = CSSSelectorPartKind;

constexpr CSSSpecificity kOneId = specificity(1, 0, 0);
constexpr CSSSpecificity kOneClass = specificity(0, 1, 0);
constexpr CSSSpecificity kOneType = specificity(0, 0, 1);

CSSSpecificity sum(CSSSpecificity a, CSSSpecificity b) {
  constexpr CSSSpecificity kMostOfOne = (1 << 21) - 1;
  const auto part = [&](int shift) {
    return std::min((a >> shift & kMostOfOne) + (b >> shift & kMostOfOne), kMostOfOne) << shift;
  };
  return part(0) | part(21) | part(42);
}

/// What holds or does not hold for an element as it stands in the document; what a reader does with the page
/// never holds.
constexpr CSSNameLookup kPseudoClasses(std::to_array<CSSNamedValue<Kind>>({
    {"root", Kind::kRoot},
    {"scope", Kind::kScope},
    {"empty", Kind::kEmpty},
    {"only-child", Kind::kOnlyChild},
    {"only-of-type", Kind::kOnlyOfType},
    {"first-child", Kind::kNthChild},
    {"last-child", Kind::kNthLastChild},
    {"first-of-type", Kind::kNthOfType},
    {"last-of-type", Kind::kNthLastOfType},
    {"link", Kind::kLink},
    {"any-link", Kind::kLink},
    {"-webkit-any-link", Kind::kLink},
    {"checked", Kind::kChecked},
    {"disabled", Kind::kDisabled},
    {"enabled", Kind::kEnabled},
    {"required", Kind::kRequired},
    {"optional", Kind::kOptional},
    {"read-only", Kind::kReadOnly},
    {"read-write", Kind::kReadWrite},
    {"defined", Kind::kDefined},
    {"active", Kind::kNever},
    {"autofill", Kind::kNever},
    {"-webkit-autofill", Kind::kNever},
    {"buffering", Kind::kNever},
    {"default", Kind::kNever},
    {"focus", Kind::kNever},
    {"focus-visible", Kind::kNever},
    {"focus-within", Kind::kNever},
    {"fullscreen", Kind::kNever},
    {"future", Kind::kNever},
    {"host", Kind::kNever},
    {"hover", Kind::kNever},
    {"in-range", Kind::kNever},
    {"indeterminate", Kind::kNever},
    {"invalid", Kind::kNever},
    {"local-link", Kind::kNever},
    {"modal", Kind::kNever},
    {"muted", Kind::kNever},
    {"open", Kind::kNever},
    {"out-of-range", Kind::kNever},
    {"past", Kind::kNever},
    {"paused", Kind::kNever},
    {"picture-in-picture", Kind::kNever},
    {"placeholder-shown", Kind::kNever},
    {"playing", Kind::kNever},
    {"popover-open", Kind::kNever},
    {"seeking", Kind::kNever},
    {"stalled", Kind::kNever},
    {"target", Kind::kNever},
    {"target-within", Kind::kNever},
    {"user-invalid", Kind::kNever},
    {"user-valid", Kind::kNever},
    {"valid", Kind::kNever},
    {"visited", Kind::kNever},
}));

constexpr CSSNameLookup kNthFunctions(std::to_array<CSSNamedValue<Kind>>({
    {"nth-child", Kind::kNthChild},
    {"nth-last-child", Kind::kNthLastChild},
    {"nth-of-type", Kind::kNthOfType},
    {"nth-last-of-type", Kind::kNthLastOfType},
}));

/// A box that has text of its own, or none of those.
struct PseudoElementMeaning {
  CSSPseudoElement element = CSSPseudoElement::kNone;
  bool mayHaveOneColon = false;
};
constexpr CSSNameLookup kPseudoElements(std::to_array<CSSNamedValue<PseudoElementMeaning>>({
    {"before", {CSSPseudoElement::kBefore, true}},
    {"after", {CSSPseudoElement::kAfter, true}},
    {"marker", {CSSPseudoElement::kMarker, false}},
    {"first-letter", {CSSPseudoElement::kNone, true}},
    {"first-line", {CSSPseudoElement::kNone, true}},
    {"selection", {}},
    {"backdrop", {}},
    {"placeholder", {}},
    {"file-selector-button", {}},
    {"cue", {}},
    {"part", {}},
    {"slotted", {}},
    {"highlight", {}},
    {"target-text", {}},
    {"spelling-error", {}},
    {"grammar-error", {}},
    {"details-content", {}},
    {"view-transition", {}},
    {"view-transition-group", {}},
    {"view-transition-image-pair", {}},
    {"view-transition-new", {}},
    {"view-transition-old", {}},
}));

/// The attributes whose values HTML compares in any case.
constexpr CSSNameLookup kAnyCaseAttributes(std::to_array<CSSNamedValue<bool>>({
    {"accept", true},    {"accept-charset", true}, {"align", true},     {"alink", true},    {"axis", true},
    {"bgcolor", true},   {"charset", true},        {"checked", true},   {"clear", true},    {"codetype", true},
    {"color", true},     {"compact", true},        {"declare", true},   {"defer", true},    {"dir", true},
    {"direction", true}, {"disabled", true},       {"enctype", true},   {"face", true},     {"frame", true},
    {"hreflang", true},  {"http-equiv", true},     {"lang", true},      {"language", true}, {"link", true},
    {"media", true},     {"method", true},         {"multiple", true},  {"nohref", true},   {"noresize", true},
    {"noshade", true},   {"nowrap", true},         {"readonly", true},  {"rel", true},      {"rev", true},
    {"rules", true},     {"scope", true},          {"scrolling", true}, {"selected", true}, {"shape", true},
    {"target", true},    {"text", true},           {"type", true},      {"valign", true},   {"valuetype", true},
    {"vlink", true},
}));

CSSSelectorPart partOf(Kind kind) {
  CSSSelectorPart part;
  part.kind = kind;
  return part;
}

bool isAncestorStep(CSSCombinator combinator) {
  return combinator == CSSCombinator::kDescendant || combinator == CSSCombinator::kChild;
}

}  // namespace

CSSSelectorReader::CSSSelectorReader(CSSTokenizer &tokenizer, const CSSSelectorReading &reading,
                                     CSSArena &arena, const CSSNesting *parent)
    : tokenizer_(tokenizer), reading_(reading), arena_(arena), parent_(parent) {}

void CSSSelectorReader::next() {
  token_ = tokenizer_.next();
}

void CSSSelectorReader::skipSpace() {
  while (token_.type == CSSTokenType::kWhiteSpace) next();
}

/// The text's end closes what is open.
bool CSSSelectorReader::isClosing() const {
  return token_.type == CSSTokenType::kRightParenthesis || token_.type == CSSTokenType::kEnd;
}

bool CSSSelectorReader::isListEnd() const {
  return depth_ > 0 ? isClosing()
                    : token_.type == CSSTokenType::kLeftBrace || token_.type == CSSTokenType::kEnd;
}

CSSName CSSSelectorReader::name(std::u16string_view text, bool isLowercase) {
  CSSNames &names = *reading_.names;
  if (!isLowercase || std::ranges::none_of(text, isASCIIUppercase<unichar>))
    return reading_.onlyKnownNames ? names.find(text) : names.intern(text);
  if (!reading_.onlyKnownNames) return names.internLowercase(text);
  std::u16string lower(text);
  for (unichar &c : lower) c = toASCIILower(c);
  return names.find(lower);
}

void CSSSelectorReader::add(Complex &complex, const CSSSelectorPart &part, CSSSpecificity specificity) {
  complex.parts.push_back(part);
  complex.specificity = sum(complex.specificity, specificity);
  complex.neverMatches = complex.neverMatches || part.kind == Kind::kNever;
}

bool CSSSelectorReader::read(std::vector<CSSSelector> &selectors) {
  do {
    next();
    skipSpace();
    bool canMatch = true;
    const std::optional<CSSSelector> selector = readComplex(parent_ != nullptr, canMatch);
    if (!selector) return false;
    if (canMatch) selectors.push_back(*selector);
  } while (token_.type == CSSTokenType::kComma);
  return isListEnd();
}

/// A list in parentheses, whose "(" was the last token; it goes behind the ")".
std::optional<CSSSelectorReader::List> CSSSelectorReader::readList(ListKind kind) {
  if (depth_ >= kMaximumSelectorNesting) return std::nullopt;
  ++depth_;
  std::vector<CSSSelector> selectors;
  List list;
  bool isValid = true;
  do {
    const std::uint32_t start = tokenizer_.location();
    next();
    skipSpace();
    const auto isAtEnd = [&] { return isListEnd() || token_.type == CSSTokenType::kComma; };
    if (kind == ListKind::kForgiving && isAtEnd()) continue;
    bool canMatch = true;
    const std::optional<CSSSelector> selector = readComplex(kind == ListKind::kRelative, canMatch);
    isValid = selector && isAtEnd();
    if (isValid) {
      list.specificity = std::max(list.specificity, selector->specificity);
      if (canMatch) selectors.push_back(*selector);
    } else if (kind == ListKind::kForgiving) {
      tokenizer_.setLocation(start);
      token_ = skipComponents(tokenizer_, cssTokens(CSSTokenType::kComma, CSSTokenType::kRightParenthesis));
      isValid = true;
    }
  } while (isValid && token_.type == CSSTokenType::kComma);
  --depth_;
  if (!isValid) return std::nullopt;
  list.selectors = arena_.copy(std::span<const CSSSelector>(selectors));
  next();
  return list;
}

CSSNesting CSSSelectorReader::nesting(std::span<const CSSSelector> selectors, CSSArena &arena) {
  CSSNesting nesting{partOf(selectors.empty() ? Kind::kNever : Kind::kIs)};
  const std::span<const CSSSelector> copy = arena.copy(selectors);
  nesting.part.selectors = copy.data();
  nesting.part.count = static_cast<std::uint32_t>(copy.size());
  for (const CSSSelector &selector : selectors)
    nesting.specificity = std::max(nesting.specificity, selector.specificity);
  return nesting;
}

void CSSSelectorReader::addNesting(Complex &complex) {
  hasNesting_ = true;
  if (parent_)
    add(complex, parent_->part, parent_->specificity);
  else
    add(complex, partOf(Kind::kScope), kOneClass);
}

/// What a relative selector is relative to.
void CSSSelectorReader::addContext(Complex &complex) {
  complex.compounds.push_back({complex.parts.size(), CSSCombinator::kNone});
  if (depth_ == 0 && parent_)
    addNesting(complex);
  else
    add(complex, partOf(Kind::kScope), 0);
}

CSSCombinator CSSSelectorReader::takeCombinator() {
  const bool hasSpace = token_.type == CSSTokenType::kWhiteSpace;
  skipSpace();
  const CSSCombinator combinator = isDelimiter(u'>')   ? CSSCombinator::kChild
                                   : isDelimiter(u'+') ? CSSCombinator::kNextSibling
                                   : isDelimiter(u'~') ? CSSCombinator::kSubsequentSibling
                                   : hasSpace          ? CSSCombinator::kDescendant
                                                       : CSSCombinator::kNone;
  if (combinator == CSSCombinator::kNone || combinator == CSSCombinator::kDescendant) return combinator;
  next();
  skipSpace();
  return combinator;
}

std::optional<CSSSelector> CSSSelectorReader::readComplex(bool isRelative, bool &canMatch) {
  Complex complex;
  if (depth_ == 0) hasNesting_ = false;
  CSSCombinator combinator = takeCombinator();
  if (combinator != CSSCombinator::kNone && !isRelative) return std::nullopt;
  const bool hasContext = combinator != CSSCombinator::kNone;
  if (hasContext) addContext(complex);
  for (;;) {
    complex.compounds.push_back({complex.parts.size(), combinator});
    if (complex.hasPseudoElement || !readCompound(complex)) return std::nullopt;
    combinator = takeCombinator();
    if (isListEnd() || token_.type == CSSTokenType::kComma) break;
    if (combinator == CSSCombinator::kNone) return std::nullopt;
  }
  if (combinator != CSSCombinator::kNone && combinator != CSSCombinator::kDescendant) return std::nullopt;
  if (isRelative && !hasContext && (depth_ > 0 || !hasNesting_)) {
    // What a selector without a combinator in front is relative to is an ancestor.
    Complex context;
    addContext(context);
    const std::size_t shift = context.parts.size();
    complex.compounds.front().combinator = CSSCombinator::kDescendant;
    for (Compound &compound : complex.compounds) compound.firstPart += shift;
    complex.parts.insert(complex.parts.begin(), context.parts.begin(), context.parts.end());
    complex.compounds.insert(complex.compounds.begin(), context.compounds.front());
    complex.specificity = sum(complex.specificity, context.specificity);
    complex.neverMatches = complex.neverMatches || context.neverMatches;
  }
  canMatch = !complex.neverMatches && complex.compounds.size() <= kMaximumCompounds;
  return finished(complex);
}

/// The parts from right to left, and what an index can know of them.
CSSSelector CSSSelectorReader::finished(const Complex &complex) {
  CSSSelector selector;
  selector.specificity = complex.specificity;
  selector.pseudoElement = complex.pseudoElement;
  if (complex.neverMatches) return selector;
  std::vector<CSSSelectorPart> parts;
  parts.reserve(complex.parts.size());
  std::size_t end = complex.parts.size(), bits = 0;
  bool isAncestor = false;
  const auto ask = [&](CSSSelector::Key key, CSSName name) {
    if (selector.key != CSSSelector::Key::kAny && selector.key <= key) return;
    selector.key = key;
    selector.keyName = name;
  };
  for (std::size_t i = complex.compounds.size(); i-- > 0;) {
    const Compound &compound = complex.compounds[i];
    for (std::size_t j = compound.firstPart; j < end; ++j) {
      const CSSSelectorPart &part = complex.parts[j];
      parts.push_back(part);
      const bool isPlainType = part.kind == Kind::kType && part.name == part.lowercaseName;
      const bool isName = part.kind == Kind::kId || part.kind == Kind::kClass || isPlainType;
      if (end == complex.parts.size()) {
        if (part.kind == Kind::kId) ask(CSSSelector::Key::kId, part.name);
        if (part.kind == Kind::kClass) ask(CSSSelector::Key::kClass, part.name);
        if (isPlainType) ask(CSSSelector::Key::kType, part.name);
      } else if (isAncestor && isName && bits < selector.ancestorBits.size()) {
        selector.ancestorBits[bits++] = CSSElements::filterBit(part.name);
      }
    }
    parts.back().combinator = compound.combinator;
    isAncestor = isAncestorStep(compound.combinator);
    end = compound.firstPart;
  }
  selector.parts = arena_.copy(std::span<const CSSSelectorPart>(parts));
  return selector;
}

bool CSSSelectorReader::readName(Complex &complex, Kind kind, CSSSpecificity specificity) {
  CSSSelectorPart part = partOf(kind);
  part.name = name(text(), reading_.mode == CSSMode::kQuirks);
  if (part.name == kNoCSSName) part.kind = Kind::kNever;
  next();
  add(complex, part, specificity);
  return true;
}

bool CSSSelectorReader::readCompound(Complex &complex) {
  const std::size_t first = complex.parts.size();
  if (!readType(complex)) return false;
  bool isEmpty = complex.parts.size() == first;
  for (;; isEmpty = false) {
    // Behind a pseudo-element stands nothing but pseudo-classes.
    if (complex.hasPseudoElement && token_.type != CSSTokenType::kColon) break;
    if (token_.type == CSSTokenType::kHash) {
      if (!token_.flag || !readName(complex, Kind::kId, kOneId)) return false;
    } else if (isDelimiter(u'.')) {
      next();
      if (token_.type != CSSTokenType::kIdent || !readName(complex, Kind::kClass, kOneClass)) return false;
    } else if (token_.type == CSSTokenType::kLeftSquare) {
      if (!readAttribute(complex)) return false;
    } else if (token_.type == CSSTokenType::kColon) {
      if (!readPseudo(complex)) return false;
    } else if (isDelimiter(u'&')) {
      next();
      addNesting(complex);
    } else {
      break;
    }
  }
  if (isEmpty) return false;
  if (complex.parts.size() == first) add(complex, partOf(Kind::kUniversal), 0);
  return true;
}

/// A type or "*", with a namespace or without. Only "*" is known as a namespace; no page has elements of none.
bool CSSSelectorReader::readType(Complex &complex) {
  const auto isName = [&] { return token_.type == CSSTokenType::kIdent || isDelimiter(u'*'); };
  const bool isInNoNamespace = isDelimiter(u'|');
  if (isInNoNamespace) {
    next();
    if (!isName()) return false;
  }
  if (!isName()) return true;
  CSSToken type = token_;
  next();
  if (isDelimiter(u'|') && !isInNoNamespace) {
    next();
    if (!tokenizer_.isDelimiter(type, u'*') || !isName()) return false;
    type = token_;
    next();
  }
  if (tokenizer_.isDelimiter(type, u'*')) {
    add(complex, partOf(isInNoNamespace ? Kind::kNever : Kind::kUniversal), 0);
    return true;
  }
  CSSSelectorPart part = partOf(Kind::kType);
  const std::u16string_view text = tokenizer_.text(type, arena_);
  part.name = name(text, false);
  part.lowercaseName = name(text, true);
  if (isInNoNamespace || (part.name == kNoCSSName && part.lowercaseName == kNoCSSName))
    part.kind = Kind::kNever;
  add(complex, part, kOneType);
  return true;
}

bool CSSSelectorReader::readAttribute(Complex &complex) {
  next();
  skipSpace();
  if (isDelimiter(u'*')) {
    next();
    if (!isDelimiter(u'|')) return false;
  }
  if (isDelimiter(u'|')) next();
  if (token_.type != CSSTokenType::kIdent) return false;
  CSSSelectorPart part = partOf(Kind::kHasAttribute);
  const std::u16string_view attribute = text();
  part.name = name(attribute, false);
  part.lowercaseName = name(attribute, true);
  part.ignoresCaseInHTML = kAnyCaseAttributes.find(attribute) != nullptr;
  next();
  skipSpace();
  const auto isAtEnd = [&] {
    return token_.type == CSSTokenType::kRightSquare || token_.type == CSSTokenType::kEnd;
  };
  if (!isAtEnd() && !(readAttributeValue(part) && isAtEnd())) return false;
  if (part.name == kNoCSSName && part.lowercaseName == kNoCSSName) part.kind = Kind::kNever;
  next();
  add(complex, part, kOneClass);
  return true;
}

/// From the operator up to the "]".
bool CSSSelectorReader::readAttributeValue(CSSSelectorPart &part) {
  if (token_.type != CSSTokenType::kDelim) return false;
  switch (tokenizer_.delimiter(token_)) {
    case u'=':
      part.kind = Kind::kAttributeIs;
      break;
    case u'~':
      part.kind = Kind::kAttributeHasWord;
      break;
    case u'|':
      part.kind = Kind::kAttributeHasDashPrefix;
      break;
    case u'^':
      part.kind = Kind::kAttributeBegins;
      break;
    case u'$':
      part.kind = Kind::kAttributeEnds;
      break;
    case u'*':
      part.kind = Kind::kAttributeContains;
      break;
    default:
      return false;
  }
  if (part.kind != Kind::kAttributeIs) {
    next();
    if (!isDelimiter(u'=')) return false;
  }
  next();
  skipSpace();
  if (token_.type != CSSTokenType::kIdent && token_.type != CSSTokenType::kString) return false;
  const std::u16string_view value = text();
  part.units = value.data();
  part.count = static_cast<std::uint32_t>(value.size());
  next();
  skipSpace();
  if (token_.type == CSSTokenType::kIdent) {
    const std::u16string_view flag = text();
    part.ignoresCase = equalsASCIINoCase(flag, "i");
    if (!part.ignoresCase && !equalsASCIINoCase(flag, "s")) return false;
    part.ignoresCaseInHTML = false;
    next();
    skipSpace();
  }
  return true;
}

bool CSSSelectorReader::readPseudo(Complex &complex) {
  next();
  const bool isElement = token_.type == CSSTokenType::kColon;
  if (isElement) next();
  const bool isFunction = token_.type == CSSTokenType::kFunction;
  if (!isFunction && token_.type != CSSTokenType::kIdent) return false;
  const std::u16string_view found = text();
  if (isElement) return readPseudoElement(complex, found, isFunction);
  if (isFunction) return readFunction(complex, found);
  const PseudoElementMeaning *const meaning = kPseudoElements.find(found);
  if (meaning && meaning->mayHaveOneColon) return readPseudoElement(complex, found, false);
  next();
  return readPseudoClass(complex, found);
}

bool CSSSelectorReader::readPseudoElement(Complex &complex, std::u16string_view name, bool isFunction) {
  const PseudoElementMeaning *const meaning = kPseudoElements.find(name);
  if ((!meaning && !startsWithASCIINoCase(name, "-webkit-")) || depth_ > 0) return false;
  // The marker of a pseudo-element, and the like, are nobody's.
  complex.neverMatches = complex.neverMatches || complex.hasPseudoElement || !meaning ||
                         meaning->element == CSSPseudoElement::kNone;
  complex.hasPseudoElement = true;
  if (meaning) complex.pseudoElement = meaning->element;
  complex.specificity = sum(complex.specificity, kOneType);
  if (isFunction) skipComponents(tokenizer_, cssTokens(CSSTokenType::kRightParenthesis));
  next();
  return true;
}

bool CSSSelectorReader::readPseudoClass(Complex &complex, std::u16string_view name) {
  const Kind *const kind = kPseudoClasses.find(name);
  if (!kind) return false;
  CSSSelectorPart part = partOf(complex.hasPseudoElement ? Kind::kNever : *kind);
  part.offset = 1;
  add(complex, part, kOneClass);
  return true;
}

bool CSSSelectorReader::readFunction(Complex &complex, std::u16string_view name) {
  if (complex.hasPseudoElement) return false;
  if (equalsOneOfASCIINoCase(name, {"is", "matches", "-webkit-any"}))
    return readNested(complex, Kind::kIs, ListKind::kForgiving, true);
  if (equalsASCIINoCase(name, "where")) return readNested(complex, Kind::kIs, ListKind::kForgiving, false);
  if (equalsASCIINoCase(name, "not")) return readNested(complex, Kind::kNot, ListKind::kStrict, true);
  if (equalsASCIINoCase(name, "has")) {
    if (isInHas_) return false;
    isInHas_ = true;
    const bool isValid = readNested(complex, Kind::kHas, ListKind::kRelative, true);
    isInHas_ = false;
    return isValid;
  }
  if (const Kind *const nth = kNthFunctions.find(name)) return readNth(complex, *nth);
  if (equalsASCIINoCase(name, "lang")) return readLanguages(complex);
  if (equalsASCIINoCase(name, "dir")) return readDirection(complex);
  if (!equalsOneOfASCIINoCase(name, {"host", "host-context", "state"})) return false;
  skipComponents(tokenizer_, cssTokens(CSSTokenType::kRightParenthesis));
  next();
  add(complex, partOf(Kind::kNever), kOneClass);
  return true;
}

bool CSSSelectorReader::readNested(Complex &complex, Kind kind, ListKind listKind, bool hasSpecificity) {
  const std::optional<List> list = readList(listKind);
  if (!list) return false;
  CSSSelectorPart part = partOf(kind);
  if (list->selectors.empty()) part.kind = kind == Kind::kNot ? Kind::kUniversal : Kind::kNever;
  part.selectors = list->selectors.data();
  part.count = static_cast<std::uint32_t>(list->selectors.size());
  add(complex, part, hasSpecificity ? list->specificity : 0);
  return true;
}

bool CSSSelectorReader::readNth(Complex &complex, Kind kind) {
  constexpr std::size_t kMostUnits = 64;
  const bool mayHaveOf = kind == Kind::kNthChild || kind == Kind::kNthLastChild;
  std::u16string places;
  std::uint32_t end = tokenizer_.location();
  bool hasOf = false;
  for (next(); !isClosing(); next()) {
    const bool isName = token_.type == CSSTokenType::kIdent;
    hasOf = isName && mayHaveOf && equalsASCIINoCase(tokenizer_.rawText(token_), "of");
    if (hasOf) break;
    // A comment separates as white space does.
    if (token_.location != end || token_.type == CSSTokenType::kWhiteSpace) places += u' ';
    if (token_.type != CSSTokenType::kWhiteSpace)
      places += tokenizer_.source().substr(token_.location, token_.end - token_.location);
    end = token_.end;
    if (places.size() > kMostUnits) return false;
  }
  const std::optional<NthPlaces> found = nthPlaces(places);
  if (!found) return false;
  CSSSelectorPart part = partOf(kind);
  part.step = found->step;
  part.offset = found->offset;
  List list;
  if (hasOf) {
    const std::optional<List> of = readList(ListKind::kStrict);
    if (!of) return false;
    list = *of;
    if (list.selectors.empty()) part.kind = Kind::kNever;
    part.selectors = list.selectors.data();
    part.count = static_cast<std::uint32_t>(list.selectors.size());
  } else {
    next();
  }
  add(complex, part, sum(kOneClass, list.specificity));
  return true;
}

bool CSSSelectorReader::readLanguages(Complex &complex) {
  std::vector<std::u16string_view> ranges;
  do {
    next();
    skipSpace();
    if (token_.type != CSSTokenType::kIdent && token_.type != CSSTokenType::kString) return false;
    ranges.push_back(text());
    next();
    skipSpace();
  } while (token_.type == CSSTokenType::kComma);
  if (!isClosing()) return false;
  next();
  CSSSelectorPart part = partOf(Kind::kLanguage);
  const std::span<const std::u16string_view> copy = arena_.copy(std::span<const std::u16string_view>(ranges));
  part.ranges = copy.data();
  part.count = static_cast<std::uint32_t>(copy.size());
  add(complex, part, kOneClass);
  return true;
}

bool CSSSelectorReader::readDirection(Complex &complex) {
  next();
  skipSpace();
  if (token_.type != CSSTokenType::kIdent) return false;
  const std::u16string_view direction = text();
  next();
  skipSpace();
  if (!isClosing()) return false;
  next();
  const Kind kind = equalsASCIINoCase(direction, "ltr")   ? Kind::kLeftToRight
                    : equalsASCIINoCase(direction, "rtl") ? Kind::kRightToLeft
                                                          : Kind::kNever;
  add(complex, partOf(kind), kOneClass);
  return true;
}

}  // namespace detail

std::optional<std::span<const CSSSelector>> readSelectors(std::u16string_view text,
                                                          const CSSSelectorReading &reading, CSSArena &arena) {
  CSSTokenizer tokenizer(text);
  std::vector<CSSSelector> selectors;
  detail::CSSSelectorReader reader(tokenizer, reading, arena, nullptr);
  if (!reader.read(selectors) || reader.hasEndedAtBlock()) return std::nullopt;
  return arena.copy(std::span<const CSSSelector>(selectors));
}

}  // namespace nimbo
