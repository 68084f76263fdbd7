// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

class id;

namespace detail {
struct DictionaryStorage;
}  // namespace detail

template <>
NIMBO_PUBLIC void destroyShared<detail::DictionaryStorage>(ReferenceCounted *storage) noexcept;

/// Property-list values under string keys, in the order in which the keys were first set: a handle whose copies
/// share their storage until one of them is changed. A default-made one is nil: it tests false, has no entries
/// and equals only nil; the first change makes it a dictionary. Nil values are never stored.
///
/// A handle may be copied and read from any thread; one handle is changed by one.
class NSDictionary {
 public:
  using Entry = std::pair<NSString, id>;

  NSDictionary() noexcept = default;
  /// Entries whose value is nil are left out; of entries with the same key the last one counts.
  NSDictionary(std::initializer_list<Entry> entries);
  /// An empty dictionary, which is not nil.
  static NSDictionary dictionary();

  std::uint32_t count() const noexcept;
  /// The value under `key`, or nil; borrowed until the dictionary is changed.
  const id &objectForKey(const NSString &key) const noexcept;
  std::vector<NSString> allKeys() const;
  const Entry *begin() const noexcept;
  const Entry *end() const noexcept;

  /// Sets or replaces; a replaced entry keeps its place. Nothing happens when the value or the key is nil.
  void setObject(id object, const NSString &key);
  void removeObjectForKey(const NSString &key);
  void addEntriesFromDictionary(const NSDictionary &other);

  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }
  /// Whether both are the same storage (or both nil).
  bool identicalTo(const NSDictionary &other) const noexcept { return storage_ == other.storage_; }
  std::size_t identityHash() const noexcept { return storage_.hash(); }
  /// Of the entries, in whatever order.
  std::size_t hash() const noexcept;
  /// The same keys with equal values, in any order; nil equals only nil.
  bool operator==(const NSDictionary &other) const;

 private:
  friend class id;

  using Storage = detail::DictionaryStorage;

  explicit NSDictionary(SharedPointer<Storage> storage) noexcept : storage_(std::move(storage)) {}
  Storage &own();

  SharedPointer<Storage> storage_;
};

}  // namespace nimbo
