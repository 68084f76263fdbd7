// SPDX-License-Identifier: Apache-2.0
#include "Classes/Collections/NSArray+NSArrayNimboExtensions.hpp"

#include <algorithm>
#include <span>
#include <vector>

namespace nimbo {
namespace {

std::span<const id> objectsInRange(const NSArray &array, NSRange range) {
  return std::span(array.begin(), array.end()).subspan(range.location, range.length);
}

bool isInside(const NSArray &array, NSRange range) {
  return range.location <= array.count() && range.length <= array.count() - range.location;
}

template <class Predicate>
NSArray arrayByRemoving(const NSArray &array, Predicate isRemoved) {
  if (std::none_of(array.begin(), array.end(), isRemoved)) return array;
  std::vector<id> kept;
  std::remove_copy_if(array.begin(), array.end(), std::back_inserter(kept), isRemoved);
  return NSArray(std::move(kept));
}

}  // namespace

inline namespace NSArrayNimboExtensions {

id firstObject(const NSArray &array) {
  return array.count() > 0 ? array[0] : id();
}

bool containsObjectIdenticalTo(const NSArray &array, const id &object) {
  return std::any_of(array.begin(), array.end(), [&](const id &each) { return each.identicalTo(object); });
}

NSArray arrayByRemovingObject(const NSArray &array, const id &object) {
  return arrayByRemoving(array, [&](const id &each) { return each == object; });
}

NSArray arrayByRemovingObjectIdenticalTO(const NSArray &array, const id &object) {
  return arrayByRemoving(array, [&](const id &each) { return each.identicalTo(object); });
}

NSArray subarrayWithoutObjectAtIndex(const NSArray &array, std::uint32_t index) {
  if (index >= array.count()) return array;
  NSArray result = array;
  result.removeObjectAtIndex(index);
  return result;
}

std::uint32_t indexOfObject(const NSArray &array, const id &object, ComparisonFunction usingBinarySearch,
                            void *context) {
  return indexOfObject(array, object, {0, array.count()}, usingBinarySearch, context);
}

std::uint32_t indexOfObject(const NSArray &array, const id &object, NSRange inRange,
                            ComparisonFunction usingBinarySearch, void *context) {
  if (!isInside(array, inRange)) return NSNotFound;
  const std::span<const id> part = objectsInRange(array, inRange);
  const auto found = std::partition_point(
      part.begin(), part.end(), [&](const id &each) { return usingBinarySearch(each, object, context) < 0; });
  return inRange.location + static_cast<std::uint32_t>(found - part.begin());
}

void applyFunction(const NSArray &array, ApplierFunction function, void *context) {
  applyFunction(array, function, context, {0, array.count()});
}

void applyFunction(const NSArray &array, ApplierFunction function, void *context, NSRange range) {
  if (!isInside(array, range)) return;
  // The function may change the array.
  const NSArray unchanged = array;  // NOLINT(performance-unnecessary-copy-initialization)
  for (const id &object : objectsInRange(unchanged, range)) function(object, context);
}

}  // namespace NSArrayNimboExtensions
}  // namespace nimbo
