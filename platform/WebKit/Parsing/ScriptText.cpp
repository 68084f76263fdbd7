// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Parsing/ScriptText.hpp"

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Vectors/UnicharRanges.hpp"

namespace nimbo {
namespace {

enum class State { plain, escaped, doubleEscaped };

constexpr std::string_view kScript = "script";

/// Whether the name "script" stands there alone.
bool isScriptAt(std::u16string_view page, std::size_t index) {
  const std::size_t end = index + kScript.size();
  if (end >= page.size() || !equalsASCIINoCase(page.substr(index, kScript.size()), kScript)) return false;
  const unichar c = page[end];
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f' || c == u'/' || c == u'>';
}

/// The first "<", or ">" behind two hyphens, where the script may change its state.
std::size_t findTurn(std::u16string_view page, std::size_t index, State state) {
  using detail::UnicharRange;
  static constexpr UnicharRange kTurns[] = {{u'<', u'<'}, {u'>', u'>'}};
  const std::span<const UnicharRange> turns(kTurns, state == State::plain ? 1 : 2);
  return index + detail::findUnicharInRanges(page.data() + index, page.size() - index, turns);
}

}  // namespace

std::size_t endOfScriptText(std::u16string_view page, std::size_t start) {
  State state = State::plain;
  for (std::size_t i = start; (i = findTurn(page, i, state)) < page.size(); ++i) {
    if (page[i] == u'>') {
      // It stands behind the "<!--" at least, whose hyphens may be those of the end, too.
      if (page[i - 1] == u'-' && page[i - 2] == u'-') state = State::plain;
      continue;
    }
    const bool isEnd = i + 1 < page.size() && page[i + 1] == u'/';
    if (isEnd && state != State::doubleEscaped && isScriptAt(page, i + 2)) return i;
    if (state == State::plain) {
      if (page.substr(i, 4) == u"<!--") state = State::escaped;
    } else if (isScriptAt(page, i + (isEnd ? 2 : 1))) {
      if (isEnd)
        state = State::escaped;
      else if (state == State::escaped)
        state = State::doubleEscaped;
    }
  }
  return page.size();
}

}  // namespace nimbo
