// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "Classes/Collections/NSObject+NSObjectNimboExtensions.hpp"
#include "Classes/Collections/RespondsToListener.hpp"
#include "platform/Foundation/NSException.hpp"
#include "platform/Foundation/NSRunLoop.hpp"

namespace nimbo {
namespace {

class Counter : public NSObject {
 public:
  std::int64_t count = 0;

  const ClassDescription &classDescription() const override {
    static const ClassDescription description{
        u"Counter"_ns, &rootClass(), {{u"add:"_ns, add}}, {{u"count"_ns, get, set}, {u"broken"_ns, fail, set}}};
    return description;
  }

 private:
  static id add(NSObject &receiver, const id &argument) {
    if (argument.isReal()) throw 5;
    return static_cast<Counter &>(receiver).count += argument.integer().value();
  }
  static id get(const NSObject &receiver) { return static_cast<const Counter &>(receiver).count; }
  static id fail(const NSObject &) { throw 5; }
  static void set(NSObject &receiver, const id &value) {
    if (value.isReal()) throw "a whole number is wanted";
    static_cast<Counter &>(receiver).count = value.integer().value();
  }
};

void runFor(double seconds) {
  NSRunLoop::currentRunLoop().runUntilDate(NSDate{NSDate::date().timeIntervalSinceReferenceDate + seconds});
}

TEST(NSObject, AnswersByName) {
  Counter counter;
  EXPECT_TRUE(setSafeValue(counter, 5, u"count"_ns));
  EXPECT_EQ(getSafeValueForKey(counter, u"count"_ns), 5);
  for (const id &refused : {id(u"five"_ns), id(5.5)}) EXPECT_FALSE(setSafeValue(counter, refused, u"count"_ns));
  EXPECT_FALSE(getSafeValueForKey(counter, u"broken"_ns));
  EXPECT_FALSE(setSafeValue(counter, 1, u"unknown"_ns));
  EXPECT_FALSE(setSafeValue(counter, 1, NSString()));
  EXPECT_FALSE(getSafeValueForKey(counter, u"unknown"_ns));
  EXPECT_EQ(counter.performSelector(u"add:"_ns, 2), 7);
  EXPECT_EQ(counter.performSelector(u"valueForKey:"_ns, u"className"_ns), u"Counter"_ns);
  EXPECT_EQ(counter.performSelector(u"className"_ns), u"Counter"_ns);
  EXPECT_EQ(counter.performSelector(u"isKindOfClass:"_ns, u"NSObject"_ns), true);
  EXPECT_EQ(counter.performSelector(u"isKindOfClass:"_ns, u"RespondsToListener"_ns), false);
  EXPECT_EQ(counter.performSelector(u"respondsToSelector:"_ns, u"add:"_ns), true);
  EXPECT_EQ(counter.performSelector(u"respondsToSelector:"_ns, u"subtract:"_ns), false);
  EXPECT_THROW(counter.performSelector(u"subtract:"_ns), NSException);

  EXPECT_TRUE(classDescriptionIsEqualTo(counter, u"Counter"_ns));
  EXPECT_FALSE(classDescriptionIsEqualTo(counter, u"NSObject"_ns));
  EXPECT_FALSE(classDescriptionIsEqualTo(counter, NSString()));
  EXPECT_TRUE(isKindOfClassFromString(counter, u"NSObject"_ns));
  EXPECT_FALSE(isKindOfClassFromString(RespondsToListener::sharedInstance(), u"Counter"_ns));
  EXPECT_EQ(bundle(counter).bundlePath(), NSBundle::mainBundle().bundlePath());
}

TEST(NSObject, PerformsOnlyTheLastOfEqualDelayedRequests) {
  const auto counter = makeShared<Counter>(), other = makeShared<Counter>();
  const auto ask = [](const SharedPointer<NSObject> &object, const id &argument, double delay) {
    cancelPreviousPerformRequestsAndPerformSelector(object, u"add:"_ns, argument, delay);
  };
  for (int i = 0; i < 5; ++i) ask(counter, 1, 0);
  ask(counter, 10, 0);
  ask(counter, 100, 60);
  ask(other, 1, 0);
  ask(other, u"no number"_ns, 0);  // Raises, which the loop survives.
  ask(other, 2.5, 0);
  EXPECT_EQ(counter->count, 0);
  runFor(0.05);
  EXPECT_EQ(counter->count, 11);
  EXPECT_EQ(other->count, 1);
  EXPECT_FALSE(counter.isUnique());  // The request of a minute keeps it.
  cancelPreviousPerformRequestsAndPerformSelector(counter, u"add:"_ns, 100, 0, {});
  EXPECT_TRUE(counter.isUnique());
  cancelPreviousPerformRequestsAndPerformSelector(counter, u"add:"_ns, 100, 0, {u"any"_ns});
  runFor(0.05);
  EXPECT_EQ(counter->count, 111);
}

TEST(RespondsToListener, LogsWhatItDoesNotKnow) {
  RespondsToListener &listener = RespondsToListener::sharedInstance();
  EXPECT_EQ(&listener, &RespondsToListener::sharedInstance());
  testing::internal::CaptureStderr();
  EXPECT_TRUE(listener.respondsToSelector(u"className"_ns));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  testing::internal::CaptureStderr();
  EXPECT_EQ(listener.performSelector(u"respondsToSelector:"_ns, u"dance%@:"_ns), false);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("dance%@:"), std::string::npos);
}

}  // namespace
}  // namespace nimbo
