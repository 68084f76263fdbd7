// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace nimbo {

/// The uniform type identifier that ContentTypes.tsv gives for a MIME type, a file name extension (".eml") or
/// one of folders (".rtfd/"), in either case. Empty when it has none; else it lives as long as the process.
std::string_view contentTypeForKey(std::string_view key);

}  // namespace nimbo
