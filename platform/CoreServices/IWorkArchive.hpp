// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/CoreServices/ZipDirectory.hpp"

namespace nimbo {

/// The MIME type of a text, a table or a presentation of iWork, of its first version with one file on, as the
/// system's database of types has it. Empty when the archive is none. The file is not trusted: at most a few
/// kilobytes of one entry are looked at.
std::string_view iWorkMIMEType(const RandomAccessFile &file, const ZipDirectory &zip);

}  // namespace nimbo
