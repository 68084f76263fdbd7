// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// Writes a property list in the binary form. Raises `PropertyListError`, also when there would be more than
/// `NSNotFound` bytes. Each byte is written once, into memory of the final size. Equal dictionary keys are
/// written once.
NSData binaryDataWithPropertyList(const id &propertyList);

/// The same in pieces, to be written out one after the other. Large data objects are pieces of their own, which
/// share the data's storage instead of copying it.
std::vector<NSData> binaryPiecesWithPropertyList(const id &propertyList);

}  // namespace nimbo
