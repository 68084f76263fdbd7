// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

class NSObject;
/// Ends an object, as its class says.
template <>
NIMBO_PUBLIC void destroyShared<NSObject>(ReferenceCounted *object) noexcept;

/// A hash of two things in this order, of their hashes.
constexpr std::size_t combinedHash(std::size_t first, std::size_t second) {
  return first ^ (second + 0x9e3779b97f4a7c15 + (first << 6) + (first >> 2));
}

/// The null object: a value that says "nothing here" inside a collection, where nil cannot stand.
struct NSNull {
  /// Null equals null.
  friend bool operator==(NSNull, NSNull) = default;
};

/// A property-list value of any kind, or an object, which stands in no property list. A default-made one is
/// nil, and so is one made of a nil handle. Copies share their storage.
///
/// It may be copied and read from any thread; one is changed by one.
///
///     const id value = NSArray{u"a"_ns, 1, true};
///     value.array()[1].integer().value();  // 1
///     if (const NSString text = value.string()) NSLog(text);
///     value.visit([](const auto &typed) { NSLog(typeid(typed).name()); });
class id {
 public:
  id() noexcept = default;
  /// The null object.
  id(NSNull) noexcept : kind_(Kind::null) {}
  /// True or false, a whole or a real number, as the type says.
  template <class T>
  requires std::is_arithmetic_v<T> id(T number)
  noexcept : kind_(kindOfNumber<T>()) {
    if constexpr (std::is_integral_v<T>)
      payload_.integer = static_cast<std::int64_t>(number);
    else
      payload_.real = static_cast<double>(number);
  }
  /// A date.
  id(NSDate date) noexcept : kind_(Kind::date), payload_{.real = date.timeIntervalSinceReferenceDate} {}
  /// A string.
  id(NSString string) noexcept : id(Kind::string, string.storage_) {}
  /// Data.
  id(NSData data) noexcept : id(Kind::data, data.storage_) {}
  /// An array.
  id(NSArray array) noexcept : id(Kind::array, array.storage_) {}
  /// A dictionary.
  id(NSDictionary dictionary) noexcept : id(Kind::dictionary, dictionary.storage_) {}
  /// An object, which is shared.
  template <class T>
  requires std::convertible_to<SharedPointer<T>, SharedPointer<NSObject>> id(SharedPointer<T> object)
  noexcept : id(Kind::object, object) {}

  /// The same value.
  id(const id &other) noexcept : kind_(other.kind_), payload_(other.payload_) {
    if (isCounted()) payload_.counted->retain();
  }
  /// Takes the value; the other is nil.
  id(id &&other) noexcept : kind_(std::exchange(other.kind_, Kind::nil)), payload_(other.payload_) {}
  /// Takes the same value.
  id &operator=(const id &other) noexcept {
    id(other).swap(*this);
    return *this;
  }
  /// Takes the value; the other is nil.
  id &operator=(id &&other) noexcept {
    id(std::move(other)).swap(*this);
    return *this;
  }
  ~id() {
    if (isCounted() && payload_.counted->release()) destroy();
  }

  /// Whether this is anything but nil; false, 0 and null are.
  explicit operator bool() const noexcept { return kind_ != Kind::nil; }
  /// Whether this is the null object.
  bool isNull() const noexcept { return kind_ == Kind::null; }
  /// Whether this is true or false.
  bool isBoolean() const noexcept { return kind_ == Kind::boolean; }
  /// Whether this is a whole number.
  bool isInteger() const noexcept { return kind_ == Kind::integer; }
  /// Whether this is a real number.
  bool isReal() const noexcept { return kind_ == Kind::real; }

  /// The value when it is a string, else nil.
  NSString string() const noexcept { return handleIf<NSString>(Kind::string); }
  /// The value when it is data, else nil.
  NSData data() const noexcept { return handleIf<NSData>(Kind::data); }
  /// The value when it is an array, else nil.
  NSArray array() const noexcept { return handleIf<NSArray>(Kind::array); }
  /// The value when it is a dictionary, else nil.
  NSDictionary dictionary() const noexcept { return handleIf<NSDictionary>(Kind::dictionary); }
  /// The value when it is an object, else null.
  SharedPointer<NSObject> object() const noexcept { return pointerIf<NSObject>(Kind::object); }
  /// The value when it is a date, else nothing.
  std::optional<NSDate> date() const noexcept {
    return kind_ == Kind::date ? std::optional(NSDate{payload_.real}) : std::nullopt;
  }
  /// The value when it is true or false, else nothing.
  std::optional<bool> boolean() const noexcept {
    return isBoolean() ? std::optional(payload_.integer != 0) : std::nullopt;
  }
  /// The value when it is a whole number, else nothing.
  std::optional<std::int64_t> integer() const noexcept {
    return isInteger() ? std::optional(payload_.integer) : std::nullopt;
  }
  /// The value when it is a real or a whole number, else nothing.
  std::optional<double> real() const noexcept {
    if (isInteger()) return static_cast<double>(payload_.integer);
    return isReal() ? std::optional(payload_.real) : std::nullopt;
  }

