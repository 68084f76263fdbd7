// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/FollowedElement.hpp"

#include <algorithm>

namespace nimbo::detail {

namespace {

constexpr std::uint64_t kRow = packedTagName(u"tr", 2);
/// Forms cross other elements in many pages, and browsers let them.
constexpr std::uint64_t kForm = packedTagName(u"form", 4);

bool isBlock(const TagRule &rule) {
  return rule.tagBreak == TagBreak::kEmptyLine || rule.tagBreak == TagBreak::kLine ||
         (rule.tagBreak == TagBreak::kLineFeed && rule.element != TagElement::kVoid);
}

/// Whether its end tag ends all that was begun in it.
bool isContainer(const TagRule &rule) {
  if (rule.element == TagElement::kListItem || rule.element == TagElement::kSelect) return true;
  return isBlock(rule) && rule.element != TagElement::kVoid && rule.element != TagElement::kParagraph &&
         rule.name != kForm;
}

}  // namespace

void FollowedElement::begin(const StartTag &tag) {
  *this = {};
  rule_ = tag.rule;
  rule_.name = tag.name;
  depth_ = 1;
}

bool FollowedElement::isImpliedEnd(const StartTag &tag) const {
  const TagElement element = tag.rule.element;
  switch (rule_.element) {
    case TagElement::kListItem:
      return listDepth_ == 0 && element == TagElement::kListItem &&
             !(rule_.name == kRow && tag.rule.tagBreak == TagBreak::kCell);
    case TagElement::kOption:
      return element == TagElement::kOption || element == TagElement::kOptgroup;
    case TagElement::kOptgroup:
      return element == TagElement::kOptgroup;
    case TagElement::kParagraph:
      return isBlock(tag.rule);
    default:
      return false;
  }
}

std::uint32_t *FollowedElement::innerCount(std::uint64_t name) {
  const auto known = std::ranges::find(inner_, name, &InnerElements::name);
  return known == inner_.end() ? nullptr : &known->count;
}

bool FollowedElement::isEndedByStartTag(const StartTag &tag) {
  if (isImpliedEnd(tag)) {
    depth_ = 0;
    return true;
  }
  if (isItem() && tag.rule.element == TagElement::kList) ++listDepth_;
  if (!isItem() && tag.name == rule_.name) {
    ++depth_;
  } else if (isContainer(tag.rule) || tag.rule.element == TagElement::kParagraph) {
    if (std::uint32_t *const count = innerCount(tag.name))
      ++*count;
    else
      inner_.push_back({tag.name, 1});
  }
  return false;
}

/// Whether the end tag of what it stands in ends it too.
bool FollowedElement::endsWith(const TagRule &container) const {
  return isContainer(container) || (container.element == TagElement::kParagraph && !isContainer(rule_));
}

void FollowedElement::leaveInner(std::uint32_t &count, const TagRule &rule) {
  --count;
  if (listDepth_ > 0 && rule.element == TagElement::kList) --listDepth_;
}

bool FollowedElement::isEndedByEndTag(std::uint64_t name, const TagRule &rule) {
  std::uint32_t *const count = innerCount(name);
  if (name == rule_.name && listDepth_ == 0)
    --depth_;
  else if (count && *count > 0)
    leaveInner(*count, rule);
  else if (endsWith(rule))
    depth_ = 0;
  return depth_ == 0;
}

}  // namespace nimbo::detail
