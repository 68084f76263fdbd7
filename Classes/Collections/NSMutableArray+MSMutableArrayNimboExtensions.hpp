// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>

#include "Classes/Collections/NSArray+NSArrayNimboExtensions.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace MSMutableArrayNimboExtensions {

// These change the array in place; a nil one becomes an array when it gets its first object. The other array
// may be the same one. A list ends at its first nil.

// Sets, by identity and by equality, in linear time. What stays keeps its order.

/// Removes every object that `other` contains.
void removeIdenticalObjectsFromArray(NSArray &array, const NSArray &other);
void removeObjectsFromArray(NSArray &array, const NSArray &other);
/// Appends each object of `other`, in its order, that the array does not contain by then.
void unionWithIdenticalObjectsFromArray(NSArray &array, const NSArray &other);
void unionWithObjectsFromArray(NSArray &array, const NSArray &other);
void unionWithIdenticalObjects(NSArray &array, std::initializer_list<id> objects);
void unionWithObjects(NSArray &array, std::initializer_list<id> objects);
/// Keeps only the objects that `other` contains: none when it is nil or empty.
void joinWithIdenticalObjectsFromArray(NSArray &array, const NSArray &other);
void joinWithObjectsFromArray(NSArray &array, const NSArray &other);

/// Both append.
void addObjects(NSArray &array, std::initializer_list<id> objects);
void appendObjects(NSArray &array, std::initializer_list<id> objects);
/// Nothing happens when `index` is above the count.
void insertObjectsFromArray(NSArray &array, const NSArray &other, std::uint32_t index);
/// Removes what stands at `count` and behind it.
void setCount(NSArray &array, std::uint32_t count);
/// Moves an object to before the one that is at `to` now, which leaves it at `to` - 1 when it comes from the
/// left. True at once when both are the same; false when either lies beyond the end.
bool moveObjectAtIndex(NSArray &array, std::uint32_t from, std::uint32_t to);

/// Sorts the array, or a range of it. Stable: objects of which none comes first stay in their order. Nothing
/// happens when the range does not lie inside the array. A function that gives no order leaves the objects in
/// any one; one that raises leaves the array as it was. It must not change the array.
void quickSortUsingFunction(NSArray &array, ComparisonFunction function, void *context = nullptr);
void quickSortUsingFunction(NSArray &array, ComparisonFunction function, NSRange range, void *context);

}  // namespace MSMutableArrayNimboExtensions
}  // namespace nimbo
