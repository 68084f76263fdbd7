// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSObject.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Stands in for an object to find out what it is asked for: it knows no more than the root class and logs the
/// name of every other selector that somebody asks about.
class RespondsToListener : public NSObject {
 public:
  /// The process's one, made on first use, from any thread.
  static RespondsToListener &sharedInstance();

  const ClassDescription &classDescription() const override;
  bool respondsToSelector(const NSString &selector) const override;
};

}  // namespace nimbo
