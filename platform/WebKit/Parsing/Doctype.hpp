// SPDX-License-Identifier: Apache-2.0
//
//     std::size_t position = 9;
//     const HTMLDoctype doctype = readDoctype(u"<!DOCTYPE html><p>", &position);  // position is 15 now
//     quirksModeOfDoctype(doctype);  // HTMLQuirksMode::noQuirks
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/WebKit/HTMLDocument.hpp"

namespace nimbo {

/// The parts of a document type declaration, as the page writes them but for the name, which is in small
/// letters.
struct HTMLDoctype {
  std::u16string name;
  std::optional<std::u16string> publicIdentifier;
  std::optional<std::u16string> systemIdentifier;
  /// Whether it is so broken that it asks for quirks.
  bool forcesQuirks = false;
};

/// Reads the rest of the page behind "<!DOCTYPE", and moves `*position` behind the declaration.
HTMLDoctype readDoctype(std::u16string_view page, std::size_t *position);

/// The mode that a page with this document type is shown in.
HTMLQuirksMode quirksModeOfDoctype(const HTMLDoctype &doctype);

}  // namespace nimbo
