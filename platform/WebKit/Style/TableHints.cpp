// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/TableHints.hpp"

#include <optional>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/Style/LegacyValues.hpp"

namespace nimbo::detail {

namespace {

constexpr std::initializer_list<CSSProperty> kBorderWidths = {
    CSSProperty::kBorderTopWidth, CSSProperty::kBorderRightWidth, CSSProperty::kBorderBottomWidth,
    CSSProperty::kBorderLeftWidth};
constexpr std::initializer_list<CSSProperty> kBorderStyles = {
    CSSProperty::kBorderTopStyle, CSSProperty::kBorderRightStyle, CSSProperty::kBorderBottomStyle,
    CSSProperty::kBorderLeftStyle};

CSSValue pixels(double number) {
  return CSSValue::number(number, CSSUnit::kPixels);
}

/// The width of a table's border by its attribute, which is 1 when it has no number.
CSSValue borderWidth(std::u16string_view value) {
  return pixels(legacyNonNegativeInteger(value).value_or(1));
}

CSSValue verticalAlignment(std::u16string_view value) {
  if (equalsASCIINoCase(value, "top")) return CSSKeyword::kTop;
  if (equalsASCIINoCase(value, "middle")) return CSSKeyword::kMiddle;
  if (equalsASCIINoCase(value, "bottom")) return CSSKeyword::kBottom;
  if (equalsASCIINoCase(value, "baseline")) return CSSKeyword::kBaseline;
  return {};
}

HTMLNodeIndex tableAround(const HTMLDocument &document, HTMLNodeIndex index) {
  do index = document.node(index).parent;
  while (index != kNoHTMLNode && !document.node(index).isHTML("table"_atom));
  return index;
}

void appendBordersOfCell(const HTMLDocument &document, const HTMLNode &table, HintList &hints) {
  if (const auto rules = document.attribute(table, "rules"_atom)) {
    const bool isAll = equalsASCIINoCase(*rules, "all");
    if (isAll || equalsASCIINoCase(*rules, "rows")) {
      hints.set({CSSProperty::kBorderTopWidth, CSSProperty::kBorderBottomWidth}, pixels(1));
      hints.set({CSSProperty::kBorderTopStyle, CSSProperty::kBorderBottomStyle}, CSSKeyword::kSolid);
    }
    if (isAll || equalsASCIINoCase(*rules, "cols")) {
      hints.set({CSSProperty::kBorderLeftWidth, CSSProperty::kBorderRightWidth}, pixels(1));
      hints.set({CSSProperty::kBorderLeftStyle, CSSProperty::kBorderRightStyle}, CSSKeyword::kSolid);
    }
    if (isAll || equalsOneOfASCIINoCase(*rules, {"rows", "cols", "groups", "none"})) return;
  }
  const auto border = document.attribute(table, "border"_atom);
  if (!border || borderWidth(*border).number() == 0) return;
  hints.set(kBorderWidths, pixels(1));
  hints.set(kBorderStyles, CSSKeyword::kInset);
}

void appendOfTable(const HTMLDocument &document, const HTMLNode &table, HintList &hints) {
  if (const auto border = document.attribute(table, "border"_atom)) {
    hints.set(kBorderWidths, borderWidth(*border));
    hints.set(kBorderStyles, CSSKeyword::kOutset);
  }
  if (const auto color = document.attribute(table, document.atoms().existingAtomOf(u"bordercolor")))
    hints.setColor({CSSProperty::kBorderTopColor, CSSProperty::kBorderRightColor,
                    CSSProperty::kBorderBottomColor, CSSProperty::kBorderLeftColor},
                   *color);
}

void appendOfCell(const HTMLDocument &document, HTMLNodeIndex index, HintList &hints) {
  if (document.attribute(document.node(index), "nowrap"_atom))
    hints.set(CSSProperty::kWhiteSpace, CSSKeyword::kNowrap);
  const HTMLNodeIndex tableIndex = tableAround(document, index);
  if (tableIndex == kNoHTMLNode) return;
  const HTMLNode &table = document.node(tableIndex);
  if (const auto padding = document.attribute(table, "cellpadding"_atom))
    hints.setPixels({CSSProperty::kPaddingTop, CSSProperty::kPaddingRight, CSSProperty::kPaddingBottom,
                     CSSProperty::kPaddingLeft},
                    *padding);
  appendBordersOfCell(document, table, hints);
}

}  // namespace

bool isTablePart(HTMLAtom name) {
  return name == "td"_atom || name == "th"_atom || name == "tr"_atom || name == "tbody"_atom ||
         name == "thead"_atom || name == "tfoot"_atom;
}

void appendTableHints(const HTMLDocument &document, HTMLNodeIndex index, HintList &hints) {
  const HTMLNode &element = document.node(index);
  if (element.name == "table"_atom) return appendOfTable(document, element, hints);
  if (!isTablePart(element.name)) return;
  if (const auto alignment = document.attribute(element, "valign"_atom))
    hints.set(CSSProperty::kVerticalAlign, verticalAlignment(*alignment));
  if (element.name == "td"_atom || element.name == "th"_atom) appendOfCell(document, index, hints);
}

}  // namespace nimbo::detail
