// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/NSFileWrapper.hpp"

namespace nimbo {

/// The serialised form of a folder; nil when it would be longer than data may be, or folders stand too deep.
NSData serializedFolder(const NSFileWrapper &folder);
/// The folder of a serialised form; nil when the data is none, `*error` says why.
NSFileWrapper folderOfSerializedForm(const NSData &data, NSError *error);

}  // namespace nimbo
