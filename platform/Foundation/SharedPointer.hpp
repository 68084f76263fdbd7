// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/single_threaded.h>

#include <atomic>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <utility>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The head of what shared pointers point to: how many of them there are. Who makes an object has the first
/// reference to it. A copy is another object, with a count of its own.
class ReferenceCounted {
 public:
  /// Marks an object that lives as long as the process and is not counted.
  struct Immortal {};

  ReferenceCounted &operator=(const ReferenceCounted &) = delete;

 protected:
  constexpr ReferenceCounted() noexcept = default;
  /// An object that is never counted.
  constexpr explicit ReferenceCounted(Immortal) noexcept : references_(kImmortal) {}
  /// Counts anew: references to the other stay with the other.
  constexpr ReferenceCounted(const ReferenceCounted &) noexcept {}
  ~ReferenceCounted() = default;

 private:
  template <class T>
  friend class SharedPointer;
  friend class id;

  static constexpr std::uint32_t kImmortal = 0x80000000;

  // While the process has one thread nobody comes between a load and a store, which take a fraction of the time
  // of one locked instruction.
  void retain() noexcept {
    const std::uint32_t references = references_.load(std::memory_order_relaxed);
    if (references & kImmortal) return;
    if (__libc_single_threaded)
      references_.store(references + 1, std::memory_order_relaxed);
    else
      references_.fetch_add(1, std::memory_order_relaxed);
  }

  /// Whether this reference was the last.
  bool release() noexcept {
    const std::uint32_t references = references_.load(std::memory_order_acquire);
    if (references == 1) return true;
    if (references & kImmortal) return false;
    if (__libc_single_threaded) {
      references_.store(references - 1, std::memory_order_relaxed);
      return false;
    }
    if (references_.fetch_sub(1, std::memory_order_release) != 1) return false;
    // Whatever other threads did with the object comes before its end.
    (void)references_.load(std::memory_order_acquire);
    return true;
  }

  /// Acquires: whatever other threads did with their references, which they have given up, comes before.
  bool isUnique() const noexcept { return references_.load(std::memory_order_acquire) == 1; }

  std::atomic<std::uint32_t> references_ = 1;
};

/// Ends an object when the last reference to it goes. A type that is not complete wherever its pointers are has
/// a specialisation.
template <class T>
void destroyShared(ReferenceCounted *object) noexcept {
  delete static_cast<T *>(object);
}

/// A pointer to an object that counts its references, `T` being derived from `ReferenceCounted`; null when
/// default-made.
///
///     SharedPointer<Counter> counter = makeShared<Counter>(arguments);
///     if (!counter.isUnique()) counter = makeShared<Counter>(*counter);
///     counter->increment();  // Nobody else sees it.
///
/// A pointer may be copied and read from any thread; one pointer is changed by one. The object itself is
/// guarded by nothing.
template <class T>
class SharedPointer {
 public:
  constexpr SharedPointer() noexcept = default;
  /// Shares the other's object.
  SharedPointer(const SharedPointer &other) noexcept : object_(other.object_) {
    if (object_) object_->retain();
  }
  /// Takes the other's reference; the other is null.
  SharedPointer(SharedPointer &&other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  /// Takes a reference of a pointer to a derived class.
  template <class Derived>
  requires(!std::same_as<Derived, T> && std::derived_from<Derived, T>)
      SharedPointer(SharedPointer<Derived> other)
  noexcept : object_(std::exchange(other.object_, nullptr)) { static_assert(std::has_virtual_destructor_v<T>); }
  /// Shares the other's object in place of its own.
  // The copy is made before anything goes.
  // NOLINTNEXTLINE(bugprone-unhandled-self-assignment)
  SharedPointer &operator=(const SharedPointer &other) noexcept {
    SharedPointer(other).swap(*this);
    return *this;
  }
  /// Takes the other's reference; the other is null.
  SharedPointer &operator=(SharedPointer &&other) noexcept {
    SharedPointer(std::move(other)).swap(*this);
    return *this;
  }
  ~SharedPointer() {
    if (object_ && object_->release()) destroyShared<T>(object_);
  }

  /// A pointer that takes over one reference to the object.
  static SharedPointer adopt(T *object) noexcept { return SharedPointer(object); }
  /// Gives its reference away, and is null.
  T *detach() noexcept { return static_cast<T *>(std::exchange(object_, nullptr)); }

  /// The object, borrowed; or null. The operators must not be used on null.
  T *get() const noexcept NIMBO_LIFETIMEBOUND { return static_cast<T *>(object_); }
  /// The object.
  T &operator*() const noexcept NIMBO_LIFETIMEBOUND { return static_cast<T &>(*object_); }
  /// The object, for its members.
  T *operator->() const noexcept NIMBO_LIFETIMEBOUND { return &**this; }
  /// Whether this is not null.
  explicit operator bool() const noexcept { return object_ != nullptr; }
  /// Whether nobody else shares the object, so that it may be changed. Not for null.
  bool isUnique() const noexcept { return object_->isUnique(); }

  /// Whether both point to the same object, or are both null.
  friend bool operator==(const SharedPointer &a, const SharedPointer &b) noexcept {
    return a.object_ == b.object_;
  }
  /// A hash of the object's address.
  std::size_t hash() const noexcept { return std::hash<const void *>()(object_); }
  /// Swaps two pointers.
  void swap(SharedPointer &other) noexcept { std::swap(object_, other.object_); }

 private:
  template <class U>
  friend class SharedPointer;
  friend class id;

  explicit SharedPointer(ReferenceCounted *adopted) noexcept : object_(adopted) {}

  ReferenceCounted *object_ = nullptr;
};

/// A new object, made of the arguments, and the first pointer to it.
template <class T, class... Arguments>
SharedPointer<T> makeShared(Arguments &&...arguments) {
  return SharedPointer<T>::adopt(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace nimbo
