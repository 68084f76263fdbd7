// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSElements.hpp"

#include <algorithm>

#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

CSSElements::CSSElements(CSSNames &names, CSSMode mode)
    : names_(&names), mode_(mode), filters_(1), open_{{kNoCSSElement}} {}

CSSElementIndex CSSElements::begin(std::u16string_view type, std::span<const CSSAttribute> attributes,
                                   Kind kind) {
  const auto index = static_cast<CSSElementIndex>(elements_.size());
  Open &open = open_.back();
  Element element;
  element.kind = kind;
  element.type = kind == Kind::kHTML ? names_->internLowercase(type) : names_->intern(type);
  element.parent = open.index;
  element.previousSibling = open.lastChild;
  element.end = index + 1;
  element.ancestorFilter = filterOfChildren(open);
  addAttributes(element, attributes);
  if (open.lastChild != kNoCSSElement) {
    elements_[open.lastChild].nextSibling = index;
    element.childIndex = elements_[open.lastChild].childIndex + 1;
  }
  open.lastChild = index;
  if (open.index != kNoCSSElement) {
    elements_[open.index].childCount = element.childIndex;
    elements_[open.index].isEmpty = false;
  } else {
    rootCount_ = element.childIndex;
  }
  elements_.push_back(element);
  open_.push_back({index});
  return index;
}

void CSSElements::addAttributes(Element &element, std::span<const CSSAttribute> attributes) {
  const bool isQuirky = mode_ == CSSMode::kQuirks;
  const auto nameOf = [&](std::u16string_view value) {
    return isQuirky ? names_->internLowercase(value) : names_->intern(value);
  };
  element.firstAttribute = static_cast<std::uint32_t>(attributes_.size());
  element.attributeCount = static_cast<std::uint32_t>(attributes.size());
  element.firstClass = static_cast<std::uint32_t>(classes_.size());
  for (const auto &[name, value] : attributes) {
    const CSSName attribute =
        element.kind == Kind::kHTML ? names_->internLowercase(name) : names_->intern(name);
    attributes_.push_back({attribute, value});
    if (equalsASCIINoCase(name, "id")) {
      element.id = nameOf(value);
    } else if (equalsASCIINoCase(name, "class")) {
      for (std::size_t i = 0; i < value.size();) {
        const std::size_t end = std::min(value.find_first_of(u" \t\n\r\f", i), value.size());
        if (end > i) classes_.push_back(nameOf(value.substr(i, end - i)));
        i = end + 1;
      }
    }
  }
  const auto first = classes_.begin() + element.firstClass;
  std::sort(first, classes_.end());
  classes_.erase(std::unique(first, classes_.end()), classes_.end());
  element.classCount = static_cast<std::uint32_t>(classes_.size()) - element.firstClass;
}

std::uint32_t CSSElements::filterOfChildren(Open &open) {
  if (open.index == kNoCSSElement) return 0;
  if (open.filter != 0) return open.filter;
  const Element &parent = elements_[open.index];
  Filter filter = filters_[parent.ancestorFilter];
  const auto add = [&](CSSName name) {
    if (name != kNoCSSName) filter[filterBit(name) / 64] |= std::uint64_t{1} << filterBit(name) % 64;
  };
  add(parent.type);
  add(parent.id);
  for (const CSSName name : classes(parent)) add(name);
  open.filter = static_cast<std::uint32_t>(filters_.size());
  filters_.push_back(filter);
  return open.filter;
}

void CSSElements::addText() {
  if (open_.back().index != kNoCSSElement) elements_[open_.back().index].isEmpty = false;
}

void CSSElements::end() {
  elements_[open_.back().index].end = static_cast<CSSElementIndex>(elements_.size());
  open_.pop_back();
}

std::optional<std::u16string_view> CSSElements::attribute(const Element &element, CSSName name) const {
  for (const Attribute &attribute : attributes(element)) {
    if (attribute.name == name) return attribute.value;
  }
  return std::nullopt;
}

}  // namespace nimbo
