// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/CSS/CSSMedium.hpp"
#include "platform/Foundation/NSURL.hpp"
#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/Loading/WebResourceLoader.hpp"
#include "platform/WebKit/Style/StyleResolver.hpp"

namespace nimbo::detail {

/// How many sheets a page may have in all, and how deep they may import each other; others count as empty.
inline constexpr std::size_t kMaximumPageSheets = 500;
inline constexpr std::size_t kMaximumImportDepth = 8;

/// The style sheets of a page, in its order: those of "style" elements, and those that "link" elements lead to,
/// with what they import. Alternative ones, and those for another medium, are left out and not loaded. Sheets
/// of one level are loaded at the same time, each once. The views in the answer point into the document.
std::vector<AuthorSheet> loadPageSheets(const HTMLDocument &document, const NSURL &base,
                                        const CSSMedium &medium, WebResourceLoader &loader);

}  // namespace nimbo::detail
