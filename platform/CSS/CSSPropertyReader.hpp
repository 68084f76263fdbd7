// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/CSS/CSSValueReader.hpp"

namespace nimbo::detail {

/// What stands in a declaration behind its colon.
struct CSSPropertyReading {
  CSSValueReader &reader;
  bool isImportant;
  std::vector<CSSDeclaration> &declarations;

  void declare(CSSProperty property, CSSValue value) const {
    declarations.push_back({property, isImportant, value, {}});
  }
};

/// The value of a longhand, or none when it is invalid; what stands behind it is the caller's business.
CSSValue readLonghand(CSSProperty property, CSSValueReader &reader);

/// Reads a value whole and declares what it says, of a longhand or a shorthand. False when it is invalid; what
/// has been declared by then must be taken back.
bool readPropertyValue(CSSProperty property, const CSSPropertyReading &reading);

/// Reads the value of a shorthand.
bool readShorthand(CSSProperty shorthand, const CSSPropertyReading &reading);

/// Values that shorthands share with longhands.
CSSValue readFontFamily(CSSValueReader &reader);
CSSValue readBackgroundImage(CSSValueReader &reader);
CSSValue initialCSSValue(CSSProperty property);

}  // namespace nimbo::detail
