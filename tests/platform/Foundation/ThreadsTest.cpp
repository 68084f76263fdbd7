// SPDX-License-Identifier: Apache-2.0
//
// Handles between threads. The thread sanitizer is what finds most faults here.

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/Foundation/NSObject.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace nimbo {
namespace {

class Number : public NSObject {
 public:
  std::size_t value = 7;
};

/// What a thread does with a handle of its own. `change` changes in place where nobody shares the storage.
struct UseOfString {
  static NSString make() { return NSString::stringWithUTF8String("some text"); }
  static std::size_t read(const NSString &string) { return string.hash(); }
  static void change(NSString &string) { string = string.substringWithRange({1, 4}); }
};

struct UseOfData {
  static NSData make() { return NSData::dataWithBytes("some bytes", 10); }
  static std::size_t read(const NSData &data) { return data.hash(); }
  static void change(NSData &data) { data = data.subdataWithRange({1, 4}); }
};

struct UseOfArray {
  static NSArray make() { return {UseOfString::make(), 1}; }
  static std::size_t read(const NSArray &array) { return array.hash(); }
  static void change(NSArray &array) {
    array.mutableObjects()[0] = UseOfString::make();
    array.addObject(2);
  }
};

struct UseOfDictionary {
  static NSDictionary make() {
    NSDictionary dictionary{{u"key"_ns, UseOfString::make()}};
    for (int i = 0; i < 40; ++i) dictionary.setObject(i, NSString::stringWithUTF8String(std::to_string(i)));
    return dictionary;
  }
  static std::size_t read(const NSDictionary &all) { return all.hash() + all.objectForKey(u"7"_ns).hash(); }
  static void change(NSDictionary &dictionary) {
    dictionary.setObject(UseOfString::make(), u"key"_ns);
    dictionary.removeObjectForKey(dictionary.begin()->first);
  }
};

struct UseOfURL {
  static NSURL make() { return NSURL::URLWithString(u"b"_ns, NSURL::URLWithString(u"http://host/a"_ns)); }
  static std::size_t read(const NSURL &url) { return url.hash() + url.host().hash() + url.baseURL().hash(); }
  static void change(NSURL &url) { url = url.absoluteURL(); }
};

struct UseOfValue {
  static id make() {
    return NSArray{UseOfString::make(), UseOfData::make(), UseOfDictionary::make(), makeShared<NSObject>()};
  }
  static std::size_t read(const id &value) {
    return value.identityHash() + value.array()[1].hash() + value.array().count();
  }
  static void change(id &value) {
    NSArray array = std::exchange(value, id()).array();
    UseOfArray::change(array);
    value = array;
  }
};

struct UseOfObject {
  using Object = SharedPointer<Number>;
  static Object make() { return makeShared<Number>(); }
  static std::size_t read(const Object &object) { return object->value; }
  static void change(Object &object) {
    if (!object.isUnique()) object = makeShared<Number>();
    ++object->value;
  }
};

template <class Use>
class Threads : public testing::Test {};

using Uses =
    testing::Types<UseOfString, UseOfData, UseOfArray, UseOfDictionary, UseOfURL, UseOfValue, UseOfObject>;
TYPED_TEST_SUITE(Threads, Uses);

/// One thread reads its copy and drops it. The other has heard of that, but not in a way that would order
/// anything: the counting alone must bring the reading before the change.
TYPED_TEST(Threads, AChangeComesAfterWhatOthersHaveRead) {
  auto own = TypeParam::make();
  const std::size_t expected = TypeParam::read(own);
  std::atomic<bool> isDropped = false;
  std::thread reader([&isDropped, expected, copy = own]() mutable {
    EXPECT_EQ(TypeParam::read(copy), expected);
    copy = {};
    isDropped.store(true, std::memory_order_relaxed);
  });
  while (!isDropped.load(std::memory_order_relaxed)) std::this_thread::yield();
  TypeParam::change(own);
  EXPECT_NE(TypeParam::read(own), expected);
  reader.join();
}

/// All threads copy the same handle, and change and drop their copies.
TYPED_TEST(Threads, CopiesAreChangedAndDroppedAtOnce) {
  const auto shared = TypeParam::make();
  const std::size_t expected = TypeParam::read(shared);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (int round = 0; round < 200; ++round) {
        auto own = shared;
        const auto copy = own;
        TypeParam::change(own);
        EXPECT_EQ(TypeParam::read(copy), expected);
        EXPECT_NE(TypeParam::read(own), expected);
        TypeParam::change(own);
      }
    });
  for (std::thread &thread : threads) thread.join();
  EXPECT_EQ(TypeParam::read(shared), expected);
}

}  // namespace
}  // namespace nimbo
