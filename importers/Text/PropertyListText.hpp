// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// The keys and strings of a property list, one a line, in their order. Nil when there would be more than
/// `maximumLength` units.
NSString textOfPropertyList(const id &propertyList, std::uint32_t maximumLength);

}  // namespace nimbo
