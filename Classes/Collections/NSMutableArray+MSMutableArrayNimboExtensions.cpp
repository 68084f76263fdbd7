// SPDX-License-Identifier: Apache-2.0
#include "Classes/Collections/NSMutableArray+MSMutableArrayNimboExtensions.hpp"

#include <algorithm>
#include <span>
#include <unordered_set>
#include <vector>

namespace nimbo {
namespace {

struct ByEquality {
  std::size_t operator()(const id *object) const { return object->hash(); }
  bool operator()(const id *a, const id *b) const { return *a == *b; }
};

struct ByIdentity {
  std::size_t operator()(const id *object) const { return object->identityHash(); }
  bool operator()(const id *a, const id *b) const { return a->identicalTo(*b); }
};

/// Borrows the objects.
template <class Sameness>
class ObjectSet {
 public:
  /// Makes a set of the objects, with room for `moreCount` others.
  explicit ObjectSet(std::span<const id> objects, std::size_t moreCount = 0) {
    set_.reserve(objects.size() + moreCount);
    for (const id &object : objects) set_.insert(&object);
  }
  bool contains(const id &object) const { return set_.contains(&object); }
  /// Whether it was not there.
  bool insert(const id &object) { return set_.insert(&object).second; }

 private:
  std::unordered_set<const id *, Sameness, Sameness> set_;
};

std::span<const id> objectsOf(const NSArray &array) {
  return {array.begin(), array.end()};
}

/// Before the first nil.
std::span<const id> listed(std::initializer_list<id> objects) {
  return {objects.begin(), std::find(objects.begin(), objects.end(), id())};
}

/// Keeps the objects that are contained in the others, or not.
template <class Sameness>
void keepObjects(NSArray &array, const NSArray &other, bool contained) {
  if (array.count() == 0) return;
  // They may be those of the array.
  const NSArray others = other;  // NOLINT(performance-unnecessary-copy-initialization)
  const ObjectSet<Sameness> set(objectsOf(others));
  const auto isRemoved = [&](const id &object) { return set.contains(object) != contained; };
  if (std::none_of(array.begin(), array.end(), isRemoved)) return;
  const std::span<id> objects = array.mutableObjects();
  const auto end = std::remove_if(objects.begin(), objects.end(), isRemoved);
  array.setCount(static_cast<std::uint32_t>(end - objects.begin()));
}

template <class Sameness>
void removeObjects(NSArray &array, const NSArray &other) {
  if (other.count() > 0) keepObjects<Sameness>(array, other, false);
}

template <class Sameness>
void unite(NSArray &array, std::span<const id> others) {
  ObjectSet<Sameness> set(objectsOf(array), others.size());
  std::vector<id> added;
  std::copy_if(others.begin(), others.end(), std::back_inserter(added),
               [&](const id &object) { return set.insert(object); });
  if (!added.empty()) array.insertObjectsAtIndex(added, array.count());
}

/// The objects in order. Merging stays inside its bounds even where the function gives no order, which the
/// sorts of the standard library do not.
std::vector<id> sortedObjects(std::span<const id> objects, ComparisonFunction function, void *context) {
  const auto isBefore = [&](const id *a, const id *b) { return function(*a, *b, context) < 0; };
  std::vector<const id *> runs, merged(objects.size());
  for (const id &object : objects) runs.push_back(&object);
  for (std::size_t length = 1; length < objects.size(); length *= 2, runs.swap(merged)) {
    const auto at = [&](std::size_t index) { return runs.data() + std::min(index, runs.size()); };
    for (std::size_t i = 0; i < objects.size(); i += 2 * length)
      std::merge(at(i), at(i + length), at(i + length), at(i + 2 * length), merged.data() + i, isBefore);
  }
  std::vector<id> result;
  result.reserve(runs.size());
  for (const id *object : runs) result.push_back(*object);
  return result;
}

}  // namespace

inline namespace MSMutableArrayNimboExtensions {

void removeIdenticalObjectsFromArray(NSArray &array, const NSArray &other) {
  removeObjects<ByIdentity>(array, other);
}

void removeObjectsFromArray(NSArray &array, const NSArray &other) {
  removeObjects<ByEquality>(array, other);
}

void unionWithIdenticalObjectsFromArray(NSArray &array, const NSArray &other) {
  unite<ByIdentity>(array, objectsOf(other));
}

void unionWithObjectsFromArray(NSArray &array, const NSArray &other) {
  unite<ByEquality>(array, objectsOf(other));
}

void unionWithIdenticalObjects(NSArray &array, std::initializer_list<id> objects) {
  unite<ByIdentity>(array, listed(objects));
}

void unionWithObjects(NSArray &array, std::initializer_list<id> objects) {
  unite<ByEquality>(array, listed(objects));
}

void joinWithIdenticalObjectsFromArray(NSArray &array, const NSArray &other) {
  keepObjects<ByIdentity>(array, other, true);
}

void joinWithObjectsFromArray(NSArray &array, const NSArray &other) {
  keepObjects<ByEquality>(array, other, true);
}

void addObjects(NSArray &array, std::initializer_list<id> objects) {
  const std::span<const id> added = listed(objects);
  if (!added.empty()) array.insertObjectsAtIndex(added, array.count());
}

void appendObjects(NSArray &array, std::initializer_list<id> objects) {
  addObjects(array, objects);
}

void insertObjectsFromArray(NSArray &array, const NSArray &other, std::uint32_t index) {
  // They may be those of the array.
  const NSArray others = other;  // NOLINT(performance-unnecessary-copy-initialization)
  if (others.count() > 0 && index <= array.count()) array.insertObjectsAtIndex(objectsOf(others), index);
}

void setCount(NSArray &array, std::uint32_t count) {
  if (count < array.count()) array.setCount(count);
}

bool moveObjectAtIndex(NSArray &array, std::uint32_t from, std::uint32_t to) {
  if (from == to) return true;
  if (from >= array.count() || to >= array.count()) return false;
  const auto objects = array.mutableObjects().begin();
  if (from < to)
    std::rotate(objects + from, objects + from + 1, objects + to);
  else
    std::rotate(objects + to, objects + from, objects + from + 1);
  return true;
}

void quickSortUsingFunction(NSArray &array, ComparisonFunction function, void *context) {
  quickSortUsingFunction(array, function, {0, array.count()}, context);
}

void quickSortUsingFunction(NSArray &array, ComparisonFunction function, NSRange range, void *context) {
  if (array.count() < 2 || range.location > array.count() || range.length > array.count() - range.location)
    return;
  std::vector<id> sorted =
      sortedObjects(objectsOf(array).subspan(range.location, range.length), function, context);
  std::move(sorted.begin(), sorted.end(), array.mutableObjects().begin() + range.location);
}

}  // namespace MSMutableArrayNimboExtensions
}  // namespace nimbo
