// SPDX-License-Identifier: Apache-2.0
#include "Classes/Collections/RespondsToListener.hpp"

#include "platform/Foundation/NSLog.hpp"

namespace nimbo {

RespondsToListener &RespondsToListener::sharedInstance() {
  static RespondsToListener listener;
  return listener;
}

const ClassDescription &RespondsToListener::classDescription() const {
  static const ClassDescription description{u"RespondsToListener"_ns, &rootClass(), {}, {}};
  return description;
}

bool RespondsToListener::respondsToSelector(const NSString &selector) const {
  if (NSObject::respondsToSelector(selector)) return true;
  NSLog(selector);
  return false;
}

}  // namespace nimbo
