// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/id.hpp"

#include <cmath>
#include <functional>
#include <type_traits>

namespace nimbo {
namespace {

template <class T>
concept Handle = requires(const T &value) {
  value.identityHash();
};

struct Hash {
  std::size_t operator()(std::monostate) const { return 0; }
  std::size_t operator()(NSNull) const { return 0; }
  std::size_t operator()(NSDate date) const { return std::hash<double>()(date.timeIntervalSinceReferenceDate); }
  template <class T>
  requires std::is_arithmetic_v<T> std::size_t operator()(T number) const { return std::hash<T>()(number); }
  template <Handle T>
  std::size_t operator()(const T &value) const {
    return value.hash();
  }
};

}  // namespace

bool id::identicalTo(const id &other) const noexcept {
  return visit([&]<class T>(const T &value) {
    if constexpr (Handle<T>) {
      const T *const same = std::get_if<T>(&other.value_);
      return same && value.identicalTo(*same);
    } else if constexpr (std::is_same_v<T, double>) {
      // What is no number equals nothing.
      const double *const same = std::get_if<double>(&other.value_);
      return same && (value == *same || (std::isnan(value) && std::isnan(*same)));
    } else {
      return value_ == other.value_;
    }
  });
}

std::size_t id::hash() const noexcept {
  return combinedHash(value_.index(), visit(Hash()));
}

std::size_t id::identityHash() const noexcept {
  return visit([&]<class T>(const T &value) {
    if constexpr (Handle<T>)
      return value.identityHash();
    else if constexpr (std::is_same_v<T, double>)
      return std::isnan(value) ? 0 : hash();
    else
      return hash();
  });
}

}  // namespace nimbo
