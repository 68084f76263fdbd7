// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/PresentationalHints.hpp"

#include <optional>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/Style/FormulaHints.hpp"
#include "platform/WebKit/Style/LegacyValues.hpp"
#include "platform/WebKit/Style/TableHints.hpp"
#include "platform/WebKit/Style/TextDirection.hpp"

namespace nimbo::detail {

namespace {

bool isHeadingOrParagraph(HTMLAtom name) {
  return name == "p"_atom || (name >= "h1"_atom && name <= "h6"_atom);
}

bool isReplaced(HTMLAtom name) {
  return name == "img"_atom || name == "iframe"_atom || name == "object"_atom || name == "embed"_atom ||
         name == "video"_atom || name == "applet"_atom || name == "input"_atom || name == "marquee"_atom;
}

bool hasWidth(HTMLAtom name) {
  return isReplaced(name) || name == "table"_atom || name == "td"_atom || name == "th"_atom ||
         name == "col"_atom || name == "colgroup"_atom;
}

bool hasBackground(HTMLAtom name) {
  return isTablePart(name) || name == "table"_atom || name == "body"_atom || name == "marquee"_atom;
}

/// An alignment of text. Some elements align the blocks in them, too.
CSSValue textAlignment(std::u16string_view value, bool alignsBlocks) {
  if (equalsASCIINoCase(value, "center") || (alignsBlocks && equalsASCIINoCase(value, "middle")))
    return alignsBlocks ? CSSKeyword::kWebkitCenter : CSSKeyword::kCenter;
  if (equalsASCIINoCase(value, "left")) return alignsBlocks ? CSSKeyword::kWebkitLeft : CSSKeyword::kLeft;
  if (equalsASCIINoCase(value, "right")) return alignsBlocks ? CSSKeyword::kWebkitRight : CSSKeyword::kRight;
  if (equalsASCIINoCase(value, "justify")) return CSSKeyword::kJustify;
  return {};
}

CSSValue floating(std::u16string_view value) {
  if (equalsASCIINoCase(value, "left")) return CSSKeyword::kLeft;
  if (equalsASCIINoCase(value, "right")) return CSSKeyword::kRight;
  return {};
}

CSSValue alignmentInLine(std::u16string_view value) {
  if (equalsASCIINoCase(value, "top")) return CSSKeyword::kTop;
  if (equalsASCIINoCase(value, "texttop")) return CSSKeyword::kTextTop;
  if (equalsOneOfASCIINoCase(value, {"middle", "absmiddle", "center"})) return CSSKeyword::kMiddle;
  return {};
}

/// How items are numbered; case counts for letters.
CSSValue numberStyle(std::u16string_view value) {
  if (value == u"1") return CSSKeyword::kDecimal;
  if (value == u"a") return CSSKeyword::kLowerAlpha;
  if (value == u"A") return CSSKeyword::kUpperAlpha;
  if (value == u"i") return CSSKeyword::kLowerRoman;
  if (value == u"I") return CSSKeyword::kUpperRoman;
  return {};
}

CSSValue bulletStyle(std::u16string_view value) {
  if (equalsASCIINoCase(value, "none")) return CSSKeyword::kNone;
  if (equalsASCIINoCase(value, "disc")) return CSSKeyword::kDisc;
  if (equalsASCIINoCase(value, "circle")) return CSSKeyword::kCircle;
  if (equalsASCIINoCase(value, "square")) return CSSKeyword::kSquare;
  return {};
}

void appendAlignment(HTMLAtom element, std::u16string_view value, HintList &hints) {
  if (element == "table"_atom) {
    hints.set(CSSProperty::kFloat, floating(value));
    if (equalsASCIINoCase(value, "center"))
      hints.set({CSSProperty::kMarginLeft, CSSProperty::kMarginRight}, CSSKeyword::kAuto);
  } else if (isReplaced(element)) {
    hints.set(CSSProperty::kFloat, floating(value));
    hints.set(CSSProperty::kVerticalAlign, alignmentInLine(value));
  } else if (element == "caption"_atom && equalsASCIINoCase(value, "bottom")) {
    hints.set(CSSProperty::kCaptionSide, CSSKeyword::kBottom);
  } else if (element == "div"_atom || element == "caption"_atom || isTablePart(element)) {
    hints.set(CSSProperty::kTextAlign, textAlignment(value, true));
  } else if (isHeadingOrParagraph(element) || element == "legend"_atom) {
    hints.set(CSSProperty::kTextAlign, textAlignment(value, false));
  }
}

/// The attributes of a horizontal rule.
void appendOfRule(const HTMLDocument &document, const HTMLNode &rule, HintList &hints) {
  if (const auto align = document.attribute(rule, "align"_atom)) {
    const CSSValue side = floating(*align);
    if (side)
      hints.set(side.is(CSSKeyword::kLeft) ? CSSProperty::kMarginLeft : CSSProperty::kMarginRight,
                CSSValue::number(0, CSSUnit::kPixels));
  }
  const auto color = document.attribute(rule, "color"_atom);
  if (color) hints.setColor({CSSProperty::kColor}, *color);
  if (color || document.attribute(rule, "noshade"_atom))
    hints.set({CSSProperty::kBorderTopStyle, CSSProperty::kBorderRightStyle, CSSProperty::kBorderBottomStyle,
               CSSProperty::kBorderLeftStyle},
              CSSKeyword::kSolid);
  if (const auto width = document.attribute(rule, "width"_atom))
    hints.set(CSSProperty::kWidth, legacyDimension(*width));
}

void appendContentDirection(const HTMLDocument &document, HTMLNodeIndex element, HintList &hints) {
  // Without a letter it is from left to right, whatever is around.
  const bool isRightToLeft = isContentRightToLeft(document, element).value_or(false);
  hints.set(CSSProperty::kDirection, isRightToLeft ? CSSKeyword::kRtl : CSSKeyword::kLtr);
}

bool isLink(const HTMLDocument &document, const HTMLNode &element) {
  return (element.name == "a"_atom || element.name == "area"_atom) &&
         document.attribute(element, "href"_atom).has_value();
}

}  // namespace

void HintList::set(std::initializer_list<CSSProperty> properties, CSSValue value) {
  if (!value) return;
  for (const CSSProperty property : properties) {
    CSSDeclaration &declaration = declarations.emplace_back();
    declaration.property = property;
    declaration.value = value;
  }
}

void HintList::setColor(std::initializer_list<CSSProperty> properties, std::u16string_view value) {
  if (const std::optional<CSSColor> color = legacyColor(value)) set(properties, CSSValue::color(*color));
}

void HintList::setPixels(std::initializer_list<CSSProperty> properties, std::u16string_view value) {
  if (const std::optional<std::uint32_t> pixels = legacyNonNegativeInteger(value))
    set(properties, CSSValue::number(*pixels, CSSUnit::kPixels));
}

PresentationalHints::PresentationalHints(const HTMLDocument &document, DeclarationTexts &texts)
    : document_(&document), texts_(&texts) {
  const HTMLAtoms &atoms = document.atoms();
  popover_ = atoms.existingAtomOf(u"popover");
  leftMargin_ = atoms.existingAtomOf(u"leftmargin");
  topMargin_ = atoms.existingAtomOf(u"topmargin");
  rightMargin_ = atoms.existingAtomOf(u"rightmargin");
  bottomMargin_ = atoms.existingAtomOf(u"bottommargin");
  marginWidth_ = atoms.existingAtomOf(u"marginwidth");
  marginHeight_ = atoms.existingAtomOf(u"marginheight");
  if (const auto link = document.attribute(document.node(document.body()), "link"_atom)) {
    if (const std::optional<CSSColor> color = legacyColor(*link)) linkColor_ = CSSValue::color(*color);
  }
}

void PresentationalHints::appendOfBody(HTMLAtom name, std::u16string_view value, HintList &hints) const {
  if (name == "text"_atom) hints.setColor({CSSProperty::kColor}, value);
  if (name == marginWidth_ || name == leftMargin_) hints.setPixels({CSSProperty::kMarginLeft}, value);
  if (name == marginWidth_ || name == rightMargin_) hints.setPixels({CSSProperty::kMarginRight}, value);
  if (name == marginHeight_ || name == topMargin_) hints.setPixels({CSSProperty::kMarginTop}, value);
  if (name == marginHeight_ || name == bottomMargin_) hints.setPixels({CSSProperty::kMarginBottom}, value);
}

void PresentationalHints::appendOfPicture(const HTMLNode &element, HintList &hints) const {
  for (const HTMLAttribute &attribute : document_->attributes(element)) {
    switch (const CSSProperty property = propertyNamed(document_->atoms().text(attribute.name))) {
      case CSSProperty::kColor:
      case CSSProperty::kDirection:
      case CSSProperty::kDisplay:
      case CSSProperty::kFontFamily:
      case CSSProperty::kFontSize:
      case CSSProperty::kFontStyle:
      case CSSProperty::kFontWeight:
      case CSSProperty::kTextDecoration:
      case CSSProperty::kVisibility: {
        // Lengths may lack their unit here in every mode.
        const auto declared = texts_->ofValue(property, document_->value(attribute), CSSMode::kQuirks);
        hints.declarations.insert(hints.declarations.end(), declared.begin(), declared.end());
        break;
      }
      default:
        break;
    }
  }
}

void PresentationalHints::appendOfAttribute(const HTMLNode &element, HTMLAtom name, std::u16string_view value,
                                            HintList &hints) const {
  const HTMLAtom type = element.name;
  if (name == "align"_atom) {
    appendAlignment(type, value, hints);
  } else if (name == "bgcolor"_atom) {
    if (hasBackground(type)) hints.setColor({CSSProperty::kBackgroundColor}, value);
  } else if (name == "width"_atom) {
    if (hasWidth(type)) hints.set(CSSProperty::kWidth, legacyDimension(value));
  } else if (name == "height"_atom) {
    if (hasWidth(type) || isTablePart(type)) hints.set(CSSProperty::kHeight, legacyDimension(value));
  } else if (name == "type"_atom) {
    if (type == "ol"_atom || type == "li"_atom) hints.set(CSSProperty::kListStyleType, numberStyle(value));
    if (type == "ul"_atom || type == "li"_atom) hints.set(CSSProperty::kListStyleType, bulletStyle(value));
  } else if (name == "hspace"_atom) {
    if (isReplaced(type))
      hints.set({CSSProperty::kMarginLeft, CSSProperty::kMarginRight}, legacyDimension(value));
  } else if (name == "vspace"_atom) {
    if (isReplaced(type))
      hints.set({CSSProperty::kMarginTop, CSSProperty::kMarginBottom}, legacyDimension(value));
  } else if (type == "font"_atom) {
    appendOfFont(name, value, hints);
  }
}

void PresentationalHints::appendOfFont(HTMLAtom name, std::u16string_view value, HintList &hints) const {
  if (name == "color"_atom) hints.setColor({CSSProperty::kColor}, value);
  if (name == "size"_atom) hints.set(CSSProperty::kFontSize, legacyFontSize(value));
  if (name != "face"_atom) return;
  const auto declared = texts_->ofValue(CSSProperty::kFontFamily, value, texts_->mode());
  hints.declarations.insert(hints.declarations.end(), declared.begin(), declared.end());
}

void PresentationalHints::append(HTMLNodeIndex index, HintList &hints) const {
  const HTMLNode &element = document_->node(index);
  if (element.nameSpace == HTMLNamespace::mathML) return appendFormulaHints(*document_, index, *texts_, hints);
  if (element.nameSpace == HTMLNamespace::svg) return appendOfPicture(element, hints);
  if (linkColor_ && isLink(*document_, element)) hints.set(CSSProperty::kColor, linkColor_);
  if (element.name == "hr"_atom) return appendOfRule(*document_, element, hints);
  appendTableHints(*document_, index, hints);
  bool hasDirection = element.name != "bdi"_atom;
  for (const HTMLAttribute &attribute : document_->attributes(element)) {
    const std::u16string_view value = document_->value(attribute);
    if (attribute.name == "dir"_atom) {
      hasDirection = !equalsASCIINoCase(value, "auto");
      if (equalsASCIINoCase(value, "ltr")) hints.set(CSSProperty::kDirection, CSSKeyword::kLtr);
      if (equalsASCIINoCase(value, "rtl")) hints.set(CSSProperty::kDirection, CSSKeyword::kRtl);
    } else if (attribute.name == "hidden"_atom) {
      if (equalsASCIINoCase(value, "until-found"))
        hints.set(CSSProperty::kContentVisibility, CSSKeyword::kHidden);
      else
        hints.set(CSSProperty::kDisplay, CSSKeyword::kNone);
    } else if (attribute.name == popover_) {
      hints.set(CSSProperty::kDisplay, CSSKeyword::kNone);
    } else {
      appendOfAttribute(element, attribute.name, value, hints);
      if (element.name == "body"_atom) appendOfBody(attribute.name, value, hints);
    }
  }
  if (!hasDirection) appendContentDirection(*document_, index, hints);
}

}  // namespace nimbo::detail
