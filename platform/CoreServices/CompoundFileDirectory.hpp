// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/CoreServices/RandomAccessFile.hpp"

namespace nimbo {

/// Directory sectors beyond so many are left out.
inline constexpr std::size_t kMaximumCompoundFileSectors = 1024;
/// Entries beyond so many are left out.
inline constexpr std::size_t kMaximumCompoundFileEntries = 4096;

/// The names of the streams and storages directly below the root of an OLE compound file; what lies in an
/// embedded document is not among them. Nothing when the file does not begin like one. A damaged file gives the
/// entries that are found.
std::optional<std::vector<std::u16string>> readCompoundFileRoot(const RandomAccessFile &file);

}  // namespace nimbo
