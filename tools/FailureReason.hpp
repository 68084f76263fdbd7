// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace nimbo {

/// Why a file could not be read at all, in a few words: "no such file", "is a folder" ... Empty when it looks
/// readable. `path` holds the system's own bytes.
std::string reasonFileIsUnreadable(const std::string &path);

/// Why there is no metadata for a file.
std::string reasonForNoMetadata(const std::string &path);

/// Why the metadata of a file, though there is an importer for it, is empty.
std::string reasonForEmptyMetadata(const std::string &path);

/// Why bytes gave no PDF document.
std::string reasonForNoPDF(std::string_view bytes);

}  // namespace nimbo
