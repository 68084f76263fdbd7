// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/StyleResolver.hpp"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/CSS/CSSRuleIndex.hpp"
#include "platform/CSS/CSSSelectorMatcher.hpp"
#include "platform/WebKit/Style/AuthorRules.hpp"
#include "platform/WebKit/Style/Cascade.hpp"
#include "platform/WebKit/Style/PageElements.hpp"
#include "platform/WebKit/Style/PresentationalHints.hpp"
#include "platform/WebKit/Style/SeenContent.hpp"
#include "platform/WebKit/Style/StyleBuilder.hpp"
#include "platform/WebKit/Style/StyleKeys.hpp"
#include "platform/WebKit/Style/StyleTable.hpp"
#include "platform/WebKit/Style/UserAgentRules.hpp"

namespace nimbo::detail {

namespace {

CSSMode modeOf(const HTMLDocument &document) {
  return document.quirksMode() == HTMLQuirksMode::quirks ? CSSMode::kQuirks : CSSMode::kStandard;
}

StyledElement styledElement(const HTMLNode &element) {
  if (element.nameSpace != HTMLNamespace::html) return StyledElement::kOther;
  if (element.name == "table"_atom) return StyledElement::kHTMLTable;
  if (element.name == "th"_atom) return StyledElement::kHTMLHeaderCell;
  return element.name == "rt"_atom ? StyledElement::kRubyText : StyledElement::kOther;
}

std::uint8_t bitOf(CSSPseudoElement pseudoElement) {
  return static_cast<std::uint8_t>(1U << static_cast<unsigned>(pseudoElement));
}

/// What children take from a style.
struct Inheritance {
  std::uint32_t number = 0;
  /// Holds them, so that no others come to stand in their place.
  SharedPointer<CSSCustomProperties> customProperties;
};

/// A style in the table of styles, and for which parents it is the element's.
struct KnownStyle {
  const ComputedStyle *style = nullptr;
  std::uint32_t parentNumber = 0;
};

}  // namespace

struct StyleResolver::State {
  State(const HTMLDocument &html, std::span<const AuthorSheet> sheets, const CSSMedium &medium);

  void match(HTMLNodeIndex element);
  const ComputedStyle &styleOf(HTMLNodeIndex element, const ComputedStyle &parent);
  void number(ComputedStyle &style);

  const HTMLDocument &document;
  const CSSMode mode;
  const UserAgentRules &userAgent;
  CSSNames names;
  PageElements page;
  AuthorRules author;
  CSSSelectorMatcher matcher;
  DeclarationTexts texts;
  PresentationalHints presentational;
  SeenContent seenContent;
  Cascade cascade;
  StyleContext context;

