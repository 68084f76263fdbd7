// SPDX-License-Identifier: Apache-2.0
//
// Whether bytes are ASCII. Any thread may ask.
//
//     const NSData data = NSData::dataWithContentsOfFile(path);
//     const bool isText = isAsciiString(data);
//     if (isText) return text(data);
#pragma once

#include "platform/Foundation/NSData.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace ASCII {

/// Whether no byte has its top bit set. True of an empty data object, false of nil.
bool isAsciiString(const NSData &data);

}  // namespace ASCII
}  // namespace nimbo
