// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSData.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace ASCII {

/// Whether no byte has its top bit set. True of an empty data object, false of nil.
bool isAsciiString(const NSData &data);

}  // namespace ASCII
}  // namespace nimbo
