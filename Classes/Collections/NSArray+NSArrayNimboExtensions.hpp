// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How `a` stands to `b`: negative, 0 or positive. `context` is whatever the caller gave.
using ComparisonFunction = std::int32_t (*)(const id &a, const id &b, void *context);
using ApplierFunction = void (*)(const id &object, void *context);

inline namespace NSArrayNimboExtensions {

// "Identical" is meant as `id::identicalTo`, "equal" as the operator ==.

/// Nil when the array is empty or nil.
id firstObject(const NSArray &array);
bool containsObjectIdenticalTo(const NSArray &array, const id &object);

// Copies; the array itself when nothing is removed.

/// Without every equal, every identical object.
NSArray arrayByRemovingObject(const NSArray &array, const id &object);
NSArray arrayByRemovingObjectIdenticalTO(const NSArray &array, const id &object);
/// Without the object at `index`, which may lie beyond the end.
NSArray subarrayWithoutObjectAtIndex(const NSArray &array, std::uint32_t index);

/// Where `object` belongs in an array (or the part `inRange`) that is sorted by the function: the index of the
/// first object that it does not stand behind. That is the first of those it equals, else where to insert it,
/// which may be the end. The function gets the array's objects first and `object` second. NSNotFound when the
/// range does not lie inside the array.
std::uint32_t indexOfObject(const NSArray &array, const id &object, ComparisonFunction usingBinarySearch,
                            void *context);
std::uint32_t indexOfObject(const NSArray &array, const id &object, NSRange inRange,
                            ComparisonFunction usingBinarySearch, void *context);

/// Calls the function with each object (of the range) in order; with none when the range does not lie inside
/// the array. The function may change the array, which changes no call.
void applyFunction(const NSArray &array, ApplierFunction function, void *context);
void applyFunction(const NSArray &array, ApplierFunction function, void *context, NSRange range);

}  // namespace NSArrayNimboExtensions
}  // namespace nimbo
