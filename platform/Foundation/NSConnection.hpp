// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <memory>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {
class ConnectionServer;
}

namespace NIMBO_PUBLIC nimbo {

/// What a connection publishes: an object that answers selectors. An exception that it lets out goes back to
/// the caller as a remote exception; nil is the answer nil. `*error`, which is never null, may be set to say
/// why the answer is nil, or not whole; its code and reason cross beside the answer.
class NSConnectionRootObject {
 public:
  virtual ~NSConnectionRootObject();
  /// Answers a request; `arguments` are keyed by the parts of the selector.
  virtual id perform(const NSString &selector, const NSDictionary &arguments, NSError *error) = 0;
};

/// The serving side of a named connection. It is an input source of its thread's run loop from its making on,
/// registered or not. One request is served at a time, each to its end, in the order of arrival over all
/// clients. Only the thread that made it calls it, and that thread calls the root object. It invalidates itself
/// when operations have left so many files open that others would soon find no descriptor. In a copy of the
/// process that the thread makes with fork(2) it serves nobody.
///
///     NSConnection &connection = NSConnection::defaultConnection();
///     connection.setRootObject(&rootObject);
///     if (!connection.registerName(u"com.example.helper"_ns)) return 1;
///     NSRunLoop::currentRunLoop().run();
class NSConnection {
 public:
  /// The process's own connection, made on first use; lives as long as the process.
  static NSConnection &defaultConnection();

  /// A connection of the calling thread, under no name yet.
  NSConnection();
  ~NSConnection();
  NSConnection(const NSConnection &) = delete;
  NSConnection &operator=(const NSConnection &) = delete;

  /// Borrowed; must live as long as the connection. Without one every request is answered by an exception.
  void setRootObject(NSConnectionRootObject *rootObject);
  /// Makes this process the one that answers under `name`. False when another living process does, or when the
  /// runtime folder cannot be used.
  bool registerName(const NSString &name);
  /// Whether requests of other clients wait while one is served. Requests never nest here, so this is always
  /// so; kept for callers that state it.
  void setIndependentConversationQueueing(Flag queueing);
  /// Sets how long a request that a client has begun may stand still before its connection is ended; 15 at
  /// first.
  void setRequestTimeout(double seconds);
  /// Sets how long a reply that a client has not taken in whole may stand still before its connection is
  /// ended; 15 at first.
  void setReplyTimeout(double seconds);

  /// What clients are told as the version of this program. Set before the name is registered.
  void setVersion(const NSString &version);
  /// How long nothing may be asked for before the connection is invalidated; 0, as at first, for ever.
  void setIdleLimit(double seconds);
  /// How long a request may be worked on whose client has gone. Beyond that this process ends at once: nobody
  /// awaits the answer, and others wait. 0, as at first, for ever.
  void setAbandonedWorkLimit(double seconds);
  /// How often to look whether clients still find the name; a connection that they do not find is invalidated.
  /// Every 30 seconds at first.
  void setReachabilityInterval(double seconds);
  /// Gives the name up and begins no further request. Requests that wait are dropped unbegun: their clients
  /// send them to whoever serves the name next.
  void invalidate();
  /// Called once, from the run loop or from `invalidate`, when the connection has been invalidated and the
  /// replies are out that clients were taking.
  void setInvalidationHandler(std::function<void()> handler);

 private:
  std::unique_ptr<ConnectionServer> server_;
};

}  // namespace nimbo
