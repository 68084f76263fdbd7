// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// Writes a property list in the binary form. Raises `PropertyListError`, also when there would be more than
/// `NSNotFound` bytes. Each byte is written once, into memory of the final size. Equal dictionary keys are
/// written once.
NSData binaryDataWithPropertyList(const id &propertyList);

}  // namespace nimbo
