// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSDictionary.hpp"

#include <algorithm>
#include <unordered_map>

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// Few entries are searched in order; more have a hash index of all keys.
struct detail::DictionaryStorage : ReferenceCounted {
  using Entry = NSDictionary::Entry;
  static constexpr std::size_t kIndexedFrom = 16;
  static constexpr std::size_t kNone = SIZE_MAX;

  std::vector<Entry> entries;
  std::unordered_map<NSString, std::size_t, NSStringHash> index;

  std::size_t find(const NSString &key) const {
    if (entries.size() < kIndexedFrom) {
      const auto entry =
          std::find_if(entries.begin(), entries.end(), [&](const Entry &e) { return e.first == key; });
      return entry == entries.end() ? kNone : static_cast<std::size_t>(entry - entries.begin());
    }
    const auto found = index.find(key);
    return found == index.end() ? kNone : found->second;
  }

  void extendIndex() {
    if (entries.size() < kIndexedFrom) return;
    for (std::size_t i = index.size(); i < entries.size(); ++i) index.emplace(entries[i].first, i);
  }
};

template <>
void destroyShared<detail::DictionaryStorage>(ReferenceCounted *storage) noexcept {
  delete static_cast<detail::DictionaryStorage *>(storage);
}

NSDictionary::NSDictionary(std::initializer_list<Entry> entries) : storage_(makeShared<Storage>()) {
  for (const auto &[key, value] : entries) setObject(value, key);
}

NSDictionary NSDictionary::dictionary() {
  NSDictionary result;
  result.storage_ = makeShared<Storage>();
  return result;
}

std::uint32_t NSDictionary::count() const noexcept {
  return storage_ ? static_cast<std::uint32_t>(storage_->entries.size()) : 0;
}

const id &NSDictionary::objectForKey(const NSString &key) const noexcept {
  static const id nil;
  const std::size_t at = storage_ ? storage_->find(key) : Storage::kNone;
  return at == Storage::kNone ? nil : storage_->entries[at].second;
}

std::vector<NSString> NSDictionary::allKeys() const {
  std::vector<NSString> keys;
  keys.reserve(count());
  for (const auto &entry : *this) keys.push_back(entry.first);
  return keys;
}

const NSDictionary::Entry *NSDictionary::begin() const noexcept {
  return storage_ ? storage_->entries.data() : nullptr;
}

const NSDictionary::Entry *NSDictionary::end() const noexcept {
  return storage_ ? storage_->entries.data() + storage_->entries.size() : nullptr;
}

void NSDictionary::setObject(id object, const NSString &key) {
  if (!object || !key) return;
  Storage &storage = own();
  if (const std::size_t at = storage.find(key); at != Storage::kNone) {
    storage.entries[at].second = std::move(object);
  } else {
    storage.entries.emplace_back(key, std::move(object));
    storage.extendIndex();
  }
}

void NSDictionary::removeObjectForKey(const NSString &key) {
  if (!objectForKey(key)) return;
  Storage &storage = own();
  storage.entries.erase(storage.entries.begin() + static_cast<std::ptrdiff_t>(storage.find(key)));
  storage.index.clear();
  storage.extendIndex();
}

void NSDictionary::addEntriesFromDictionary(const NSDictionary &other) {
  if (storage_ == other.storage_) return;
  for (const auto &[key, value] : other) setObject(value, key);
}

std::size_t NSDictionary::hash() const noexcept {
  std::size_t hash = count();
  for (const auto &[key, value] : *this) hash += combinedHash(key.hash(), value.hash());
  return hash;
}

NSDictionary::Storage &NSDictionary::own() {
  if (!storage_)
    storage_ = makeShared<Storage>();
  else if (!storage_.isUnique())
    storage_ = makeShared<Storage>(*storage_);
  return *storage_;
}

bool NSDictionary::operator==(const NSDictionary &other) const {
  if (storage_ == other.storage_) return true;
  if (!storage_ || !other || count() != other.count()) return false;
  return std::all_of(begin(), end(),
                     [&](const Entry &entry) { return entry.second == other.objectForKey(entry.first); });
}

}  // namespace nimbo
