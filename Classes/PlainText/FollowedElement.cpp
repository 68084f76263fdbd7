// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/FollowedElement.hpp"

#include <algorithm>

namespace nimbo::detail {

namespace {

bool isBlock(const TagRule &rule) {
  return rule.tagBreak == TagBreak::kEmptyLine || rule.tagBreak == TagBreak::kLine ||
         (rule.tagBreak == TagBreak::kLineFeed && rule.element != TagElement::kVoid);
}

/// Whether the end tag of such an element ends all that was begun in it. Forms cross other elements in many
/// pages, and browsers let them.
bool isContainer(TagName name, const TagRule &rule) {
  if (rule.element == TagElement::kListItem || rule.element == TagElement::kSelect) return true;
  return isBlock(rule) && rule.element != TagElement::kVoid && rule.element != TagElement::kParagraph &&
         name != TagName::kForm;
}

}  // namespace

void FollowedElement::begin(const PlainTextTag &startTag) {
  *this = {};
  packedName_ = startTag.packedName;
  name_ = startTag.name;
  rule_ = startTag.rule;
  depth_ = 1;
}

bool FollowedElement::isImpliedEnd(const PlainTextTag &startTag) const {
  const TagElement element = startTag.rule.element;
  switch (rule_.element) {
    case TagElement::kListItem:
      return listDepth_ == 0 && element == TagElement::kListItem &&
             !(name_ == TagName::kTr && startTag.rule.tagBreak == TagBreak::kCell);
    case TagElement::kOption:
      return element == TagElement::kOption || element == TagElement::kOptgroup;
    case TagElement::kOptgroup:
      return element == TagElement::kOptgroup;
    case TagElement::kParagraph:
      return isBlock(startTag.rule);
    default:
      return false;
  }
}

std::uint32_t *FollowedElement::innerCount(TagName name) {
  const auto known = std::ranges::find(inner_, name, &InnerElements::name);
  return known == inner_.end() ? nullptr : &known->count;
}

bool FollowedElement::isEndedByStartTag(const PlainTextTag &tag) {
  if (isImpliedEnd(tag)) {
    depth_ = 0;
    return true;
  }
  if (isItem() && tag.rule.element == TagElement::kList) ++listDepth_;
  if (!isItem() && tag.packedName == packedName_) {
    ++depth_;
  } else if (isContainer(tag.name, tag.rule) || tag.rule.element == TagElement::kParagraph) {
    if (std::uint32_t *const count = innerCount(tag.name))
      ++*count;
    else
      inner_.push_back({tag.name, 1});
  }
  return false;
}

/// Whether the end tag of what it stands in ends it too.
bool FollowedElement::endsWith(const PlainTextTag &container) const {
  return isContainer(container.name, container.rule) ||
         (container.rule.element == TagElement::kParagraph && !isContainer(name_, rule_));
}

bool FollowedElement::isEndedByEndTag(const PlainTextTag &tag) {
  std::uint32_t *const count = innerCount(tag.name);
  if (tag.packedName == packedName_ && listDepth_ == 0) {
    --depth_;
  } else if (count && *count > 0) {
    --*count;
    if (listDepth_ > 0 && tag.rule.element == TagElement::kList) --listDepth_;
  } else if (endsWith(tag)) {
    depth_ = 0;
  }
  return depth_ == 0;
}

}  // namespace nimbo::detail
