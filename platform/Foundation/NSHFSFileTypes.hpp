// SPDX-License-Identifier: Apache-2.0
//
// Codes of four characters in Mac Roman, which tell the type of a file, its creator, and the type of a
// resource. Any thread may convert and ask.
//
//     NSFileTypeForHFSTypeCode(0x54455854);  // "'TEXT'"
//     NSHFSTypeCodeFromFileType(u"'TEXT'"_ns);  // 0x54455854
//     if (NSHFSTypeOfFile(path) == u"'PDF '"_ns) NSLog(u"%@ is a PDF file", path);
#pragma once

#include <cstdint>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Four characters, the first one in the highest byte; 0 is none.
using OSType = std::uint32_t;

/// The four characters in single quotes; "''" for 0.
NSString NSFileTypeForHFSTypeCode(OSType code);

/// The code of four characters in single quotes; 0 for anything else.
OSType NSHFSTypeCodeFromFileType(const NSString &fileType);

/// The type code of a regular file, or of the one that a link leads to, in single quotes; "''" when nobody gave
/// it one. Nil when there is no such file.
NSString NSHFSTypeOfFile(const NSString &path);

/// The code of the four characters alone; 0 for anything else.
OSType OSTypeFromString(const NSString &characters);

}  // namespace nimbo
