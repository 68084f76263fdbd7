// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "Classes/PlainText/PlainTextOptions.hpp"
#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// The text of a page laid out for people, whatever the options say of that: without blanks at the ends of
/// lines and empty lines around it. A page without text is its own text.
NSString readableTextOfPage(const NSString &page, PlainTextOptions options);

/// The text of a page so laid out. Nil when it has none.
NSString readableText(const NSString &page);
/// The text without its attachments, and with each line in a line. Nil for nil.
NSString readableText(const NSAttributedString &text);

/// UTF-8 of a text for a terminal, which would take control characters for commands: line breaks are line
/// feeds, tabs stay, and other control characters are U+FFFD.
std::string textForTerminal(const NSString &text);

}  // namespace nimbo
