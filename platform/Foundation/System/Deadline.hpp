// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <chrono>
#include <climits>
#include <cmath>
#include <compare>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A moment on the steady clock by which work has to end; it is handed down to whoever does a part of the work.
/// A default-made one is never over. It is a plain value.
///
///     const Deadline deadline = earliest(Deadline::after(6), callersDeadline);
///     while (!deadline.isOver()) doAStep();
///     const int wait = deadline.remainingMilliseconds();
class Deadline {
 public:
  /// The clock of the moments.
  using Clock = std::chrono::steady_clock;

  /// One that is never over.
  constexpr Deadline() noexcept = default;
  /// One that is never over.
  static constexpr Deadline never() noexcept { return Deadline(); }
  /// The moment that many seconds from now on. One of no or fewer seconds is over; one beyond the clock, or
  /// that is no number, never is.
  static Deadline after(double seconds) noexcept {
    constexpr double kLongestSeconds = 1e9;
    if (!(seconds < kLongestSeconds)) return never();
    return Deadline(Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                       std::chrono::duration<double>(std::max(seconds, 0.0))));
  }

  /// Whether it is never over.
  constexpr bool isNever() const noexcept { return moment_ == Clock::time_point::max(); }
  /// Whether the moment has come.
  bool isOver() const noexcept { return !isNever() && Clock::now() >= moment_; }
  /// How many seconds are left: 0 when it is over, infinite when it never is.
  double remaining() const noexcept {
    if (isNever()) return HUGE_VAL;
    return std::max(std::chrono::duration<double>(moment_ - Clock::now()).count(), 0.0);
  }
  /// What poll(2) takes: whole milliseconds, rounded up so that nobody wakes too early; -1 when it never is
  /// over.
  int remainingMilliseconds() const noexcept {
    return isNever() ? -1 : static_cast<int>(std::min(std::ceil(remaining() * 1000), double{INT_MAX}));
  }
  /// The moment on the clock, which the system calls CLOCK_MONOTONIC.
  constexpr Clock::time_point moment() const noexcept { return moment_; }

  /// Compares the moments; one that is never over is the latest.
  // The analyzer takes the zero that the comparison is made with for a pointer.
  // NOLINTNEXTLINE(modernize-use-nullptr)
  friend constexpr auto operator<=>(const Deadline &, const Deadline &) noexcept = default;

 private:
  explicit constexpr Deadline(Clock::time_point moment) noexcept : moment_(moment) {}

  Clock::time_point moment_ = Clock::time_point::max();
};

/// The one of the two that is over first.
constexpr Deadline earliest(const Deadline &a, const Deadline &b) noexcept {
  return std::min(a, b);
}

}  // namespace nimbo
