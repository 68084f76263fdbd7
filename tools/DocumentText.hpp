// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/Foundation/NSString.hpp"
#include "tools/CommandLine.hpp"

namespace nimbo {

/// Whether a type is that of PostScript, EPS included.
bool isPostScriptType(const NSString &type);

/// Writes the text of PostScript to standard output, as that of the PDF that it becomes. `name` is what
/// messages call the file. Answers the exit code.
int writeTextOfPostScript(const NSString &path, const std::string &name, const CommonOptions &options);

/// Writes the text of a document to standard output, as its metadata importer finds it; where there is none,
/// that of the document as rich text. `name` is what messages call the file. Answers the exit code.
int writeTextOfDocument(const NSString &path, const std::string &name, const CommonOptions &options);

}  // namespace nimbo
