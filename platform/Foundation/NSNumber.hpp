// SPDX-License-Identifier: Apache-2.0
//
// What a value is as a number or text. Booleans are 1 and 0. A string is the number that it begins with behind
// white characters of ASCII, or 0; "." is the decimal point, there is no digit grouping, and words such as
// "inf" are no numbers. What does not fit becomes the nearest number that does, not-a-number becomes 0.
// Nothing for the other kinds. Any thread may convert.
//
//     longLongValue(u" 12 pages"_ns).value();  // 12
//     doubleValue(true).value();  // 1
//     stringValue(0.1);  // "0.1"
#pragma once

#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The value as a whole number; reals are cut towards 0.
std::optional<std::int64_t> longLongValue(const id &value);
/// The value as a whole number from 0 on; a negative one stands for the unsigned one of the same bits.
std::optional<std::uint64_t> unsignedLongLongValue(const id &value);
/// The value as a real number.
std::optional<double> doubleValue(const id &value);
/// The string itself, or the decimal digits of a number, as few as tell a real from all others: "1", "0.1",
/// "1e+300". Nil for the other kinds.
NSString stringValue(const id &value);

}  // namespace nimbo
