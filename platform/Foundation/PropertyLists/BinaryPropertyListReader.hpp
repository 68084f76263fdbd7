// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// Reads a property list in the binary form, never nil. Its data objects share `data`'s storage. Raises
/// `PropertyListError`.
///
/// Time and memory are bounded by the data's length and `kMaximumObjects`: values are counted after unfolding,
/// a string object is converted once however often it is named, and no room is made for more elements than the
/// data can hold.
id propertyListFromBinaryData(const NSData &data);

}  // namespace nimbo
