// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/FlatDocumentStyles.hpp"

#include <algorithm>

#include "platform/Documents/FlatDocumentValues.hpp"

namespace nimbo::detail {
namespace {

constexpr std::size_t kMaximumAncestors = 64;
constexpr std::size_t kMaximumTabStops = 256;
constexpr double kLargestFont = 2000;
constexpr std::uint32_t kHeaderLevels = 6;
constexpr std::string_view kDefaultStyle;
constexpr std::string_view kHeadingStyle = "Heading_20_";

std::string keyOf(std::string_view family, std::string_view name) {
  return std::string(family).append("\n").append(name);
}

/// Calls `use` with the value of an attribute that is there.
template <class Use>
void with(const pugi::xml_node &node, const char *name, Use &&use) {
  if (const pugi::xml_attribute attribute = node.attribute(name)) use(std::string_view(attribute.value()));
}

/// The first family of a list of them, without quotation marks.
NSString firstFamily(std::string_view families) {
  std::string_view name = families.substr(0, families.find_first_of(",;"));
  const auto isFrame = [](char c) { return c == '\'' || c == '"' || c == ' '; };
  while (!name.empty() && isFrame(name.front())) name.remove_prefix(1);
  while (!name.empty() && isFrame(name.back())) name.remove_suffix(1);
  return name.empty() ? NSString() : NSString::stringWithLossyUTF8String(name);
}

std::uint16_t fontWeight(std::string_view value) {
  if (value == "bold") return kBoldFontWeight;
  const auto number = wholeNumber(value, 900);
  return number && *number >= 100 ? static_cast<std::uint16_t>(*number) : kRegularFontWeight;
}

NSUnderlineStyle underlineStyle(std::string_view value) {
  if (value == "none") return NSUnderlineStyle::none;
  if (value == "dotted") return NSUnderlineStyle::dotted;
  if (value == "dash" || value == "long-dash") return NSUnderlineStyle::dashed;
  if (value == "dot-dash") return NSUnderlineStyle::dashDot;
  if (value == "dot-dot-dash") return NSUnderlineStyle::dashDotDot;
  return value == "wave" ? NSUnderlineStyle::wavy : NSUnderlineStyle::single;
}

void applyUnderline(const pugi::xml_node &properties, TextAttributes &text) {
  with(properties, "style:text-underline-style",
       [&](std::string_view value) { text.underlineStyle = underlineStyle(value); });
  with(properties, "style:text-underline-color",
       [&](std::string_view value) { text.underlineColor = color(value); });
  // These make another line of a plain one.
  if (text.underlineStyle != NSUnderlineStyle::single) return;
  with(properties, "style:text-underline-type", [&](std::string_view value) {
    if (value == "double") text.underlineStyle = NSUnderlineStyle::doubled;
  });
  with(properties, "style:text-underline-width", [&](std::string_view value) {
    if (value == "bold" || value == "thick") text.underlineStyle = NSUnderlineStyle::thick;
  });
  with(properties, "style:text-underline-mode", [&](std::string_view value) {
    if (value == "skip-white-space") text.underlineStyle = NSUnderlineStyle::byWord;
  });
}

void applyStrikethrough(const pugi::xml_node &properties, TextAttributes &text) {
  with(properties, "style:text-line-through-style", [&](std::string_view value) {
    text.strikethroughStyle = value == "none" ? NSStrikethroughStyle::none : NSStrikethroughStyle::single;
  });
  with(properties, "style:text-line-through-type", [&](std::string_view value) {
    if (value == "none")
      text.strikethroughStyle = NSStrikethroughStyle::none;
    else
      text.strikethroughStyle =
          value == "double" ? NSStrikethroughStyle::doubled : NSStrikethroughStyle::single;
  });
}

NSTextAlignment alignment(std::string_view value) {
  if (value == "center") return NSTextAlignment::center;
  if (value == "justify") return NSTextAlignment::justified;
  if (value == "right" || value == "end") return NSTextAlignment::right;
  return value == "left" || value == "start" ? NSTextAlignment::left : NSTextAlignment::natural;
}

NSTextTabType tabType(std::string_view value) {
  if (value == "center") return NSTextTabType::center;
  if (value == "right") return NSTextTabType::right;
  return value == "char" ? NSTextTabType::decimal : NSTextTabType::left;
}

}  // namespace

FlatDocumentStyles::FlatDocumentStyles(const pugi::xml_node &document) : document_(document) {
  for (const pugi::xml_node &font : document.child("office:font-face-decls").children("style:font-face"))
    fonts_[font.attribute("style:name").value()] = firstFamily(font.attribute("svg:font-family").value());
  for (const char *container : {"office:styles", "office:automatic-styles"}) {
    for (const pugi::xml_node &style : document.child(container).children()) {
      const std::string_view element = style.name(), name = style.attribute("style:name").value();
      const std::string_view family = style.attribute("style:family").value();
      if (element == "style:style")
        add(style, family, name);
      else if (element == "style:default-style")
        add(style, family, kDefaultStyle);
      else if (element == "text:list-style")
        add(style, "list", name);
      else if (element == "style:page-layout")
        add(style, "page", name);
    }
  }
  for (const pugi::xml_node &set : document.child("office:settings").children())
    for (const pugi::xml_node &item : set.children("config:config-item"))
      if (std::string_view(item.attribute("config:name").value()) == "TabsRelativeToIndent")
        tabsFollowIndent_ = std::string_view(item.child_value()) != "false";
}

void FlatDocumentStyles::add(const pugi::xml_node &style, std::string_view family, std::string_view name) {
  styles_[keyOf(family, name)] = style;
}

pugi::xml_node FlatDocumentStyles::style(std::string_view family, std::string_view name) const {
  const auto found = styles_.find(keyOf(family, name));
  return found == styles_.end() ? pugi::xml_node() : found->second;
}

/// The style and what it inherits from, itself last.
std::vector<pugi::xml_node> FlatDocumentStyles::chain(std::string_view family, std::string_view name) const {
  std::vector<pugi::xml_node> result;
  for (pugi::xml_node node = name.empty() ? pugi::xml_node() : style(family, name);
       node && result.size() < kMaximumAncestors;) {
    result.push_back(node);
    const std::string_view parent = node.attribute("style:parent-style-name").value();
    node = parent.empty() ? pugi::xml_node() : style(family, parent);
  }
  std::ranges::reverse(result);
  return result;
}

pugi::xml_node FlatDocumentStyles::properties(std::string_view family, std::string_view name,
                                              const char *element) const {
  pugi::xml_node result = style(family, kDefaultStyle).child(element);
  for (const pugi::xml_node &node : chain(family, name))
    if (const pugi::xml_node found = node.child(element)) result = found;
  return result;
}

pugi::xml_node FlatDocumentStyles::pageLayout() const {
  const pugi::xml_node masters = document_.child("office:master-styles");
  pugi::xml_node master = masters.find_child_by_attribute("style:master-page", "style:name", "Standard");
  if (!master) master = masters.child("style:master-page");
  return style("page", master.attribute("style:page-layout-name").value())
      .child("style:page-layout-properties");
}

const Look &FlatDocumentStyles::paragraphLook(std::string_view styleName) {
  const auto [place, isNew] = paragraphLooks_.try_emplace(std::string(styleName));
  Look &look = place->second;
  if (!isNew) return look;
  std::vector<pugi::xml_node> nodes = chain("paragraph", styleName);
  if (!nodes.empty())
    look.hasOwnMargin =
        static_cast<bool>(nodes.back().child("style:paragraph-properties").attribute("fo:margin-left")) &&
        std::string_view(nodes.back().parent().name()) == "office:automatic-styles";
  if (const pugi::xml_node node = style("paragraph", kDefaultStyle)) nodes.insert(nodes.begin(), node);
  for (const pugi::xml_node &node : nodes) {
    // Some writers forget what the built-in styles are for.
    with(node, "style:name", [&look](std::string_view name) {
      if (!name.starts_with(kHeadingStyle)) return;
      const auto level = wholeNumber(name.substr(kHeadingStyle.size()), kHeaderLevels);
      look.paragraph.headerLevel = static_cast<std::uint8_t>(level.value_or(0));
    });
    with(node, "style:default-outline-level", [&look](std::string_view value) {
      look.paragraph.headerLevel = static_cast<std::uint8_t>(wholeNumber(value, kHeaderLevels).value_or(0));
    });
    applyTextProperties(node.child("style:text-properties"), look);
    applyParagraphProperties(node.child("style:paragraph-properties"), look);
  }
  return look;
}

void FlatDocumentStyles::applyTextStyle(std::string_view styleName, Look &look) const {
  for (const pugi::xml_node &node : chain("text", styleName))
    applyTextProperties(node.child("style:text-properties"), look);
}

void FlatDocumentStyles::applyTextProperties(const pugi::xml_node &properties, Look &look) const {
  TextAttributes &text = look.text;
  with(properties, "fo:font-family",
       [&](std::string_view value) { text.font.familyName = firstFamily(value); });
  with(properties, "style:font-name", [&](std::string_view value) {
    const auto font = fonts_.find(std::string(value));
    text.font.familyName = font == fonts_.end() ? firstFamily(value) : font->second;
  });
  with(properties, "fo:font-size", [&](std::string_view value) {
    const auto factor = percentage(value);
    const double size = factor ? text.font.pointSize * *factor : lengthInPoints(value).value_or(0);
    if (size > 0 && size <= kLargestFont) text.font.pointSize = size;
  });
  with(properties, "fo:font-weight", [&](std::string_view value) { text.font.weight = fontWeight(value); });
  with(properties, "fo:font-style", [&](std::string_view value) { text.font.isItalic = value != "normal"; });
  with(properties, "fo:font-variant",
       [&](std::string_view value) { text.font.isSmallCaps = value == "small-caps"; });
  with(properties, "fo:color", [&](std::string_view value) { text.foregroundColor = color(value); });
  with(properties, "style:use-window-font-color", [&](std::string_view value) {
    if (value == "true") text.foregroundColor.reset();
  });
  with(properties, "fo:background-color", [&](std::string_view value) { text.backgroundColor = color(value); });
  applyUnderline(properties, text);
  applyStrikethrough(properties, text);
  with(properties, "style:text-position", [&](std::string_view value) {
    const double height = percentage(value.substr(0, value.find(' '))).value_or(0);
    const bool isRaised = value.starts_with("super") || height > 0;
    const bool isLowered = value.starts_with("sub") || height < 0;
    text.superscript = static_cast<std::int8_t>(isRaised ? 1 : isLowered ? -1 : 0);
  });
  with(properties, "fo:letter-spacing",
       [&](std::string_view value) { text.kern = lengthInPoints(value).value_or(0); });
  with(properties, "text:display", [&](std::string_view value) { look.isHidden = value == "none"; });
}

void FlatDocumentStyles::applyParagraphProperties(const pugi::xml_node &properties, Look &look) const {
  NSParagraphStyle &paragraph = look.paragraph;
  const auto setLength = [&properties](const char *name, double &length) {
    with(properties, name,
         [&length](std::string_view value) { length = lengthInPoints(value).value_or(length); });
  };
  with(properties, "fo:text-align", [&](std::string_view value) { paragraph.alignment = alignment(value); });
  with(properties, "style:writing-mode", [&](std::string_view value) {
    paragraph.baseWritingDirection = value.starts_with("rl")   ? NSWritingDirection::rightToLeft
                                     : value.starts_with("lr") ? NSWritingDirection::leftToRight
                                                               : NSWritingDirection::natural;
  });
  setLength("fo:margin-left", look.marginLeft);
  setLength("fo:text-indent", look.textIndent);
  setLength("fo:margin-right", paragraph.tailIndent);
  setLength("fo:margin-top", paragraph.paragraphSpacingBefore);
  setLength("fo:margin-bottom", paragraph.paragraphSpacing);
  setLength("style:line-spacing", paragraph.lineSpacing);
  setLength("style:tab-stop-distance", paragraph.defaultTabInterval);
  with(properties, "style:line-height-at-least", [&](std::string_view value) {
    paragraph.minimumLineHeight = lengthInPoints(value).value_or(0);
    paragraph.lineHeightMultiple = paragraph.maximumLineHeight = 0;
  });
  with(properties, "fo:line-height", [&](std::string_view value) {
    const double factor = percentage(value).value_or(1);
    paragraph.lineHeightMultiple = factor == 1 ? 0 : factor;
    paragraph.minimumLineHeight = paragraph.maximumLineHeight = lengthInPoints(value).value_or(0);
  });
  with(properties, "fo:break-before", [&](std::string_view value) { look.breaksPageBefore = value == "page"; });
  with(properties, "fo:break-after", [&](std::string_view value) { look.breaksPageAfter = value == "page"; });
  if (const pugi::xml_node stops = properties.child("style:tab-stops")) applyTabStops(stops, look);
}

void FlatDocumentStyles::applyTabStops(const pugi::xml_node &stops, Look &look) const {
  look.paragraph.tabStops.clear();
  for (const pugi::xml_node &stop : stops.children("style:tab-stop")) {
    const auto position = lengthInPoints(stop.attribute("style:position").value());
    if (!position || look.paragraph.tabStops.size() == kMaximumTabStops) continue;
    look.paragraph.tabStops.push_back(
        {tabType(stop.attribute("style:type").value()), *position + (tabsFollowIndent_ ? look.marginLeft : 0)});
  }
  std::ranges::stable_sort(look.paragraph.tabStops, {}, &NSTextTab::location);
}

}  // namespace nimbo::detail
