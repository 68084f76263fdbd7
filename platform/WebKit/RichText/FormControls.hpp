// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/WebKit/HTMLDocument.hpp"

namespace nimbo::detail {

/// What an "input" shows as text: its value, or what a button without one is called. Empty for passwords and
/// what is no text. A picture as a button is for who places pictures.
std::u16string textOfInput(const HTMLDocument &document, const HTMLNode &input);

/// What an "option" shows: its label, or the text in it without superfluous blanks.
std::u16string textOfOption(const HTMLDocument &document, HTMLNodeIndex option);

}  // namespace nimbo::detail
