// SPDX-License-Identifier: Apache-2.0
#include "helper/NimboImExport.hpp"
#include "helper/QuiverleafHelper.hpp"
#include "platform/Foundation/NSConnection.hpp"
#include "platform/Foundation/NSRunLoop.hpp"
#include "platform/Foundation/System/LargeBytes.hpp"

/// Serves the named connection for ever. A process whose name is taken stays unreachable.
int main() {
  using namespace nimbo;
  returnLargeBytesWhenFreed();
  NSConnection &connection = NSConnection::defaultConnection();
  QuiverleafHelper rootObject;
  connection.setRootObject(&rootObject);
  connection.registerName(NSString::stringWithCharacters(kHelperConnectionName));
  connection.setIndependentConversationQueueing(true);
  connection.setRequestTimeout(15.0);
  connection.setReplyTimeout(15.0);
  for (;;) NSRunLoop::currentRunLoop().run();
}