  std::vector<CSSMatch> userAgentMatches, authorMatches;
  HintList hints;
  /// By node, which pseudo-elements rules have been found for.
  std::vector<std::uint8_t> pseudoElements;
  StyleKey key, styleKey;
  StyleTable<ComputedStyle> styles;
  /// By node, as long as the table remembers it: those of tables are asked for several times.
  std::vector<KnownStyle> knownStyles;
  StyleTable<Inheritance> inheritances;
  std::uint32_t lastNumber = 0;
  /// A style that is not remembered.
  ComputedStyle single;
};

StyleResolver::State::State(const HTMLDocument &html, std::span<const AuthorSheet> sheets,
                            const CSSMedium &medium)
    : document(html),
      mode(modeOf(html)),
      userAgent(UserAgentRules::rulesOfMode(mode)),
      names(&userAgent.names()),
      page(html, names, mode),
      author(sheets, {{&names, mode, true}, medium}),
      matcher(page.elements()),
      texts(mode),
      presentational(html, texts),
      seenContent(html),
      cascade(texts),
      pseudoElements(html.nodeCount()),
      knownStyles(html.nodeCount()) {
  context.medium = medium;
  context.isQuirks = mode == CSSMode::kQuirks;
}

/// Finds the rules for an element and its pseudo-elements.
void StyleResolver::State::match(HTMLNodeIndex element) {
  userAgentMatches.clear();
  authorMatches.clear();
  const CSSElementIndex index = page.indexOf(element);
  if (index == kNoCSSElement) return;
  userAgent.index().match(matcher, index, userAgentMatches);
  author.index().match(matcher, index, authorMatches);
}

void StyleResolver::State::number(ComputedStyle &style) {
  key.clear();
  key.addInheritance(style);
  const Inheritance *found = inheritances.find(key.words());
  if (!found) found = &inheritances.add(key.words(), {++lastNumber, style.inherited.customProperties});
  style.inheritanceNumber = found->number;
}

const ComputedStyle &StyleResolver::State::styleOf(HTMLNodeIndex index, const ComputedStyle &parent) {
  KnownStyle &known = knownStyles[index];
  const std::uint32_t parentNumber = parent.inheritanceNumber;
  if (known.style && known.parentNumber == parentNumber) return *known.style;
  const HTMLNode &element = document.node(index);
  const bool isRoot = index == document.rootElement();
  const StyledElement kind = isRoot ? StyledElement::kRoot : styledElement(element);
  match(index);
  hints.declarations.clear();
  presentational.append(index, hints);
  CascadeInput input = {userAgentMatches, hints.declarations, authorMatches, {}};
  if (element.count != 0) {
    if (const auto style = document.attribute(element, "style"_atom)) input.style = texts.ofStyle(*style);
  }
  const Seen seen = seenContent.of(index, parent);

  key.clear();
  key.add(std::uint64_t{parent.inheritanceNumber});
  key.add(static_cast<std::uint64_t>(seen) << 8 | static_cast<std::uint64_t>(kind));
  for (const std::vector<CSSMatch> *matches : {&userAgentMatches, &authorMatches}) {
    key.add(std::uint64_t{matches->size()});
    for (const CSSMatch &rule : *matches) {
      if (rule.pseudoElement == CSSPseudoElement::kNone)
        key.add(static_cast<const void *>(rule.declarations.data()));
      else
        pseudoElements[index] |= bitOf(rule.pseudoElement);
    }
  }
  key.add(input.hints);
  key.add(static_cast<const void *>(input.style.data()));
  if (const ComputedStyle *found = styles.find(key.words())) {
    known = {found, parentNumber};
    return *found;
  }
  styleKey = key;

  cascade.begin(input, parent.inherited.customProperties);
  single = makeStyle(cascade, parent, kind, context);
  seenContent.apply(seen, single);
  number(single);
  if (dependsOnParentBox(cascade)) return single;
  if (styles.isFull()) std::ranges::fill(knownStyles, KnownStyle());
  known = {&styles.add(styleKey.words(), single), parentNumber};
  return *known.style;
}

StyleResolver::StyleResolver(HTMLDocument &document, std::span<const AuthorSheet> sheets,
                             const CSSMedium &medium)
    : state_(std::make_unique<State>(document, sheets, medium)) {}

StyleResolver::~StyleResolver() = default;

ComputedStyle StyleResolver::rootStyle() {
  const ComputedStyle &root = state_->styleOf(state_->document.rootElement(), ComputedStyle());
  state_->context.rootFontSize = root.inherited.fontSize;
  state_->context.rootLineHeight = root.inherited.lineHeight.value_or(ownLineHeight(root.inherited.fontSize));
  return root;
}

const ComputedStyle &StyleResolver::styleOf(HTMLNodeIndex element, const ComputedStyle &parent) {
  const ComputedStyle &style = state_->styleOf(element, parent);
  if (element == state_->document.body()) state_->context.bodyColor = style.inherited.color;
  return style;
}

std::optional<ComputedStyle> StyleResolver::pseudoStyleOf(HTMLNodeIndex element, CSSPseudoElement pseudoElement,
                                                          const ComputedStyle &own) {
  State &state = *state_;
  if (!(state.pseudoElements[element] & bitOf(pseudoElement))) return {};
  state.match(element);
  state.cascade.begin({state.userAgentMatches, {}, state.authorMatches, {}, pseudoElement},
                      own.inherited.customProperties);
  ComputedStyle style = makeStyle(state.cascade, own, StyledElement::kOther, state.context);
  if (pseudoElement == CSSPseudoElement::kMarker) {
    if (state.cascade.value(CSSProperty::kContent).is(CSSKeyword::kNone)) style.display = CSSKeyword::kNone;
  } else if (!style.content || style.display == CSSKeyword::kNone) {
    return {};
  }
  state.number(style);
  return style;
}

}  // namespace nimbo::detail
