// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/WebKit/RichText/PageText.hpp"

namespace nimbo::detail {

/// The text of a page with the sheets in it.
PageText textOfHTML(std::u16string_view html, const PageTextOptions &options = {});

/// The characters as UTF-8: "|" ends a paragraph, "/" a line in it, "^" is a tab, "*" an image.
std::string plainDump(const NSAttributedString &text);
std::string plainDump(std::u16string_view html);

/// The characters with what is not as in a page without styles in front of each run: "{b 24}Title|". Line feeds
/// belong to the last run of their paragraph.
std::string runDump(std::u16string_view html);

/// What is not standard of each paragraph, with its first characters: "<center before=12>Title".
std::string paragraphDump(const NSAttributedString &text);
std::string paragraphDump(std::u16string_view html);

/// A page and the dump that is expected of it.
struct ExpectedDump {
  std::u16string_view html;
  std::string_view dump;
};
void expectText(std::initializer_list<ExpectedDump> pages);
void expectRuns(std::initializer_list<ExpectedDump> pages);
void expectParagraphs(std::initializer_list<ExpectedDump> pages);

}  // namespace nimbo::detail
