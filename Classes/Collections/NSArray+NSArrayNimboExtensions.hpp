// SPDX-License-Identifier: Apache-2.0
//
// Searches in arrays, and copies with objects left out. Copies are the array itself when nothing is removed.
// "Identical" is meant as `id::identicalTo`, "equal" as the operator ==. Any thread may call these on arrays
// that no thread changes.
//
//     const NSArray words = {u"a"_ns, u"b"_ns, u"a"_ns};
//     arrayByRemovingObject(words, u"a"_ns).count();  // 1
//     const auto compare = [](const id &a, const id &b, void *) -> std::int32_t {
//       return sortAscending(a.string(), b.string());
//     };
//     indexOfObject(words, u"b"_ns, {0, 2}, compare, nullptr);  // 1
#pragma once

#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How `a` stands to `b`: negative, 0 or positive. `context` is whatever the caller gave.
using ComparisonFunction = std::int32_t (*)(const id &a, const id &b, void *context);
/// What `applyFunction` calls with each object. `context` is whatever the caller gave.
using ApplierFunction = void (*)(const id &object, void *context);

inline namespace NSArrayNimboExtensions {

/// The first object; nil when the array is empty or nil.
id firstObject(const NSArray &array);
/// Whether an object of the array is identical to this one.
bool containsObjectIdenticalTo(const NSArray &array, const id &object);

/// The array without every equal object.
NSArray arrayByRemovingObject(const NSArray &array, const id &object);
/// The array without every identical object.
NSArray arrayByRemovingObjectIdenticalTO(const NSArray &array, const id &object);
/// The array without the object at `index`, which may lie beyond the end.
NSArray subarrayWithoutObjectAtIndex(const NSArray &array, std::uint32_t index);

/// Where `object` belongs in an array that is sorted by the function: the index of the first object that it
/// does not stand behind. That is the first of those it equals, else where to insert it, which may be the end.
/// The function gets the array's objects first and `object` second.
std::uint32_t indexOfObject(const NSArray &array, const id &object, ComparisonFunction usingBinarySearch,
                            void *context);
/// As above in the part `inRange`; NSNotFound when the range does not lie inside the array.
std::uint32_t indexOfObject(const NSArray &array, const id &object, NSRange inRange,
                            ComparisonFunction usingBinarySearch, void *context);

/// Calls the function with each object in order. The function may change the array, which changes no call.
void applyFunction(const NSArray &array, ApplierFunction function, void *context);
/// As above with the objects of the range; with none when it does not lie inside the array.
void applyFunction(const NSArray &array, ApplierFunction function, void *context, NSRange range);

}  // namespace NSArrayNimboExtensions
}  // namespace nimbo
