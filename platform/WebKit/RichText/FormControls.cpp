// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/FormControls.hpp"

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

std::u16string textOfOption(const HTMLDocument &document, HTMLNodeIndex option) {
  if (const auto label = document.attribute(document.node(option), "label"_atom); label && !label->empty())
    return std::u16string(*label);
  std::u16string text;
  for (HTMLNodeIndex i = document.node(option).firstChild; i != kNoHTMLNode;
       i = document.nextInTree(i, option)) {
    if (document.node(i).kind != HTMLNodeKind::text) continue;
    for (const char16_t c : document.text(document.node(i)))
      if (!isASCIIWhiteSpace(c))
        text += c;
      else if (!text.empty() && text.back() != u' ')
        text += u' ';
  }
  if (text.ends_with(u' ')) text.pop_back();
  return text;
}

std::u16string textOfInput(const HTMLDocument &document, const HTMLNode &input) {
  const std::u16string_view type = document.attribute(input, "type"_atom).value_or(u"");
  const auto value = document.attribute(input, "value"_atom);
  if (equalsOneOfASCIINoCase(type, {"password", "hidden", "checkbox", "radio", "file", "color", "range"}))
    return {};
  if (value) return std::u16string(*value);
  if (equalsASCIINoCase(type, "submit")) return u"Submit";
  if (equalsASCIINoCase(type, "reset")) return u"Reset";
  return {};
}

}  // namespace nimbo::detail
