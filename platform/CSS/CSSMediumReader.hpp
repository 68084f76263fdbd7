// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CSS/CSSMedium.hpp"
#include "platform/CSS/CSSValueReader.hpp"

namespace nimbo::detail {

/// Whether the list of media queries that is left to read holds.
bool matchesMedium(CSSValueReader &queries, const CSSMedium &medium);

/// Whether the condition of "@supports" that is left to read holds.
bool isSupported(CSSValueReader &condition);

/// Whether a declaration or a condition, such as the argument of "supports()", holds.
bool isSupportedDeclarationOrCondition(CSSValueReader &content);

}  // namespace nimbo::detail
