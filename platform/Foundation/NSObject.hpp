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
  struct Key {
    NSString name;
    id (*get)(const NSObject &receiver);
    /// Null when the value can only be read.
    void (*set)(NSObject &receiver, const id &value);
  };

  NSString name;
  /// Null for the root class.
  const ClassDescription *superclass = nullptr;
  /// By selector. Those of the superclass answer, too, where these do not.
  std::vector<std::pair<NSString, Method>> methods;
  std::vector<Key> keys;
};

/// The root class: objects that are asked by name. It knows the selectors "className", "isKindOfClass:" (with a
/// name), "respondsToSelector:" and "valueForKey:", and the key "className". Objects that are shared, as by a
/// value, are made by `makeShared`. One thread uses an object at a
/// time, unless its class says otherwise.
class NSObject : public ReferenceCounted {
 public:
  NSObject() = default;
  NSObject(const NSObject &) = delete;
  virtual ~NSObject();

  static const ClassDescription &rootClass();
  /// The receiver's class; every class with a description of its own overrides this.
  virtual const ClassDescription &classDescription() const { return rootClass(); }

  const NSString &className() const { return classDescription().name; }
  /// Whether the receiver's class or one above it has this name.
  bool isKindOfClass(const NSString &name) const;

  virtual bool respondsToSelector(const NSString &selector) const;
  /// Raises NSInvalidArgumentException when no class has the selector.
  id performSelector(const NSString &selector, const id &argument = id());

  /// Both raise NSUnknownKeyException when no class has the key; the setter, too, when it can only be read.
  id valueForKey(const NSString &key) const;
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
