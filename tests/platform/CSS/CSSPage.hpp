// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/CSS/CSSElements.hpp"
#include "tests/platform/CSS/CSSText.hpp"

namespace nimbo {

/// Elements out of a short form of markup: "<p id=a class='b c'>" begins one, "</>" ends one, other text is
/// text. Types with a capital letter are foreign.
class CSSPage {
 public:
  explicit CSSPage(std::string_view markup, CSSNames &names, CSSMode mode = CSSMode::kStandard)
      : elements(names, mode) {
    for (std::size_t i = 0; i < markup.size();) {
      const std::size_t end =
          markup[i] == '<' ? markup.find('>', i) + 1 : std::min(markup.find('<', i), markup.size());
      const std::string_view part = markup.substr(i, end - i);
      i = end;
      if (part.starts_with("</"))
        elements.end();
      else if (part.starts_with('<'))
        begin(part.substr(1, part.size() - 2));
      else
        elements.addText();
    }
  }

  CSSElements elements;

 private:
  std::u16string_view keep(std::string_view text) { return texts_.emplace_back(unitsOf(text)); }

  void begin(std::string_view tag) {
    std::size_t i = std::min(tag.find(' '), tag.size());
    const std::string_view type = tag.substr(0, i);
    std::vector<CSSAttribute> attributes;
    while (++i < tag.size()) {
      const std::size_t nameEnd = std::min(tag.find_first_of(" =", i), tag.size());
      CSSAttribute attribute{keep(tag.substr(i, nameEnd - i)), u""};
      i = nameEnd;
      if (i < tag.size() && tag[i] == '=') {
        const bool isQuoted = tag[++i] == '\'';
        const std::size_t start = i + (isQuoted ? 1 : 0);
        const std::size_t end = std::min(tag.find(isQuoted ? '\'' : ' ', start), tag.size());
        attribute.value = keep(tag.substr(start, end - start));
        i = end + (isQuoted ? 1 : 0);
      }
      attributes.push_back(attribute);
    }
    const bool isForeign = type.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") != type.npos;
    elements.begin(keep(type), attributes, isForeign ? CSSElements::Kind::kForeign : CSSElements::Kind::kHTML);
  }

  std::deque<std::u16string> texts_;
};

}  // namespace nimbo
