// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <span>

#include "platform/CSS/CSSMedium.hpp"
#include "platform/CSS/CSSSelector.hpp"
#include "platform/Foundation/Attributes.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/Style/ComputedStyle.hpp"

namespace nimbo::detail {

/// A style sheet of a page, with those that it imports in front of it, whose text has been loaded and decoded.
struct AuthorSheet {
  /// How deep imports may go; deeper ones do not count.
  static constexpr std::uint32_t kMaximumImportDepth = 16;

  NSString text;
  /// The condition of the "link" or "style" element; empty for none, and for what is imported.
  std::u16string_view media;
  /// What the sheet's imports lead to, in the order of `CSSStyleSheet::imports`, where those alone are whose
  /// conditions hold; nil texts where nothing came.
  std::vector<AuthorSheet> imports;
};

/// Works out the styles of a page's elements: the sheet that every page has, what attributes such as "bgcolor"
/// say, the author's sheets and "style" attributes, in the order of the cascade. Used by one thread; the
/// document and the sheets must outlive it.
///
///     StyleResolver resolver(document, sheets);
///     const ComputedStyle root = resolver.rootStyle();
///     const ComputedStyle body = resolver.styleOf(document.body(), root);
class StyleResolver {
 public:
  /// Reads the sheets for the page. Raises `std::bad_alloc`.
  StyleResolver(HTMLDocument &document, std::span<const AuthorSheet> sheets,
                const CSSMedium &medium = CSSMedium());
  ~StyleResolver();
  StyleResolver(const StyleResolver &) = delete;
  StyleResolver &operator=(const StyleResolver &) = delete;

  /// The style of the root element.
  ComputedStyle rootStyle();
  /// The style of an element whose parent element has the style `parent`, which this resolver made; borrowed
  /// until the next one is asked for.
  const ComputedStyle &styleOf(HTMLNodeIndex element, const ComputedStyle &parent) NIMBO_LIFETIMEBOUND;
  /// The style of "::before", "::after" or "::marker" of an element that has the style `own`; nothing when no
  /// rule makes the pseudo-element. A marker is there without a rule, too; one that its rules take away has the
  /// display `kNone`.
  std::optional<ComputedStyle> pseudoStyleOf(HTMLNodeIndex element, CSSPseudoElement pseudoElement,
                                             const ComputedStyle &own);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace nimbo::detail
