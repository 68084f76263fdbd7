// SPDX-License-Identifier: Apache-2.0
#include "Classes/Collections/NSObject+NSObjectNimboExtensions.hpp"

namespace nimbo {
inline namespace NSObjectNimboExtensions {

bool setSafeValue(NSObject &object, const id &value, const NSString &key) {
  if (!key) return false;
  try {
    object.setValue(value, key);
    return true;
  } catch (...) {
    return false;
  }
}

id getSafeValueForKey(const NSObject &object, const NSString &key) {
  try {
    return object.valueForKey(key);
  } catch (...) {
    return id();
  }
}

void cancelPreviousPerformRequestsAndPerformSelector(const SharedPointer<NSObject> &object,
                                                     const NSString &selector, const id &argument,
                                                     double delaySeconds) {
  cancelPreviousPerformRequests(object, selector, argument);
  performSelectorAfterDelay(object, selector, argument, delaySeconds);
}

void cancelPreviousPerformRequestsAndPerformSelector(const SharedPointer<NSObject> &object,
                                                     const NSString &selector, const id &argument,
                                                     double delaySeconds,
                                                     const std::vector<NSString> &inModes) {
  cancelPreviousPerformRequests(object, selector, argument);
  if (!inModes.empty()) performSelectorAfterDelay(object, selector, argument, delaySeconds);
}

bool classDescriptionIsEqualTo(const NSObject &object, const NSString &name) {
  return name && object.className() == name;
}

bool isKindOfClassFromString(const NSObject &object, const NSString &name) {
  return name && object.isKindOfClass(name);
}

NSBundle bundle(const ClassDescription &description) {
  return NSBundle::bundleForAddress(&description);
}

NSBundle bundle(const NSObject &object) {
  return bundle(object.classDescription());
}

}  // namespace NSObjectNimboExtensions
}  // namespace nimbo
