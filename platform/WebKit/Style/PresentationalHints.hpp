// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>
#include <string_view>
#include <vector>

#include "platform/CSS/CSSDeclaration.hpp"
#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/Style/DeclarationTexts.hpp"

namespace nimbo::detail {

/// Declarations that attributes stand for, in the order in which the later ones win.
class HintList {
 public:
  /// Declares the value for the properties; nothing when there is no value.
  void set(std::initializer_list<CSSProperty> properties, CSSValue value);
  /// Declares the value for the property; nothing when there is no value.
  void set(CSSProperty property, CSSValue value) { set({property}, value); }
  /// Declares an attribute's colour, when it is one.
  void setColor(std::initializer_list<CSSProperty> properties, std::u16string_view value);
  /// Declares an attribute's number of pixels, when it is one.
  void setPixels(std::initializer_list<CSSProperty> properties, std::u16string_view value);

  /// The declarations.
  std::vector<CSSDeclaration> declarations;
};

/// What the attributes of elements say about their style, as in `<td align=center bgcolor=#eee>`. It stands
/// between the rules that every page has and the author's. The document must outlive it.
class PresentationalHints {
 public:
  /// For a page; values with texts in them are read into `texts`, which must outlive it.
  PresentationalHints(const HTMLDocument &document, DeclarationTexts &texts);

  /// Appends what the element's attributes, and those of the table or body that it is in, declare.
  void append(HTMLNodeIndex element, HintList &hints) const;

 private:
  void appendOfAttribute(const HTMLNode &element, HTMLAtom name, std::u16string_view value,
                         HintList &hints) const;
  void appendOfBody(HTMLAtom name, std::u16string_view value, HintList &hints) const;
  void appendOfFont(HTMLAtom name, std::u16string_view value, HintList &hints) const;
  void appendOfPicture(const HTMLNode &element, HintList &hints) const;

  const HTMLDocument *document_;
  DeclarationTexts *texts_;
  /// Names that are rare enough to have no atom of their own.
  HTMLAtom popover_, leftMargin_, topMargin_, rightMargin_, bottomMargin_, marginWidth_, marginHeight_;
  /// The colour of links by the body's attribute; no value for none.
  CSSValue linkColor_;
};

}  // namespace nimbo::detail
