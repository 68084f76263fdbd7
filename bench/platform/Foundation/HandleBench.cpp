// SPDX-License-Identifier: Apache-2.0
//
// What a copy of a handle and its end cost, while the process has one thread and then after it has had two; and
// making a string, filling an array, emptying a dictionary.
//
//   bench-handles [--benchmark_filter=EXPRESSION]

#include <benchmark/benchmark.h>

#include <string>
#include <thread>

#include "platform/Foundation/id.hpp"

namespace {

using namespace nimbo;

template <class Handle>
void copyHandle(benchmark::State &state, const Handle &handle, bool afterThreads) {
  if (afterThreads) std::thread([] {}).join();
  for (auto _ : state) {
    Handle copy(handle);
    benchmark::DoNotOptimize(copy);
  }
}

void makeString(benchmark::State &state) {
  const std::u16string units(static_cast<std::size_t>(state.range(0)), u'x');
  for (auto _ : state) benchmark::DoNotOptimize(NSString::stringWithCharacters(units));
}

void fillArray(benchmark::State &state) {
  const NSString string = NSString::stringWithUTF8String("string");
  for (auto _ : state) {
    NSArray array;
    for (std::int64_t i = 0; i < state.range(0); ++i) array.addObject(string);
    benchmark::DoNotOptimize(array);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void emptyDictionary(benchmark::State &state) {
  NSDictionary full;
  for (std::int64_t i = 0; i < state.range(0); ++i)
    full.setObject(i, NSString::stringWithUTF8String("key " + std::to_string(i)));
  for (auto _ : state) {
    NSDictionary dictionary = full;
    for (const auto &[key, value] : full) dictionary.removeObjectForKey(key);
    benchmark::DoNotOptimize(dictionary);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

int main(int argc, char **argv) {
  const NSString string = NSString::stringWithUTF8String("string");
  const NSString literal = u"literal"_ns;
  const NSData data = NSData::dataWithBytes("data", 4);
  const NSArray array{1, 2};
  const id number = 1, value = string;
  for (const bool afterThreads : {false, true}) {
    const auto add = [&]<class Handle>(const char *name, const Handle &handle) {
      benchmark::RegisterBenchmark(
          (std::string(name) + (afterThreads ? "/after threads" : "/one thread")).c_str(),
          [&, afterThreads](benchmark::State &state) { copyHandle(state, handle, afterThreads); });
    };
    add("copy of a string", string);
    add("copy of a literal", literal);
    add("copy of data", data);
    add("copy of an array", array);
    add("copy of an id with a number", number);
    add("copy of an id with a string", value);
  }
  benchmark::RegisterBenchmark("string of units", makeString)->Arg(1)->Arg(7)->Arg(8)->Arg(100);
  benchmark::RegisterBenchmark("array filled", fillArray)->Arg(1000);
  benchmark::RegisterBenchmark("dictionary emptied", emptyDictionary)->Arg(8)->Arg(1000)->Arg(2000);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
