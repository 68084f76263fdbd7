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

/// What a thread does with a handle of its own. `change` changes in place where nobody shares the storage.
template <class Handle>
struct Use {
  Handle (*make)();
  std::size_t (*read)(const Handle &handle);
  void (*change)(Handle &handle);
};

class Number : public NSObject {
 public:
  std::size_t value = 7;
};

const Use<NSString> kString = {[] { return NSString::stringWithUTF8String("some text"); },
                               [](const NSString &string) { return string.hash(); },
                               [](NSString &string) {
                                 string = string.substringWithRange({1, 4});
                               }};

const Use<NSData> kData = {[] { return NSData::dataWithBytes("some bytes", 10); },
                           [](const NSData &data) { return data.hash(); },
                           [](NSData &data) {
                             data = data.subdataWithRange({1, 4});
                           }};

const Use<NSArray> kArray = {[] {
                               return NSArray{kString.make(), 1};
                             },
                             [](const NSArray &array) { return array.hash(); },
                             [](NSArray &array) {
                               array.mutableObjects()[0] = kString.make();
                               array.addObject(2);
                             }};

const Use<NSDictionary> kDictionary = {
    [] {
      NSDictionary dictionary{{u"key"_ns, kString.make()}};
      for (int i = 0; i < 40; ++i) dictionary.setObject(i, NSString::stringWithUTF8String(std::to_string(i)));
      return dictionary;
    },
    [](const NSDictionary &dictionary) { return dictionary.hash() + dictionary.objectForKey(u"7"_ns).hash(); },
    [](NSDictionary &dictionary) {
      dictionary.setObject(kString.make(), u"key"_ns);
      dictionary.removeObjectForKey(dictionary.begin()->first);
    }};

const Use<NSURL> kURL = {
    [] { return NSURL::URLWithString(u"b"_ns, NSURL::URLWithString(u"http://host/a"_ns)); },
    [](const NSURL &url) { return url.hash() + url.host().hash() + url.baseURL().hash(); },
    [](NSURL &url) { url = url.absoluteURL(); }};

const Use<id> kValue = {
    [] {
      return id(NSArray{kString.make(), kData.make(), kDictionary.make(), makeShared<NSObject>()});
    },
    [](const id &value) { return value.identityHash() + value.array()[1].hash() + value.array().count(); },
    [](id &value) {
      NSArray array = std::exchange(value, id()).array();
      kArray.change(array);
      value = array;
    }};

const Use<SharedPointer<Number>> kObject = {[] { return makeShared<Number>(); },
                                            [](const SharedPointer<Number> &object) { return object->value; },
                                            [](SharedPointer<Number> &object) {
                                              if (!object.isUnique()) object = makeShared<Number>();
                                              ++object->value;
                                            }};

/// One thread reads its copy and drops it. The other has heard of that, but not in a way that would order
/// anything: the counting alone must bring the reading before the change.
template <class Handle>
void changeAfterAnotherThreadHasRead(const Use<Handle> &use) {
  Handle own = use.make();
  const std::size_t expected = use.read(own);
  std::atomic<bool> isDropped = false;
  std::thread reader([&isDropped, &use, expected, copy = own]() mutable {
    EXPECT_EQ(use.read(copy), expected);
    copy = Handle();
    isDropped.store(true, std::memory_order_relaxed);
  });
  while (!isDropped.load(std::memory_order_relaxed)) std::this_thread::yield();
  use.change(own);
  EXPECT_NE(use.read(own), expected);
  reader.join();
}

/// All threads copy the same handle, and change and drop their copies.
template <class Handle>
void copyInManyThreads(const Use<Handle> &use) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 200;
  const Handle shared = use.make();
  const std::size_t expected = use.read(shared);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([&] {
      for (int round = 0; round < kRounds; ++round) {
        Handle own = shared;
        const Handle copy = own;
        use.change(own);
        EXPECT_EQ(use.read(copy), expected);
        EXPECT_NE(use.read(own), expected);
        use.change(own);
      }
    });
  for (std::thread &thread : threads) thread.join();
  EXPECT_EQ(use.read(shared), expected);
}

TEST(Threads, AChangeComesAfterWhatOthersHaveRead) {
  changeAfterAnotherThreadHasRead(kString);
  changeAfterAnotherThreadHasRead(kData);
  changeAfterAnotherThreadHasRead(kArray);
  changeAfterAnotherThreadHasRead(kDictionary);
  changeAfterAnotherThreadHasRead(kURL);
  changeAfterAnotherThreadHasRead(kValue);
  changeAfterAnotherThreadHasRead(kObject);
}

TEST(Threads, CopiesAreChangedAndDroppedAtOnce) {
  copyInManyThreads(kString);
  copyInManyThreads(kData);
  copyInManyThreads(kArray);
  copyInManyThreads(kDictionary);
  copyInManyThreads(kURL);
  copyInManyThreads(kValue);
  copyInManyThreads(kObject);
}

}  // namespace
}  // namespace nimbo
