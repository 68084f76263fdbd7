// SPDX-License-Identifier: Apache-2.0
//
// Keys, classes and delayed requests of objects. Each function is for the thread that the object belongs to.
//
//     if (!setSafeValue(object, u"Zoë"_ns, u"name"_ns)) NSLog(u"the object has no name"_ns);
//     const NSString name = getSafeValueForKey(object, u"name"_ns).string();
//     if (isKindOfClassFromString(object, u"Document"_ns)) name.length();
#pragma once

#include "platform/Foundation/NSBundle.hpp"
#include "platform/Foundation/NSObject.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSObjectNimboExtensions {

/// Sets the value under the key. False when the key is nil or an exception of any type comes of it, as from an
/// unknown key.
bool setSafeValue(NSObject &object, const id &value, const NSString &key);
/// The value under the key; nil when an exception of any type comes of it.
id getSafeValueForKey(const NSObject &object, const NSString &key);

/// Takes back delayed requests of this thread for the same receiver and selector with an equal argument, then
/// asks again, as `performSelectorAfterDelay`.
void cancelPreviousPerformRequestsAndPerformSelector(const SharedPointer<NSObject> &object,
                                                     const NSString &selector, const id &argument,
                                                     double delaySeconds);
/// As above. The run loop has one mode, in which it serves everything, so that all names mean that one. With
/// no mode the earlier requests are taken back and none is made.
void cancelPreviousPerformRequestsAndPerformSelector(const SharedPointer<NSObject> &object,
                                                     const NSString &selector, const id &argument,
                                                     double delaySeconds, const std::vector<NSString> &inModes);

/// Whether the class of the object has this name; false for nil.
bool classDescriptionIsEqualTo(const NSObject &object, const NSString &name);
/// Whether the class of the object or one above it has this name; false for nil.
bool isKindOfClassFromString(const NSObject &object, const NSString &name);

/// The bundle that holds the class: `NSBundle::bundleForAddress` of its description.
NSBundle bundle(const ClassDescription &description);
/// The bundle that holds the class of the object.
NSBundle bundle(const NSObject &object);

}  // namespace NSObjectNimboExtensions
}  // namespace nimbo
