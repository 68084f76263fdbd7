// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSArray.hpp"

#include "platform/Foundation/id.hpp"

namespace nimbo {

struct detail::ArrayStorage : ReferenceCounted {
  explicit ArrayStorage(std::vector<id> objects) noexcept : elements(std::move(objects)) {}

  std::vector<id> elements;
};

template <>
void destroyShared<detail::ArrayStorage>(ReferenceCounted *storage) noexcept {
  delete static_cast<detail::ArrayStorage *>(storage);
}

NSArray::NSArray(std::initializer_list<id> elements) : NSArray(std::vector<id>(elements)) {}

NSArray::NSArray(std::vector<id> elements) : storage_(makeShared<Storage>(std::move(elements))) {}

NSArray NSArray::array() {
  return NSArray(std::vector<id>());
}

std::uint32_t NSArray::count() const noexcept {
  return storage_ ? static_cast<std::uint32_t>(storage_->elements.size()) : 0;
}

const id &NSArray::operator[](std::uint32_t index) const noexcept {
  return storage_->elements[index];
}

const id *NSArray::begin() const noexcept {
  return storage_ ? storage_->elements.data() : nullptr;
}

const id *NSArray::end() const noexcept {
  return storage_ ? storage_->elements.data() + storage_->elements.size() : nullptr;
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
  if (!storage_)
    storage_ = makeShared<Storage>(std::vector<id>());
  else if (!storage_.isUnique())
    storage_ = makeShared<Storage>(*storage_);
  return storage_->elements;
}

bool NSArray::operator==(const NSArray &other) const {
  return storage_ == other.storage_ ||
         (storage_ && other.storage_ && storage_->elements == other.storage_->elements);
}

}  // namespace nimbo
