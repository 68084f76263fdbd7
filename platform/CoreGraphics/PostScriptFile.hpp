// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// From how many of its first bytes a file shows that it is PostScript.
constexpr std::size_t kPostScriptHeadBytes = 4096;

/// The PostScript of a file, without the table of parts and the preview that DOS programs put around EPS; the
/// whole file when there is none of these, empty when the table points elsewhere.
std::string_view postScriptPart(std::string_view file);

/// The line that begins with "%!" where a program begins, behind white space, an end of transmission or orders
/// for the printer; empty for what is no PostScript.
std::string_view firstLineOfPostScript(std::string_view postScript);

/// Whether a file that begins so is PostScript.
bool isPostScriptFile(std::string_view bytes);

/// Whether the first line is that of one picture for inside other documents.
bool isFirstLineOfEPS(std::string_view line);

}  // namespace nimbo
