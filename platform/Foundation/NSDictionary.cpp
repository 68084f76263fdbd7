// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSDictionary.hpp"

#include <algorithm>
#include <unordered_map>

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// Few entries are searched in order; more have a hash index of all keys, and then the place of one that is
/// removed stays, with a nil key, until half of the places are such.
struct detail::DictionaryStorage : ReferenceCounted {
  using Entry = NSDictionary::Entry;
  static constexpr std::size_t kIndexedFrom = 16;
  static constexpr std::size_t kNone = SIZE_MAX;

  std::vector<Entry> places;
  std::unordered_map<NSString, std::size_t, NSStringHash> index;
  std::size_t removed = 0;
  /// The place of the first entry; so many before it are removed.
  std::size_t first = 0;

  std::size_t find(const NSString &key) const {
    if (index.empty()) {
      const auto entry =
          std::find_if(places.begin(), places.end(), [&](const Entry &e) { return e.first == key; });
      return entry == places.end() ? kNone : static_cast<std::size_t>(entry - places.begin());
    }
    const auto found = index.find(key);
    return found == index.end() ? kNone : found->second;
  }

  void add(const NSString &key, id &&object) {
    places.emplace_back(key, std::move(object));
    if (!index.empty())
      index.emplace(places.back().first, places.size() - 1);
    else if (places.size() >= kIndexedFrom)
      makeIndex();
  }

  void remove(std::size_t at) {
    if (index.empty()) {
      places.erase(places.begin() + static_cast<std::ptrdiff_t>(at));
      return;
    }
    index.erase(places[at].first);
    places[at] = Entry();
    if (++removed >= places.size() / 2) return closeGaps();
    while (!places[first].first) ++first;
  }

  void closeGaps() {
    std::erase_if(places, [](const Entry &entry) { return !entry.first; });
    removed = first = 0;
    if (places.size() < kIndexedFrom) return index.clear();
    for (std::size_t i = 0; i < places.size(); ++i) index.find(places[i].first)->second = i;
  }

  void makeIndex() {
    std::unordered_map<NSString, std::size_t, NSStringHash> all;
    for (std::size_t i = 0; i < places.size(); ++i) all.emplace(places[i].first, i);
    index = std::move(all);
  }
};

template <>
void destroyShared<detail::DictionaryStorage>(ReferenceCounted *storage) noexcept {
  delete static_cast<detail::DictionaryStorage *>(storage);
}

NSDictionary::NSDictionary(std::initializer_list<Entry> entries) : storage_(makeShared<Storage>()) {
  storage_->places.reserve(entries.size());
  for (const auto &[key, value] : entries) setObject(value, key);
}

NSDictionary NSDictionary::dictionary() {
  NSDictionary result;
  result.storage_ = makeShared<Storage>();
  return result;
}

std::uint32_t NSDictionary::count() const noexcept {
  return storage_ ? static_cast<std::uint32_t>(storage_->places.size() - storage_->removed) : 0;
}

const id &NSDictionary::objectForKey(const NSString &key) const noexcept {
  static const id nil;
  const std::size_t at = storage_ ? storage_->find(key) : Storage::kNone;
  return at == Storage::kNone ? nil : storage_->places[at].second;
}

std::vector<NSString> NSDictionary::allKeys() const {
  std::vector<NSString> keys;
  keys.reserve(count());
  for (const auto &entry : *this) keys.push_back(entry.first);
  return keys;
}

NSDictionary::Iterator NSDictionary::begin() const noexcept {
  if (!storage_) return {};
  const Entry *const places = storage_->places.data();
  return {places + storage_->first, places + storage_->places.size()};
}

NSDictionary::Iterator NSDictionary::end() const noexcept {
  if (!storage_) return {};
  const Entry *const end = storage_->places.data() + storage_->places.size();
  return {end, end};
}

// A key may be borrowed from the dictionary, and go with what is not shared any more: it is looked up first.

void NSDictionary::setObject(id object, const NSString &key) {
  if (!object || !key) return;
  const std::size_t at = storage_ ? storage_->find(key) : Storage::kNone;
  if (at == Storage::kNone)
    own().add(key, std::move(object));
  else
    own().places[at].second = std::move(object);
}

void NSDictionary::removeObjectForKey(const NSString &key) {
  const std::size_t at = storage_ ? storage_->find(key) : Storage::kNone;
  if (at != Storage::kNone) own().remove(at);
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
