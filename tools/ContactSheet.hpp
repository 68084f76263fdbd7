// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "clients/cpp/HelperClient.hpp"
#include "platform/Foundation/NSData.hpp"
#include "tools/CommandLine.hpp"

namespace nimbo {

/// A picture of that type with thumbnails of the files, and of those in folders, which the helper makes; `side`
/// is the longest side of a thumbnail in pixels. Raises `InputError` and `UsageError`.
NSData contactSheetOfFiles(HelperClient &client, const Operands &paths, std::uint32_t side,
                           const NSString &type);

}  // namespace nimbo
