// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>
#include <vector>

#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

class NSObject;

/// What programs may ask of a class by name. Each class has one, a constant of static storage in the file of
/// its code: that is how its bundle is found.
struct ClassDescription {
  /// What the receiver does when it gets the message; nil when that has no result.
  using Method = id (*)(NSObject &receiver, const id &argument);
  /// A value that is read, and perhaps written, by its name.
  struct Key {
    /// The name by which it is asked for.
    NSString name;
    /// Answers the value of a receiver; nil when it has none.
    id (*get)(const NSObject &receiver);
    /// Null when the value can only be read.
    void (*set)(NSObject &receiver, const id &value);
  };

  /// The name of the class.
  NSString name;
  /// Null for the root class.
  const ClassDescription *superclass = nullptr;
  /// The methods by selector. Those of the superclass answer, too, where these do not.
  std::vector<std::pair<NSString, Method>> methods;
  /// The values by name. Those of the superclass are there, too.
  std::vector<Key> keys;
  /// Makes an object of the class for others, such as who has found the class in a bundle; null when only its
  /// own code makes them.
  SharedPointer<NSObject> (*make)() = nullptr;
};

/// The root class: objects that are asked by name. It knows the selectors "className", "isKindOfClass:" (with a
/// name), "respondsToSelector:" and "valueForKey:", and the key "className". Objects that are shared, as by a
/// value, are made by `makeShared`. One thread uses an object at a time, unless its class says otherwise.
///
///     const SharedPointer<NSObject> object = makeShared<NSObject>();
///     object->performSelector(u"className"_ns).string();  // "NSObject"
///     object->respondsToSelector(u"open:"_ns);  // false
class NSObject : public ReferenceCounted {
 public:
  NSObject() = default;
  NSObject(const NSObject &) = delete;
  virtual ~NSObject();

  /// The description of this class.
  static const ClassDescription &rootClass();
  /// The receiver's class; every class with a description of its own overrides this.
  virtual const ClassDescription &classDescription() const { return rootClass(); }

  /// The name of the receiver's class.
  const NSString &className() const { return classDescription().name; }
  /// Whether the receiver's class or one above it has this name.
  bool isKindOfClass(const NSString &name) const;

  /// Whether the receiver's class or one above it has the selector.
  virtual bool respondsToSelector(const NSString &selector) const;
  /// Sends the message and answers its result. Raises NSInvalidArgumentException when no class has the
  /// selector.
  id performSelector(const NSString &selector, const id &argument = id());

  /// The value under the key. Raises NSUnknownKeyException when no class has it.
  id valueForKey(const NSString &key) const;
  /// Sets the value under the key. Raises NSUnknownKeyException when no class has it, or it can only be read.
  void setValue(const id &value, const NSString &key);
};

/// Sends the message from the run loop of the calling thread, which must run it, when so many seconds are over.
/// The request keeps the receiver and the argument. What the receiver raises is logged.
void performSelectorAfterDelay(const SharedPointer<NSObject> &receiver, const NSString &selector,
                               const id &argument, double delaySeconds);

/// Takes back what was asked for in the same thread with the same receiver and selector and an equal argument.
void cancelPreviousPerformRequests(const SharedPointer<NSObject> &receiver, const NSString &selector,
                                   const id &argument);

}  // namespace nimbo
