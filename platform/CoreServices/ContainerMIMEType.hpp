// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/CoreServices/RandomAccessFile.hpp"

namespace nimbo {

/// The MIME type of a document that is packed into a zip archive or an OLE compound file, told by the names of
/// the entries; "application/zip" and "application/x-ole-storage" for those that are no known kind of document.
/// Empty when the file is neither. The file is not trusted: what is read and kept is bounded by constants,
/// whatever it claims.
std::string containerMIMEType(const RandomAccessFile &file);

}  // namespace nimbo
