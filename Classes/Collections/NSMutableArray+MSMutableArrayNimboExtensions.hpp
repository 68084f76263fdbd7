// SPDX-License-Identifier: Apache-2.0
//
// Changes of arrays in place. A nil array becomes an array when it gets its first object. The other array may
// be the same one. A list ends at its first nil. Those named after sets take linear time; what stays keeps its
// order. "Identical" means `id::identicalTo`, else objects are compared by ==. One thread changes an array at
// a time.
//
//     NSArray words = {u"a"_ns, u"b"_ns};
//     unionWithObjects(words, {u"b"_ns, u"c"_ns});
//     moveObjectAtIndex(words, 2, 0);
//     words == NSArray{u"c"_ns, u"a"_ns, u"b"_ns};  // true
#pragma once

#include <initializer_list>

#include "Classes/Collections/NSArray+NSArrayNimboExtensions.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace MSMutableArrayNimboExtensions {

/// Removes every object that `other` contains an identical one of.
void removeIdenticalObjectsFromArray(NSArray &array, const NSArray &other);
/// Removes every object that `other` contains.
void removeObjectsFromArray(NSArray &array, const NSArray &other);
/// Appends each object of `other`, in its order, that the array contains no identical one of by then.
void unionWithIdenticalObjectsFromArray(NSArray &array, const NSArray &other);
/// Appends each object of `other`, in its order, that the array does not contain by then.
void unionWithObjectsFromArray(NSArray &array, const NSArray &other);
/// As `unionWithIdenticalObjectsFromArray` with a list.
void unionWithIdenticalObjects(NSArray &array, std::initializer_list<id> objects);
/// As `unionWithObjectsFromArray` with a list.
void unionWithObjects(NSArray &array, std::initializer_list<id> objects);
/// Keeps only the objects that `other` contains an identical one of: none when it is nil or empty.
void joinWithIdenticalObjectsFromArray(NSArray &array, const NSArray &other);
/// Keeps only the objects that `other` contains: none when it is nil or empty.
void joinWithObjectsFromArray(NSArray &array, const NSArray &other);

/// Appends the objects.
void addObjects(NSArray &array, std::initializer_list<id> objects);
/// As `addObjects`.
void appendObjects(NSArray &array, std::initializer_list<id> objects);
/// Inserts the objects of `other` in front of the one at `index`. Nothing happens when that is above the count.
void insertObjectsFromArray(NSArray &array, const NSArray &other, std::uint32_t index);
/// Removes what stands at `count` and behind it.
void setCount(NSArray &array, std::uint32_t count);
/// Moves an object to before the one that is at `to` now, which leaves it at `to` - 1 when it comes from the
/// left. True at once when both are the same; false when either lies beyond the end.
bool moveObjectAtIndex(NSArray &array, std::uint32_t from, std::uint32_t to);

/// Sorts the array. Stable: objects of which none comes first stay in their order. A function that gives no
/// order leaves the objects in any one; one that raises leaves the array as it was. It must not change the
/// array.
void quickSortUsingFunction(NSArray &array, ComparisonFunction function, void *context = nullptr);
/// As above for a range. Nothing happens when it does not lie inside the array.
void quickSortUsingFunction(NSArray &array, ComparisonFunction function, NSRange range, void *context);

}  // namespace MSMutableArrayNimboExtensions
}  // namespace nimbo
