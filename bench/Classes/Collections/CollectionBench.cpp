// SPDX-License-Identifier: Apache-2.0
//
// Arrays combined as sets, by identity and by equality, at sizes that grow tenfold: where the time for an
// object stays, the whole is linear. Beside them stand the standard library's set of bare strings, which shows
// what the memory costs at each size, and, at the smallest, a plain loop over the other array. Each result is
// checked, object by object, before its time counts; the best round is taken.
//
//   bench-collections [ROUNDS]

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Classes/Collections/NSMutableArray+MSMutableArrayNimboExtensions.hpp"
#include "bench/Compare.hpp"

namespace {

using namespace nimbo;

constexpr std::uint32_t kSizes[] = {1'000, 10'000, 100'000};

/// Two arrays of one size, of which the second half of one is the first half of the other.
struct Sets {
  NSArray array, other;

  /// The shared objects are the same in both, or only equal.
  Sets(std::uint32_t size, bool identical) {
    for (std::uint32_t i = 0; i < size; ++i) array.addObject(object(i));
    for (std::uint32_t i = size / 2; i < size; ++i) other.addObject(identical ? array[i] : object(i));
    for (std::uint32_t i = size; i < size + size / 2; ++i) other.addObject(object(i));
  }

  static NSString object(std::uint32_t number) {
    return NSString::stringWithUTF8String("object " + std::to_string(number));
  }
};

struct Operation {
  const char *name;
  bool byIdentity;
  void (*run)(NSArray &array, const NSArray &other);
  NSArray (*expected)(const Sets &sets);
};

NSArray firstHalf(const Sets &sets) {
  return NSArray(std::vector<id>(sets.array.begin(), sets.array.begin() + sets.array.count() / 2));
}

NSArray secondHalf(const Sets &sets) {
  return NSArray(std::vector<id>(sets.array.begin() + sets.array.count() / 2, sets.array.end()));
}

NSArray all(const Sets &sets) {
  std::vector<id> objects(sets.array.begin(), sets.array.end());
  objects.insert(objects.end(), sets.other.begin() + sets.other.count() / 2, sets.other.end());
  return NSArray(std::move(objects));
}

template <bool identical>
void removeByLoop(NSArray &array, const NSArray &other) {
  std::vector<id> kept;
  for (const id &object : array)
    if (std::none_of(other.begin(), other.end(),
                     [&](const id &each) { return identical ? each.identicalTo(object) : each == object; }))
      kept.push_back(object);
  array = NSArray(std::move(kept));
}

void removeByStandardSet(NSArray &array, const NSArray &other) {
  std::unordered_set<std::u16string_view> set;
  set.reserve(other.count());
  for (const id &object : other) set.insert(object.string().view());
  std::vector<id> kept;
  for (const id &object : array)
    if (!set.contains(object.string().view())) kept.push_back(object);
  array = NSArray(std::move(kept));
}

const Operation kOperations[] = {
    {"removeIdenticalObjectsFromArray", true, removeIdenticalObjectsFromArray, firstHalf},
    {"unionWithIdenticalObjectsFromArray", true, unionWithIdenticalObjectsFromArray, all},
    {"joinWithIdenticalObjectsFromArray", true, joinWithIdenticalObjectsFromArray, secondHalf},
    {"removeObjectsFromArray", false, removeObjectsFromArray, firstHalf},
    {"unionWithObjectsFromArray", false, unionWithObjectsFromArray, all},
    {"joinWithObjectsFromArray", false, joinWithObjectsFromArray, secondHalf},
    {"std::unordered_set, removing", false, removeByStandardSet, firstHalf},
};
const Operation kPlainLoops[] = {
    {"plain loop, removing, identity", true, removeByLoop<true>, firstHalf},
    {"plain loop, removing, equality", false, removeByLoop<false>, firstHalf},
};

bool hasSameObjects(const NSArray &a, const NSArray &b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const id &x, const id &y) { return x.identicalTo(y); });
}

/// For each object of both arrays, in the best round.
double nanoseconds(const Operation &operation, const Sets &sets, int rounds) {
  const NSArray expected = operation.expected(sets);
  double best = std::numeric_limits<double>::infinity();
  for (int round = 0; round < rounds; ++round) {
    NSArray result = sets.array;
    const double seconds = bench::secondsOf([&] { operation.run(result, sets.other); });
    if (!hasSameObjects(result, expected)) {
      std::fprintf(stderr, "%s: wrong result\n", operation.name);
      std::exit(1);
    }
    best = std::min(best, seconds);
  }
  return best * 1e9 / (sets.array.count() + sets.other.count());
}

}  // namespace

int main(int argc, char **argv) {
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 20;
  std::printf("%-42s", "ns an object, in arrays of");
  for (const std::uint32_t size : kSizes) std::printf("%10u", size);
  std::printf("\n");
  for (const Operation &operation : kOperations) {
    std::printf("  %-40s", operation.name);
    for (const std::uint32_t size : kSizes)
      std::printf("%10.1f", nanoseconds(operation, Sets(size, operation.byIdentity), rounds));
    std::printf("\n");
  }
  for (const Operation &operation : kPlainLoops)
    std::printf("  %-40s%10.1f\n", operation.name,
                nanoseconds(operation, Sets(kSizes[0], operation.byIdentity), rounds));
}
