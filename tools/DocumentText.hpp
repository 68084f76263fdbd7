// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "clients/cpp/HelperClient.hpp"
#include "platform/Foundation/NSString.hpp"
#include "tools/CommandLine.hpp"
#include "tools/RegularInput.hpp"

namespace nimbo {

/// Whether a type is that of PostScript, EPS included.
bool isPostScriptType(const NSString &type);

/// What the helper has answered about the text of a document.
struct DocumentText {
  /// Whether the file is not of the type that it was read as, or nothing reads that type.
  bool isRefused() const;

  HelperClient::Answer answer;
  /// Nil when there is none; the answer may say why.
  NSString text;
};

/// The text that stands under `key` in an answer's dictionary.
DocumentText textUnderKey(HelperClient::Answer answer, std::u16string_view key);

/// The text of a document as its metadata importer finds it; where there is none, that of the document as rich
/// text. That of PostScript is the text of the PDF that it becomes.
DocumentText textOfDocument(const TypedPath &file, const CommonOptions &options);

/// Writes the text to standard output, or says why there is none. `name` is what messages call the file.
/// Answers the exit code.
int writeDocumentText(const DocumentText &document, const std::string &name);

}  // namespace nimbo
