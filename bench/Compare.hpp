// SPDX-License-Identifier: Apache-2.0
//
// The frame of the benchmarks of text: contestants do the same work on the same text in turns, each beside a
// plain read of the bytes that it works on, which is about what the machine allows. An answer must be right
// before its time counts; the best round of each is taken.
//
// Bytes per cycle are those of the clock that the processor counts time in, at its nominal rate: what it really
// ran at cannot be asked for on every machine.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <span>
#include <string_view>
#include <vector>

namespace nimbo::bench {

using Clock = std::chrono::steady_clock;

struct Contestant {
  const char *name;
  /// Does the work and gives an answer, which must be `expected`.
  std::function<std::uint64_t()> run;
  std::uint64_t expected;
  /// What is worked on.
  std::span<const std::byte> text;
  double bestSeconds = std::numeric_limits<double>::infinity();
  double bestReadSeconds = std::numeric_limits<double>::infinity();
};

template <class Element>
std::span<const std::byte> bytesOf(std::basic_string_view<Element> text) {
  return std::as_bytes(std::span(text));
}

template <class Work>
double secondsOf(Work work) {
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// The ticks in a second of the clock that bytes per cycle are told by; 0 when there is none.
inline double cyclesPerSecond() {
#if defined(__x86_64__)
  static const double rate = [] {
    constexpr double kSeconds = 0.05;
    const std::uint64_t start = __builtin_ia32_rdtsc();
    const double seconds = secondsOf([begin = Clock::now()] {
      while (std::chrono::duration<double>(Clock::now() - begin).count() < kSeconds) continue;
    });
    return static_cast<double>(__builtin_ia32_rdtsc() - start) / seconds;
  }();
  return rate;
#else
  return 0;
#endif
}

/// The sum of the bytes' words, in the widest vectors; what a pass over the text takes at the least.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
__attribute__((target_clones("avx512f", "avx2", "default")))
#endif
inline std::uint64_t
sumOfWords(const std::byte *bytes, std::size_t count) {
  typedef std::uint64_t Words __attribute__((vector_size(64), aligned(1), may_alias));
  Words sum0{}, sum1{}, sum2{}, sum3{};
  for (; count >= 4 * sizeof(Words); bytes += 4 * sizeof(Words), count -= 4 * sizeof(Words)) {
    const auto *const words = reinterpret_cast<const Words *>(bytes);
    sum0 += words[0];
    sum1 += words[1];
    sum2 += words[2];
    sum3 += words[3];
  }
  std::uint64_t sum = 0;
  const Words sums = sum0 + sum1 + sum2 + sum3;
  for (std::size_t i = 0; i < sizeof sums / sizeof sums[0]; ++i) sum += sums[i];
  for (std::size_t i = 0; i < count; ++i) sum += static_cast<std::uint64_t>(bytes[i]);
  return sum;
}

inline void run(Contestant &contestant) {
  std::uint64_t answer = 0;
  const double seconds = secondsOf([&] { answer = contestant.run(); });
  if (answer != contestant.expected) {
    std::fprintf(stderr, "%s: wrong answer %llu\n", contestant.name, static_cast<unsigned long long>(answer));
    std::exit(1);
  }
  const double readSeconds = secondsOf([&] {
    [[maybe_unused]] volatile std::uint64_t sink = sumOfWords(contestant.text.data(), contestant.text.size());
  });
  contestant.bestSeconds = std::min(contestant.bestSeconds, seconds);
  contestant.bestReadSeconds = std::min(contestant.bestReadSeconds, readSeconds);
}

/// Runs the contestants in turn. Prints of each: its speed, which part of a plain read's that is, and how many
/// times the first contestant's.
inline void compare(const char *title, std::vector<Contestant> contestants, int rounds) {
  for (int round = 0; round < rounds; ++round)
    for (Contestant &contestant : contestants) run(contestant);
  std::printf("%-42s %8s %8s %10s %6s %8s\n", title, "GB/s", "B/cycle", "read GB/s", "part", "times");
  const auto speed = [](const Contestant &c) { return static_cast<double>(c.text.size()) / c.bestSeconds; };
  for (const Contestant &c : contestants) {
    const double readSpeed = static_cast<double>(c.text.size()) / c.bestReadSeconds;
    std::printf("  %-40s %8.2f %8.2f %10.2f %5.0f%% %8.2f\n", c.name, speed(c) / 1e9,
                cyclesPerSecond() > 0 ? speed(c) / cyclesPerSecond() : 0, readSpeed / 1e9,
                100 * speed(c) / readSpeed, speed(c) / speed(contestants[0]));
  }
}

}  // namespace nimbo::bench
