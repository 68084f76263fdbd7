// SPDX-License-Identifier: Apache-2.0
#include "tools/RichTextMarkup.hpp"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {

namespace {

constexpr unichar kLineSeparator = 0x2028;

class MarkupWriter {
 public:
  void write(const NSAttributedString &text) {
    markup_.append(u"<meta charset=\"utf-8\">\n");
    const std::u16string_view units = text.string().view();
    std::uint32_t start = 0;
    for (const auto &[end, attributes] : text.runs()) {
      while (start < end) {
        const std::u16string_view rest = units.substr(start, end - start);
        const std::size_t length = std::min(rest.find(u'\n'), rest.size());
        beginParagraph(*attributes);
        writeRun(rest.substr(0, length), *attributes);
        if (length < rest.size()) endParagraph();
        start += static_cast<std::uint32_t>(std::min(length + 1, rest.size()));
      }
    }
    endParagraph();
  }

  NSString markup() && { return std::move(markup_).string(); }

 private:
  void beginParagraph(const TextAttributes &attributes) {
    if (!paragraph_.empty()) return;
    const std::uint8_t level = attributes.paragraphStyle->headerLevel;
    paragraph_ = u"p";
    if (level > 0) paragraph_ = {u'h', static_cast<unichar>(u'0' + level)};
    writeTag(u"<", paragraph_);
  }

  void endParagraph() {
    if (paragraph_.empty()) return;
    writeTag(u"</", paragraph_);
    markup_.append(u"\n");
    paragraph_.clear();
  }

  void writeRun(std::u16string_view units, const TextAttributes &attributes) {
    if (units.empty()) return;
    const std::vector<std::u16string_view> names = elements(attributes);
    if (attributes.link.length() > 0) {
      markup_.append(u"<a href=\"");
      writeText(attributes.link.view());
      markup_.append(u"\">");
    }
    for (const std::u16string_view name : names) writeTag(u"<", name);
    writeText(attributes.attachment ? attributes.attachment.alternativeText().view() : units);
    for (auto name = names.rbegin(); name != names.rend(); ++name) writeTag(u"</", *name);
    if (attributes.link.length() > 0) markup_.append(u"</a>");
  }

  /// The elements that stand for looks, the outermost first.
  static std::vector<std::u16string_view> elements(const TextAttributes &attributes) {
    const bool isLink = attributes.link.length() > 0;
    const std::pair<bool, std::u16string_view> all[] = {
        {attributes.font.isBold() && attributes.paragraphStyle->headerLevel == 0, u"b"},
        {attributes.font.isItalic, u"i"},
        {attributes.underlineStyle != NSUnderlineStyle::none && !isLink, u"u"},
        {attributes.strikethroughStyle != NSStrikethroughStyle::none, u"s"},
        {attributes.superscript > 0, u"sup"},
        {attributes.superscript < 0, u"sub"}};
    std::vector<std::u16string_view> names;
    for (const auto &[isThere, name] : all)
      if (isThere) names.push_back(name);
    return names;
  }

  void writeTag(std::u16string_view beginning, std::u16string_view name) {
    markup_.append(beginning);
    markup_.append(name);
    markup_.append(u">");
  }

  void writeText(std::u16string_view units) {
    const NSString escaped =
        stringByConvertingCharactersToStandardEntities(NSString::stringWithCharacters(units));
    for (const unichar unit : escaped.view()) {
      if (unit == kLineSeparator)
        markup_.append(u"<br>");
      else
        markup_.appendCharacter(unit);
    }
  }

  NSMutableString markup_;
  /// The name of the element that is open; empty when none is.
  std::u16string paragraph_;
};

}  // namespace

NSString markupOfRichText(const NSAttributedString &text) {
  if (!text) return {};
  MarkupWriter writer;
  writer.write(text);
  return std::move(writer).markup();
}

}  // namespace nimbo
