// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/id.hpp"

#include <cmath>
#include <functional>
#include <type_traits>

namespace nimbo {

static_assert(sizeof(NSString) == sizeof(void *) && sizeof(NSData) == sizeof(void *) &&
              sizeof(NSArray) == sizeof(void *) && sizeof(NSDictionary) == sizeof(void *));

namespace {

struct Hash {
  std::size_t operator()(std::monostate) const { return 0; }
  std::size_t operator()(NSNull) const { return 0; }
  std::size_t operator()(NSDate date) const { return std::hash<double>()(date.timeIntervalSinceReferenceDate); }
  template <class T>
  requires std::is_arithmetic_v<T> std::size_t operator()(T number) const { return std::hash<T>()(number); }
  template <class Handle>
  requires std::is_class_v<Handle> std::size_t operator()(const Handle &value) const { return value.hash(); }
};

}  // namespace

bool id::hasEqualValue(const id &other) const noexcept {
  switch (kind_) {
    case Kind::nil:
    case Kind::null:
      return true;
    case Kind::boolean:
    case Kind::integer:
      return payload_.integer == other.payload_.integer;
    case Kind::real:
    case Kind::date:
      return payload_.real == other.payload_.real;
    case Kind::object:
      return payload_.counted == other.payload_.counted;
    case Kind::string:
      return hasEqualHandle<NSString>(other);
    case Kind::data:
      return hasEqualHandle<NSData>(other);
    case Kind::array:
      return hasEqualHandle<NSArray>(other);
    case Kind::dictionary:
      return hasEqualHandle<NSDictionary>(other);
  }
  return false;
}

bool id::identicalTo(const id &other) const noexcept {
  if (kind_ != other.kind_) return false;
  if (isCounted()) return payload_.counted == other.payload_.counted;
  // What is no number equals nothing.
  return hasEqualValue(other) || (isReal() && std::isnan(payload_.real) && std::isnan(other.payload_.real));
}

std::size_t id::hash() const noexcept {
  return combinedHash(static_cast<std::size_t>(kind_), visit(Hash()));
}

std::size_t id::identityHash() const noexcept {
  if (isCounted()) return std::hash<const void *>()(payload_.counted);
  return isReal() && std::isnan(payload_.real) ? 0 : hash();
}

void id::destroy() noexcept {
  ReferenceCounted *const last = payload_.counted;
  switch (kind_) {
    case Kind::string:
      return destroyShared<detail::StringStorage>(last);
    case Kind::data:
      return destroyShared<detail::DataStorage>(last);
    case Kind::array:
      return destroyShared<detail::ArrayStorage>(last);
    case Kind::dictionary:
      return destroyShared<detail::DictionaryStorage>(last);
    case Kind::object:
      return destroyShared<NSObject>(last);
    default:
      return;
  }
}

}  // namespace nimbo
