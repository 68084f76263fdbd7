// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// A page of rich text: its paragraphs and headings, links, and what is bold, italic, underlined, struck out,
/// raised or lowered. Of attachments it has what is said in their place. Nil for nil.
NSString markupOfRichText(const NSAttributedString &text);

}  // namespace nimbo
