// SPDX-License-Identifier: Apache-2.0
#include <signal.h>

#include <cstdlib>

#include "helper/Descriptors.hpp"
#include "helper/HelperOptions.hpp"
#include "helper/NimboImExport.hpp"
#include "helper/QuiverleafHelper.hpp"
#include "platform/AppKit/Images/NSApplication.hpp"
#include "platform/Documents/OfficeConversion.hpp"
#include "platform/Foundation/NSConnection.hpp"
#include "platform/Foundation/NSRunLoop.hpp"
#include "platform/Foundation/System/SignalSource.hpp"

/// Serves the named connection. A process whose name is taken stays unreachable.
int main(int argc, char **argv) {
  using namespace nimbo;
  int exitCode = EXIT_SUCCESS;
  const auto options = readHelperOptions(argc, argv, &exitCode);
  if (!options) return exitCode;
  if (!prepareDescriptors()) return EXIT_FAILURE;
  NSConnection &connection = NSConnection::defaultConnection();
  QuiverleafHelper rootObject;
  connection.setRootObject(&rootObject);
  connection.setVersion(NSString::stringWithUTF8String(QUIVERLEAF_VERSION));
  // Nothing is left to be done then but to remove the folder of a child; plug-ins need not be taken down.
  connection.setInvalidationHandler([] {
    OfficeConversion::sharedConversion().endProcess();
    std::_Exit(EXIT_SUCCESS);
  });
  // A request under way is served to its end. Whoever finds the name may already ask for the end.
  callOnSignal(SIGTERM, [&] { connection.invalidate(); });
  connection.registerName(NSString::stringWithCharacters(kHelperConnectionName));
  connection.setIndependentConversationQueueing(true);
  connection.setRequestTimeout(15.0);
  connection.setReplyTimeout(15.0);
  connection.setIdleLimit(options->idleMinutes * 60);
  connection.setAbandonedWorkLimit(options->abandonedWorkSeconds);
  NSApplication::sharedApplication();
  for (;;) NSRunLoop::currentRunLoop().run();
}
