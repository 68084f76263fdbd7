// SPDX-License-Identifier: Apache-2.0
#include "tools/ReadableText.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "Classes/PlainText/PlainTextHandler.hpp"
#include "platform/AppKit/NSTextAttachment.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {

namespace {

constexpr std::u16string_view kBlanks = u" \t\u00a0";
constexpr unichar kReplacement = 0xfffd;

constexpr bool isControl(unichar c) {
  return c < 0x20 || (c >= 0x7f && c < 0xa0);
}

/// What stands for a control character that is no line feed behind a carriage return.
constexpr unichar replacementOf(unichar control) {
  if (control == u'\n' || control == u'\t') return control;
  return control == u'\r' || control == u'\f' ? u'\n' : kReplacement;
}

}  // namespace

NSString readableTextOfPage(const NSString &page, PlainTextOptions options) {
  options.forReading = true;
  const NSString text = _convertHtml2PlainTextUsingHandler(page, PlainTextHandler, options, nullptr);
  if (text.identicalTo(page)) return page;
  NSMutableString lines;
  lines.reserve(text.length());
  std::u16string_view rest = text.view();
  while (!rest.empty()) {
    const std::u16string_view line = rest.substr(0, rest.find(u'\n'));
    lines.append(line.substr(0, line.find_last_not_of(kBlanks) + 1));
    rest.remove_prefix(line.size());
    if (rest.empty()) break;
    lines.appendCharacter(u'\n');
    rest.remove_prefix(1);
  }
  while (lines.length() > 0 && lines.view().back() == u'\n') lines.setLength(lines.length() - 1);
  lines.deleteCharactersInRange(
      {0, static_cast<std::uint32_t>(std::min(lines.view().find_first_not_of(u'\n'), lines.view().size()))});
  return std::move(lines).string();
}

NSString readableText(const NSString &page) {
  const NSString text = readableTextOfPage(page, {});
  return text.identicalTo(page) ? NSString() : text;
}

NSString readableText(const NSAttributedString &text) {
  constexpr unichar kLineSeparator = 0x2028;
  if (!text) return {};
  NSMutableString result;
  result.reserve(text.length());
  for (const unichar unit : text.string().view())
    if (unit != NSAttachmentCharacter) result.appendCharacter(unit == kLineSeparator ? u'\n' : unit);
  return std::move(result).string();
}

std::string textForTerminal(const NSString &text) {
  NSMutableString shown;
  shown.reserve(text.length());
  unichar before = 0;
  for (const unichar c : text.view()) {
    if (!(before == u'\r' && c == u'\n')) shown.appendCharacter(isControl(c) ? replacementOf(c) : c);
    before = c;
  }
  return std::move(shown).string().UTF8String();
}

}  // namespace nimbo
