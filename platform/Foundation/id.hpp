// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <type_traits>
#include <variant>

#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A hash of two things in this order, of their hashes.
constexpr std::size_t combinedHash(std::size_t first, std::size_t second) {
  return first ^ (second + 0x9e3779b97f4a7c15 + (first << 6) + (first >> 2));
}

/// The null object: a value that says "nothing here" inside a collection, where nil cannot stand.
struct NSNull {
  friend bool operator==(NSNull, NSNull) = default;
};

/// A property-list value of any kind. A default-made one is nil, and so is one made of a nil handle.
/// Copies share their storage.
class id {
 public:
  id() noexcept = default;
  id(NSNull null) noexcept : value_(null) {}
  template <class T>
  requires std::is_arithmetic_v<T> id(T number)
  noexcept : value_(numberValue(number)) {}
  id(NSDate date) noexcept : value_(date) {}
  id(NSString string) noexcept {
    if (string) value_ = std::move(string);
  }
  id(NSData data) noexcept {
    if (data) value_ = std::move(data);
  }
  id(NSArray array) noexcept {
    if (array) value_ = std::move(array);
  }
  id(NSDictionary dictionary) noexcept {
    if (dictionary) value_ = std::move(dictionary);
  }

  /// Whether this is anything but nil; false, 0 and null are.
  explicit operator bool() const noexcept { return !is<std::monostate>(); }
  bool isNull() const noexcept { return is<NSNull>(); }
  bool isBoolean() const noexcept { return is<bool>(); }
  bool isInteger() const noexcept { return is<std::int64_t>(); }
  bool isReal() const noexcept { return is<double>(); }

  /// The value when it is of the kind asked for, else nil or nothing.
  NSString string() const noexcept { return valueOr<NSString>(); }
  NSData data() const noexcept { return valueOr<NSData>(); }
  NSArray array() const noexcept { return valueOr<NSArray>(); }
  NSDictionary dictionary() const noexcept { return valueOr<NSDictionary>(); }
  std::optional<NSDate> date() const noexcept { return optional<NSDate>(); }
  std::optional<bool> boolean() const noexcept { return optional<bool>(); }
  std::optional<std::int64_t> integer() const noexcept { return optional<std::int64_t>(); }
  /// The value of a real or an integer number.
  std::optional<double> real() const noexcept {
    if (const auto *integer = std::get_if<std::int64_t>(&value_)) return static_cast<double>(*integer);
    return optional<double>();
  }

  /// Calls `visitor` with the value as its own type: std::monostate (nil), NSNull, bool, std::int64_t, double,
  /// NSDate, NSString, NSData, NSArray or NSDictionary.
  template <class Visitor>
  decltype(auto) visit(Visitor &&visitor) const {
    return std::visit(std::forward<Visitor>(visitor), value_);
  }

  /// Whether both are the same object. Strings, data, arrays and dictionaries are when they share their
  /// storage, so that equal ones may not be. The other kinds have none: equal ones are the same, and so are
  /// reals that are no number, which equal nothing.
  bool identicalTo(const id &other) const noexcept;
  /// Equal for equal values, and for the same object.
  std::size_t hash() const noexcept;
  std::size_t identityHash() const noexcept;

  /// Equal kind and equal value: 1, 1.0 and true differ.
  friend bool operator==(const id &a, const id &b) { return a.value_ == b.value_; }

 private:
  using Value = std::variant<std::monostate, NSNull, bool, std::int64_t, double, NSDate, NSString, NSData,
                             NSArray, NSDictionary>;

  template <class T>
  static Value numberValue(T number) noexcept {
    if constexpr (std::is_same_v<T, bool>)
      return number;
    else if constexpr (std::is_integral_v<T>)
      return static_cast<std::int64_t>(number);
    else
      return static_cast<double>(number);
  }
  template <class T>
  bool is() const noexcept {
    return std::holds_alternative<T>(value_);
  }
  template <class T>
  T valueOr() const noexcept {
    const T *value = std::get_if<T>(&value_);
    return value ? *value : T();
  }
  template <class T>
  std::optional<T> optional() const noexcept {
    const T *value = std::get_if<T>(&value_);
    return value ? std::optional<T>(*value) : std::nullopt;
  }

  Value value_;
};

}  // namespace nimbo