  /// Calls `visitor` with the value as its own type: std::monostate (nil), NSNull, bool, std::int64_t, double,
  /// NSDate, NSString, NSData, NSArray, NSDictionary or SharedPointer<NSObject>, which is borrowed for the time
  /// of the call.
  template <class Visitor>
  decltype(auto) visit(Visitor &&visitor) const {
    switch (kind_) {
      case Kind::null:
        return visitor(NSNull());
      case Kind::boolean:
        return visitor(payload_.integer != 0);
      case Kind::integer:
        return visitor(payload_.integer);
      case Kind::real:
        return visitor(payload_.real);
      case Kind::date:
        return visitor(NSDate{payload_.real});
      case Kind::string:
        return visitor(Borrowed<NSString>(payload_.counted).handle);
      case Kind::data:
        return visitor(Borrowed<NSData>(payload_.counted).handle);
      case Kind::array:
        return visitor(Borrowed<NSArray>(payload_.counted).handle);
      case Kind::dictionary:
        return visitor(Borrowed<NSDictionary>(payload_.counted).handle);
      case Kind::object:
        return visitor(Borrowed<SharedPointer<NSObject>, NSObject>(payload_.counted).handle);
      default:
        return visitor(std::monostate());
    }
  }

  /// Whether both are the same object. Strings, data, arrays and dictionaries are when they share their
  /// storage, so that equal ones may not be. The other kinds have none: equal ones are the same, and so are
  /// reals that are no number, which equal nothing.
  bool identicalTo(const id &other) const noexcept;
  /// A hash of the value, equal for equal values and for the same object.
  std::size_t hash() const noexcept;
  /// A hash that is equal where `identicalTo` holds.
  std::size_t identityHash() const noexcept;

  /// Swaps two values.
  void swap(id &other) noexcept {
    std::swap(kind_, other.kind_);
    std::swap(payload_, other.payload_);
  }

  /// Whether kind and value are equal: 1, 1.0 and true differ. An object equals itself alone.
  friend bool operator==(const id &a, const id &b) noexcept { return a.kind_ == b.kind_ && a.hasEqualValue(b); }

 private:
  /// Those from `string` on are counted.
  enum class Kind : std::uint8_t {
    nil,
    null,
    boolean,
    integer,
    real,
    date,
    string,
    data,
    array,
    dictionary,
    object
  };
  /// A boolean stands in `integer`, too, a date in `real`.
  union Payload {
    std::int64_t integer;
    double real;
    ReferenceCounted *counted;
  };

  /// A handle without a reference of its own.
  template <class Handle, class Storage = typename Handle::Storage>
  union Borrowed {
    explicit Borrowed(ReferenceCounted *storage) noexcept : handle(SharedPointer<Storage>(storage)) {}
    ~Borrowed() {}

    const Handle handle;
  };

  template <class T>
  static constexpr Kind kindOfNumber() noexcept {
    if constexpr (std::is_same_v<T, bool>)
      return Kind::boolean;
    else
      return std::is_integral_v<T> ? Kind::integer : Kind::real;
  }
  /// Takes the pointer's reference over.
  template <class T>
  id(Kind kind, SharedPointer<T> &pointer) noexcept
      : kind_(pointer ? kind : Kind::nil), payload_{.counted = std::exchange(pointer.object_, nullptr)} {}

  bool isCounted() const noexcept { return kind_ >= Kind::string; }
  /// Whether the values of two of one kind are equal.
  bool hasEqualValue(const id &other) const noexcept;
  template <class Handle>
  bool hasEqualHandle(const id &other) const noexcept {
    return Borrowed<Handle>(payload_.counted).handle == Borrowed<Handle>(other.payload_.counted).handle;
  }
  /// Ends the value whose last reference is gone.
  void destroy() noexcept;

  template <class T>
  SharedPointer<T> pointerIf(Kind kind) const noexcept {
    if (kind_ != kind) return {};
    payload_.counted->retain();
    return SharedPointer<T>(payload_.counted);
  }
  template <class Handle>
  Handle handleIf(Kind kind) const noexcept {
    return Handle(pointerIf<typename Handle::Storage>(kind));
  }

  Kind kind_ = Kind::nil;
  Payload payload_{.integer = 0};
};

static_assert(sizeof(id) == 16);

}  // namespace nimbo
