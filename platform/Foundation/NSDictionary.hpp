// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <utility>
#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

class id;

namespace detail {

struct DictionaryStorage;

/// Goes from entry to entry; the places of removed ones, whose keys are nil, are passed over.
template <class Entry>
class DictionaryIterator {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = Entry;
  using difference_type = std::ptrdiff_t;
  using pointer = const Entry *;
  using reference = const Entry &;

  DictionaryIterator() noexcept = default;
  DictionaryIterator(pointer entry, pointer end) noexcept : entry_(entry), end_(end) {}

  reference operator*() const noexcept { return *entry_; }
  pointer operator->() const noexcept { return entry_; }
  DictionaryIterator &operator++() noexcept {
    do ++entry_;
    while (entry_ != end_ && !entry_->first);
    return *this;
  }
  DictionaryIterator operator++(int) noexcept { return std::exchange(*this, ++DictionaryIterator(*this)); }
  friend bool operator==(const DictionaryIterator &a, const DictionaryIterator &b) noexcept {
    return a.entry_ == b.entry_;
  }

 private:
  pointer entry_ = nullptr;
  pointer end_ = nullptr;
};

}  // namespace detail

/// Ends the storage of a dictionary.
template <>
NIMBO_PUBLIC void destroyShared<detail::DictionaryStorage>(ReferenceCounted *storage) noexcept;

/// Property-list values under string keys, in the order in which the keys were first set: a handle whose copies
/// share their storage until one of them is changed. A default-made one is nil: it tests false, has no entries
/// and equals only nil; the first change makes it a dictionary. Nil values are never stored.
///
/// A handle may be copied and read from any thread; one handle is changed by one.
///
///     NSDictionary facts = {{u"Title"_ns, u"A page"_ns}, {u"Pages"_ns, 12}};
///     facts.setObject(true, u"Locked"_ns);
///     facts.objectForKey(u"Title"_ns).string();  // "A page"
///     for (const auto &[key, value] : facts) NSLog(u"%@ = %@", key, stringValue(value));
class NSDictionary {
 public:
  /// A key and its value.
  using Entry = std::pair<NSString, id>;
  /// Goes over the entries in their order.
  using Iterator = detail::DictionaryIterator<Entry>;

  NSDictionary() noexcept = default;
  /// A dictionary of these entries. Those whose value is nil are left out; of entries with the same key the
  /// last one counts.
  NSDictionary(std::initializer_list<Entry> entries);
  /// An empty dictionary, which is not nil.
  static NSDictionary dictionary();

  /// How many entries there are; 0 when nil.
  std::uint32_t count() const noexcept;
  /// The value under `key`, or nil; borrowed until the dictionary is changed.
  const id &objectForKey(const NSString &key) const noexcept NIMBO_LIFETIMEBOUND;
  /// The keys, in order.
  std::vector<NSString> allKeys() const;
  /// The first entry, in order; borrowed until the dictionary is changed.
  Iterator begin() const noexcept NIMBO_LIFETIMEBOUND;
  /// The end behind the last entry.
  Iterator end() const noexcept NIMBO_LIFETIMEBOUND;

  /// Sets the value under the key; a replaced entry keeps its place. Nothing happens when the value or the key
  /// is nil.
  void setObject(id object, const NSString &key);
  /// Removes the entry under the key, if there is one. The others keep their order.
  void removeObjectForKey(const NSString &key);
  /// Sets every entry of the other dictionary.
  void addEntriesFromDictionary(const NSDictionary &other);

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }
  /// Whether both are the same storage (or both nil).
  bool identicalTo(const NSDictionary &other) const noexcept { return storage_ == other.storage_; }
  /// A hash of the storage, equal where `identicalTo` holds.
  std::size_t identityHash() const noexcept { return storage_.hash(); }
  /// A hash of the entries, in whatever order.
  std::size_t hash() const noexcept;
  /// Whether the keys are the same and the values equal, in any order; nil equals only nil.
  bool operator==(const NSDictionary &other) const;

 private:
  friend class id;

  using Storage = detail::DictionaryStorage;

  explicit NSDictionary(SharedPointer<Storage> storage) noexcept : storage_(std::move(storage)) {}
  Storage &own();

  SharedPointer<Storage> storage_;
};

}  // namespace nimbo
