// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSArray.hpp"

#include "platform/Foundation/id.hpp"

namespace nimbo {

NSArray::NSArray(std::initializer_list<id> elements) : elements_(std::make_shared<std::vector<id>>(elements)) {}

NSArray::NSArray(std::vector<id> elements)
    : elements_(std::make_shared<std::vector<id>>(std::move(elements))) {}

NSArray NSArray::array() {
  return NSArray(std::vector<id>());
}

std::uint32_t NSArray::count() const noexcept {
  return elements_ ? static_cast<std::uint32_t>(elements_->size()) : 0;
}

const id &NSArray::operator[](std::uint32_t index) const noexcept {
  return (*elements_)[index];
}

const id *NSArray::begin() const noexcept {
  return elements_ ? elements_->data() : nullptr;
}

const id *NSArray::end() const noexcept {
  return elements_ ? elements_->data() + elements_->size() : nullptr;
}

void NSArray::addObject(id object) {
  own().push_back(std::move(object));
}

void NSArray::insertObjectsAtIndex(std::span<const id> objects, std::uint32_t index) {
  auto &elements = own();
  elements.insert(elements.begin() + index, objects.begin(), objects.end());
}

void NSArray::removeObjectAtIndex(std::uint32_t index) {
  auto &elements = own();
  elements.erase(elements.begin() + index);
}

void NSArray::setCount(std::uint32_t count) {
  own().resize(count);
}

void NSArray::reserve(std::uint32_t count) {
  own().reserve(count);
}

std::span<id> NSArray::mutableObjects() {
  return own();
}

std::size_t NSArray::hash() const noexcept {
  std::size_t hash = count();
  for (const id &element : *this) hash = combinedHash(hash, element.hash());
  return hash;
}

std::vector<id> &NSArray::own() {
  if (!elements_)
    elements_ = std::make_shared<std::vector<id>>();
  else if (elements_.use_count() > 1)
    elements_ = std::make_shared<std::vector<id>>(*elements_);
  return *elements_;
}

bool NSArray::operator==(const NSArray &other) const {
  return elements_ == other.elements_ || (elements_ && other.elements_ && *elements_ == *other.elements_);
}

}  // namespace nimbo
