// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/FlatDocumentLists.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/Documents/FlatDocumentValues.hpp"

namespace nimbo::detail {
namespace {

constexpr std::uint32_t kLargestNumber = 1'000'000;
constexpr std::uint32_t kMaximumLevels = 10;
/// White space between the levels is nodes, too.
constexpr std::uint32_t kMaximumNodes = 64;

bool isNumber(const pugi::xml_node &definition) {
  return std::string_view(definition.name()) == "text:list-level-style-number";
}

/// The kind of a counted marker, in braces; empty for none.
std::string_view kindOfFormat(std::string_view format) {
  if (format.empty()) return {};
  switch (format.front()) {
    case 'a':
      return "{lower-alpha}";
    case 'A':
      return "{upper-alpha}";
    case 'i':
      return "{lower-roman}";
    case 'I':
      return "{upper-roman}";
    default:
      return "{decimal}";
  }
}

/// Text that stands for itself in a format of markers.
std::string withoutBraces(std::string_view text) {
  std::string result(text);
  std::erase_if(result, [](char c) { return c == '{' || c == '}'; });
  return result;
}

/// The format of a bullet; characters of symbol fonts, which stand in a private area, have none of their own.
std::string bulletFormat(std::string_view character) {
  constexpr struct {
    std::string_view character, format;
  } kBullets[] = {{"\u2022", "{disc}"},   {"\u25cf", "{disc}"},   {"\u00b7", "{disc}"}, {"\uf0b7", "{disc}"},
                  {"\u25e6", "{circle}"}, {"\u25cb", "{circle}"}, {"o", "{circle}"},    {"\u25aa", "{square}"},
                  {"\u25a0", "{square}"}, {"\uf0a7", "{square}"}, {"-", "{hyphen}"},    {"\u2013", "{hyphen}"},
                  {"\uf02d", "{hyphen}"}};
  for (const auto &[known, format] : kBullets)
    if (character == known) return std::string(format);
  const bool isPrivate = character.starts_with("\xef\x80") || character.starts_with("\xef\x81") ||
                         character.starts_with("\xef\x82") || character.starts_with("\xef\x83");
  return isPrivate || character.empty() ? "{disc}" : withoutBraces(character);
}

std::string markerFormat(const pugi::xml_node &definition) {
  if (!isNumber(definition)) return bulletFormat(definition.attribute("text:bullet-char").value());
  const std::string_view kind = kindOfFormat(definition.attribute("style:num-format").value());
  if (kind.empty()) return {};
  return withoutBraces(definition.attribute("style:num-prefix").value())
      .append(kind)
      .append(withoutBraces(definition.attribute("style:num-suffix").value()));
}

std::int32_t firstNumber(const pugi::xml_node &definition) {
  const auto start = wholeNumber(definition.attribute("text:start-value").value(), kLargestNumber);
  return static_cast<std::int32_t>(start.value_or(1));
}

}  // namespace

FlatDocumentLists::OpenLists FlatDocumentLists::moveTo(OpenLists lists) {
  return std::exchange(open_, std::move(lists));
}

pugi::xml_node FlatDocumentLists::definition(const std::string &styleName, std::size_t level) const {
  const auto nodes = styles_.style("list", styleName).children();
  std::uint32_t seen = 0;
  for (auto place = nodes.begin(); place != nodes.end() && seen < kMaximumNodes; ++place, ++seen)
    if (wholeNumber(place->attribute("text:level").value(), kMaximumLevels) == level + 1) return *place;
  return pugi::xml_node();
}

void FlatDocumentLists::enterList(const pugi::xml_node &list) {
  OpenList opened;
  const std::size_t level = open_.size();
  opened.styleName = list.attribute("text:style-name").value();
  if (opened.styleName.empty() && level > 0) opened.styleName = open_.back().styleName;
  const bool continues = std::string_view(list.attribute("text:continue-numbering").value()) == "true";
  if (level > 0) {
    opened.count = open_.back().count;
    // The second list below an item begins anew; what stands below no item of its own goes on.
    auto &levels = opened.count->levels;
    if (!continues && !open_.back().hasMarker) levels.resize(std::min(levels.size(), level));
  } else {
    const auto named = byName_.find(list.attribute("text:continue-list").value());
    const auto styled = byStyle_.find(opened.styleName);
    if (named != byName_.end())
      opened.count = named->second;
    else if (continues && styled != byStyle_.end())
      opened.count = styled->second;
    else
      opened.count = std::make_shared<Count>();
    if (const pugi::xml_attribute name = list.attribute("xml:id")) byName_[name.value()] = opened.count;
    byStyle_[opened.styleName] = opened.count;
  }
  opened.definition = definition(opened.styleName, level);
  open_.push_back(std::move(opened));
}

void FlatDocumentLists::leaveList() {
  open_.pop_back();
}

void FlatDocumentLists::beginItem(const pugi::xml_node &item) {
  OpenList &list = open_.back();
  list.hasMarker = std::string_view(item.name()) == "text:list-item";
  const auto start = wholeNumber(item.attribute("text:start-value").value(), kLargestNumber);
  if (!start || !list.hasMarker) return;
  auto &levels = list.count->levels;
  levels.resize(std::max(levels.size(), open_.size()));
  levels[open_.size() - 1].number = static_cast<std::int32_t>(*start) - 1;
  levels[open_.size() - 1].hasBegun = true;
}

/// The number of the innermost level, with those of the outer ones in front that are shown, too.
std::string FlatDocumentLists::numbers(std::size_t level) const {
  const std::size_t shown =
      wholeNumber(open_[level].definition.attribute("text:display-levels").value(), kMaximumLevels).value_or(1);
  std::string result;
  for (std::size_t i = level + 1 - std::min(shown, level + 1); i <= level; ++i) {
    NSTextList list;
    list.markerFormat =
        NSString::stringWithUTF8String(kindOfFormat(open_[i].definition.attribute("style:num-format").value()));
    if (list.markerFormat.length() == 0) continue;
    if (!result.empty()) result += '.';
    result += list.markerForItemNumber(open_[level].count->levels[i].number).UTF8String();
  }
  return result;
}

NSString FlatDocumentLists::takeMarker() {
  if (open_.empty() || !open_.back().hasMarker) return NSString();
  OpenList &list = open_.back();
  const std::size_t level = open_.size() - 1;
  list.hasMarker = false;
  auto &levels = list.count->levels;
  levels.resize(open_.size());
  for (std::size_t i = 0; i < open_.size(); ++i) {
    if (levels[i].hasBegun) continue;
    levels[i].hasBegun = true;
    levels[i].number = firstNumber(open_[i].definition) - (i == level ? 1 : 0);
  }
  for (Level &each : levels)
    if (each.identifier == 0) each.identifier = ++lists_;
  ++levels[level].number;
  const std::string format = markerFormat(list.definition);
  if (format.empty()) return NSString();
  if (!isNumber(list.definition)) return textList(level).markerForItemNumber(1);
  return NSString::stringWithLossyUTF8String(
      std::string(list.definition.attribute("style:num-prefix").value()) + numbers(level) +
      list.definition.attribute("style:num-suffix").value());
}

NSTextList FlatDocumentLists::textList(std::size_t level) const {
  NSTextList result;
  result.markerFormat = NSString::stringWithLossyUTF8String(markerFormat(open_[level].definition));
  result.startingItemNumber = firstNumber(open_[level].definition);
  const auto &levels = open_[level].count->levels;
  if (level < levels.size()) result.identifier = levels[level].identifier;
  return result;
}

void FlatDocumentLists::apply(const Look &look, NSParagraphStyle &style) const {
  double margin = look.marginLeft, indent = look.textIndent;
  if (!open_.empty() && !look.hasOwnMargin) {
    const pugi::xml_node properties = open_.back().definition.child("style:list-level-properties");
    const auto length = [](const pugi::xml_node &node, const char *name) {
      return lengthInPoints(node.attribute(name).value()).value_or(0);
    };
    if (const pugi::xml_node label = properties.child("style:list-level-label-alignment")) {
      margin = length(label, "fo:margin-left");
      indent = length(label, "fo:text-indent");
    } else {
      const double width = length(properties, "text:min-label-width");
      margin += length(properties, "text:space-before") + width;
      indent = -width;
    }
  }
  style.headIndent = margin;
  style.firstLineHeadIndent = margin + indent;
  for (std::size_t level = 0; level < open_.size(); ++level)
    if (NSTextList list = textList(level); list.markerFormat.length() > 0)
      style.textLists.push_back(std::move(list));
}

}  // namespace nimbo::detail
