// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <glib.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "platform/Foundation/Connection/ConnectionChannel.hpp"
#include "platform/Foundation/NSConnection.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo {

/// The serving side of a named connection, as one source of the run loop. Each turn takes in what has arrived
/// at every client, a bounded amount of each, and puts complete requests into one queue; then it serves the
/// first of them whose client is ready for the reply, and goes back to the run loop. No turn waits for a
/// client.
///
///   sockets -> ConnectionChannel (one a client) -> queue_ -> rootObject -> ConnectionChannel -> sockets
class ConnectionServer {
 public:
  ConnectionServer();
  ~ConnectionServer();
  ConnectionServer(const ConnectionServer &) = delete;
  ConnectionServer &operator=(const ConnectionServer &) = delete;

  void setRootObject(NSConnectionRootObject *rootObject) { rootObject_ = rootObject; }
  bool registerName(const NSString &name);
  void setRequestTimeout(double seconds);
  void setReplyTimeout(double seconds);

 private:
  static constexpr double kDefaultTimeoutSeconds = 15.0;
  static constexpr GIOCondition kNothing = static_cast<GIOCondition>(0);

  struct Client {
    explicit Client(FileDescriptor socket) : channel(std::move(socket)) {}

    ConnectionChannel channel;
    gpointer tag = nullptr;
    GIOCondition awaited = kNothing;
    std::size_t queuedRequests = 0;
    /// When it is ended because its request, or its reply, stands still.
    Deadline requestDeadline;
    Deadline replyDeadline;
    bool isEnded = false;
  };

  struct QueuedRequest {
    Client *client;
    NSData body;
  };

  /// How GLib sees the server.
  struct Source {
    GSource base;
    ConnectionServer *server;
  };

  void takeTurn();
  void acceptClients();
  void attend(Client &client);
  void receive(Client &client);
  void flush(Client &client);
  void serveNextRequest();
  ConnectionReply perform(const ConnectionRequest &request);
  void reply(Client &client, const ConnectionReply &reply);
  void end(Client &client);
  void removeEndedClients();
  void updateAwaited(Client &client);
  void awaitConnections(bool awaits);
  void updateReadyTime();
  std::deque<QueuedRequest>::iterator nextRequest();

  static gboolean prepareSource(GSource *source, gint *timeout);
  static gboolean dispatchSource(GSource *source, GSourceFunc callback, gpointer data);

  GSource *source_;
  NSConnectionRootObject *rootObject_ = nullptr;
  double requestTimeoutSeconds_ = kDefaultTimeoutSeconds;
  double replyTimeoutSeconds_ = kDefaultTimeoutSeconds;
  NSString name_;
  FileDescriptor lock_;
  FileDescriptor listener_;
  gpointer listenerTag_ = nullptr;
  /// When connections are accepted again, after the system had no descriptor left.
  Deadline acceptAgain_;
  /// When GLib was asked to come back.
  Deadline readyTime_;
  std::vector<std::unique_ptr<Client>> clients_;
  std::deque<QueuedRequest> queue_;
  bool isServing_ = false;
  /// The bytes of all requests that are under way or queued.
  std::size_t bufferedBytes_ = 0;
};

}  // namespace nimbo
