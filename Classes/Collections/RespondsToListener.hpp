// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSObject.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Stands in for an object to find out what it is asked for: it knows no more than the root class and logs the
/// name of every other selector that somebody asks about. Any thread may ask.
///
///     NSObject &delegate = RespondsToListener::sharedInstance();
///     const bool isAsked = delegate.respondsToSelector(u"documentDidLoad:"_ns);  // false
///     delegate.respondsToSelector(u"description"_ns);
class RespondsToListener : public NSObject {
 public:
  /// The process's one, made on first use, from any thread.
  static RespondsToListener &sharedInstance();

  /// A class right below the root class.
  const ClassDescription &classDescription() const override;
  /// As the root class answers; logs the name of a selector that it does not know.
  bool respondsToSelector(const NSString &selector) const override;
};

}  // namespace nimbo
