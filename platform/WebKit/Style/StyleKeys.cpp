// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/StyleKeys.hpp"

#include <bit>

#include "platform/WebKit/Style/BoxDisplay.hpp"

namespace nimbo::detail {

namespace {

template <class... Parts>
std::uint64_t packed(Parts... parts) {
  std::uint64_t word = 0;
  ((word = word << 8 | static_cast<std::uint8_t>(parts)), ...);
  return word;
}

}  // namespace

void StyleKey::add(double number) {
  add(std::bit_cast<std::uint64_t>(number));
}

void StyleKey::add(CSSColor color) {
  add(packed(color.red, color.green, color.blue) << 32 | std::bit_cast<std::uint32_t>(color.alpha));
}

void StyleKey::add(const DecorationLine &line) {
  add(packed(line.style));
  if (line.style != CSSKeyword::kNone) add(line.color);
}

void StyleKey::add(const CSSValue &value) {
  add(packed(value.kind(), value.unit(), value.keyword()));
  switch (value.kind()) {
    case CSSValueKind::kNone:
    case CSSValueKind::kKeyword:
      break;
    case CSSValueKind::kNumber:
    case CSSValueKind::kPercentage:
    case CSSValueKind::kLength:
      add(value.number());
      break;
    case CSSValueKind::kExpression:
      add(static_cast<const void *>(&value.expression()));
      break;
    case CSSValueKind::kColor:
      add(value.color());
      break;
    case CSSValueKind::kFunction:
    case CSSValueKind::kList:
      add(static_cast<const void *>(value.values().data()));
      add(std::uint64_t{value.values().size()});
      break;
    default:
      add(static_cast<const void *>(value.text().data()));
      add(std::uint64_t{value.text().size()});
      break;
  }
}

void StyleKey::add(std::span<const CSSDeclaration> declarations) {
  add(std::uint64_t{declarations.size()});
  for (const CSSDeclaration &declaration : declarations) {
    add(packed(declaration.property, declaration.isImportant));
    add(declaration.value);
  }
}

void StyleKey::addInheritance(const ComputedStyle &style) {
  const InheritedStyle &own = style.inherited;
  // Families are one string each.
  add(static_cast<const void *>(own.fontFamily.characters()));
  add(own.declaredFontSize);
  add(packed(own.genericFamily, own.fontSizeKeyword, own.hasAbsoluteFontSize, own.isMonospaceAlone,
             own.isItalic, own.isSmallCaps, own.visibility, own.textAlign));
  add(packed(own.textTransform, own.whiteSpace, own.direction, own.listStylePosition, own.borderCollapse,
             own.captionSide, own.lineHeight.has_value(), own.lineHeightMultiple.has_value()));
  add(packed(makesItems(style.display), style.isUnseen, style.mayHoldSeenElement, own.fontWeight >> 8,
             own.fontWeight));
  add(own.color);
  add(own.listStyleType);
  add(own.letterSpacing);
  add(own.textIndent);
  add(own.lineHeight.value_or(0));
  add(own.lineHeightMultiple.value_or(0));
  add(own.quotes);
  add(static_cast<const void *>(own.customProperties.get()));
  add(style.underline);
  add(style.overline);
  add(style.lineThrough);
  add(style.verticalAlign);
}

}  // namespace nimbo::detail
