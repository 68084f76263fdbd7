// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "platform/WebKit/HTMLDocument.hpp"

namespace nimbo::detail {

/// Whether the first letter in the element is one of a script that runs from right to left, as for
/// `dir="auto"`; nothing when no letter is found near its beginning. Elements that have a direction of their
/// own are passed over.
std::optional<bool> isContentRightToLeft(const HTMLDocument &document, HTMLNodeIndex element);

}  // namespace nimbo::detail
