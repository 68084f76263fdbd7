// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextTags.hpp"

namespace nimbo::detail {

namespace {

struct Row {
  std::u16string_view name;
  TagBreak tagBreak = TagBreak::kNone;
  TagElement element = TagElement::kOther;
};

constexpr Row kRows[] = {
    {u"p", TagBreak::kEmptyLine, TagElement::kParagraph},
    {u"h1", TagBreak::kEmptyLine, TagElement::kHeading},
    {u"h2", TagBreak::kEmptyLine, TagElement::kHeading},
    {u"h3", TagBreak::kEmptyLine, TagElement::kHeading},
    {u"h4", TagBreak::kEmptyLine, TagElement::kHeading},
    {u"h5", TagBreak::kEmptyLine, TagElement::kHeading},
    {u"h6", TagBreak::kEmptyLine, TagElement::kHeading},
    {u"h7", TagBreak::kEmptyLine, TagElement::kHeading},
    {u"h8", TagBreak::kEmptyLine, TagElement::kHeading},
    {u"h9", TagBreak::kEmptyLine, TagElement::kHeading},
    {u"hr", TagBreak::kEmptyLine, TagElement::kVoid},
    {u"div", TagBreak::kEmptyLine},
    {u"table", TagBreak::kEmptyLine, TagElement::kList},
    {u"blockquote", TagBreak::kEmptyLine},

    {u"br", TagBreak::kLineFeed, TagElement::kVoid},
    {u"dd", TagBreak::kLineFeed, TagElement::kListItem},
    {u"dl", TagBreak::kLineFeed, TagElement::kList},
    {u"dt", TagBreak::kLineFeed, TagElement::kListItem},
    {u"li", TagBreak::kLineFeed, TagElement::kListItem},
    {u"ol", TagBreak::kLineFeed, TagElement::kList},
    {u"ul", TagBreak::kLineFeed, TagElement::kList},
    {u"tr", TagBreak::kLineFeed, TagElement::kListItem},

    {u"td", TagBreak::kCell, TagElement::kListItem},
    {u"th", TagBreak::kCell, TagElement::kListItem},

    {u"body", TagBreak::kNone, TagElement::kBody},
    {u"head", TagBreak::kNone, TagElement::kHead},
    {u"noframes", TagBreak::kSpace, TagElement::kNoframes},
    {u"noscript", TagBreak::kSpace, TagElement::kNoscript},
    {u"title", TagBreak::kNone, TagElement::kTitle},
    {u"a", TagBreak::kNone, TagElement::kLink},
    {u"script", TagBreak::kNone, TagElement::kRawText},
    {u"style", TagBreak::kNone, TagElement::kRawText},
    {u"pre", TagBreak::kLine, TagElement::kPre},
    {u"listing", TagBreak::kLine, TagElement::kPre},
    {u"textarea", TagBreak::kLine, TagElement::kTextarea},
    {u"xmp", TagBreak::kLine, TagElement::kXmp},
    {u"plaintext", TagBreak::kLine, TagElement::kPlaintext},
    {u"img", TagBreak::kSpace, TagElement::kImage},
    {u"image", TagBreak::kSpace, TagElement::kImage},
    {u"input", TagBreak::kSpace, TagElement::kInput},
    {u"select", TagBreak::kSpace, TagElement::kSelect},
    {u"option", TagBreak::kSpace, TagElement::kOption},
    {u"optgroup", TagBreak::kSpace, TagElement::kOptgroup},

    {u"address", TagBreak::kLine},
    {u"article", TagBreak::kLine},
    {u"aside", TagBreak::kLine},
    {u"caption", TagBreak::kLine},
    {u"center", TagBreak::kLine},
    {u"details", TagBreak::kLine},
    {u"dialog", TagBreak::kLine},
    {u"dir", TagBreak::kLine, TagElement::kList},
    {u"fieldset", TagBreak::kLine},
    {u"figcaption", TagBreak::kLine},
    {u"figure", TagBreak::kLine},
    {u"footer", TagBreak::kLine},
    {u"form", TagBreak::kLine},
    {u"header", TagBreak::kLine},
    {u"hgroup", TagBreak::kLine},
    {u"legend", TagBreak::kLine},
    {u"main", TagBreak::kLine},
    {u"marquee", TagBreak::kLine},
    {u"menu", TagBreak::kLine, TagElement::kList},
    {u"nav", TagBreak::kLine},
    {u"search", TagBreak::kLine},
    {u"section", TagBreak::kLine},
    {u"summary", TagBreak::kLine},
    {u"tbody", TagBreak::kLine},
    {u"tfoot", TagBreak::kLine},
    {u"thead", TagBreak::kLine},

    {u"applet", TagBreak::kSpace},
    {u"audio", TagBreak::kSpace},
    {u"button", TagBreak::kSpace},
    {u"canvas", TagBreak::kSpace},
    {u"datalist", TagBreak::kSpace},
    {u"iframe", TagBreak::kSpace},
    {u"meter", TagBreak::kSpace},
    {u"object", TagBreak::kSpace},
    {u"progress", TagBreak::kSpace},
    {u"svg", TagBreak::kSpace},
    {u"text", TagBreak::kSpace},
    {u"video", TagBreak::kSpace},

    {u"area", TagBreak::kNone, TagElement::kVoid},
    {u"base", TagBreak::kNone, TagElement::kVoid},
    {u"col", TagBreak::kNone, TagElement::kVoid},
    {u"embed", TagBreak::kSpace, TagElement::kVoid},
    {u"frame", TagBreak::kNone, TagElement::kVoid},
    {u"link", TagBreak::kNone, TagElement::kVoid},
    {u"meta", TagBreak::kNone, TagElement::kVoid},
    {u"param", TagBreak::kNone, TagElement::kVoid},
    {u"source", TagBreak::kNone, TagElement::kVoid},
    {u"track", TagBreak::kNone, TagElement::kVoid},
    {u"wbr", TagBreak::kNone, TagElement::kVoid},
};

constexpr unsigned kSlotBits = 10;
constexpr std::size_t kSlots = std::size_t{1} << kSlotBits;

constexpr std::size_t slotOf(std::uint64_t name, std::uint64_t multiplier) {
  return static_cast<std::size_t>(name * multiplier >> (64 - kSlotBits));
}

/// A multiplier that gives each name a slot of its own.
constexpr std::uint64_t perfectMultiplier() {
  for (std::uint64_t multiplier = 0x9e3779b97f4a7c15;; multiplier += 0x6a09e667f3bcc908) {
    std::array<bool, kSlots> taken{};
    bool isPerfect = true;
    for (const Row &row : kRows) {
      bool &slot = taken[slotOf(packedTagName(row.name.data(), static_cast<std::uint32_t>(row.name.size())),
                                multiplier)];
      isPerfect = isPerfect && !slot;
      slot = true;
    }
    if (isPerfect) return multiplier;
  }
}

constexpr std::uint64_t kMultiplier = perfectMultiplier();

constexpr std::array<TagRule, kSlots> kRules = [] {
  std::array<TagRule, kSlots> rules{};
  for (const Row &row : kRows) {
    const std::uint64_t name = packedTagName(row.name.data(), static_cast<std::uint32_t>(row.name.size()));
    rules[slotOf(name, kMultiplier)] = {name, row.tagBreak, row.element};
  }
  return rules;
}();

constexpr TagRule kUnknown{};

}  // namespace

const TagRule &ruleOfTag(std::uint64_t packedName) {
  const TagRule &rule = kRules[slotOf(packedName, kMultiplier)];
  return rule.name == packedName ? rule : kUnknown;
}

}  // namespace nimbo::detail
