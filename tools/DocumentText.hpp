// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/Foundation/NSString.hpp"
#include "tools/CommandLine.hpp"

namespace nimbo {

/// Writes the text of a document to standard output, as its metadata importer finds it; where there is none,
/// that of the document as rich text. `name` is what messages call the file. Answers the exit code.
int writeTextOfDocument(const NSString &path, const std::string &name, const CommonOptions &options);

}  // namespace nimbo
