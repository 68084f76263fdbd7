// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <glib.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "platform/Foundation/Connection/ConnectionChannel.hpp"
#include "platform/Foundation/NSConnection.hpp"

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
  /// A moment on GLib's monotonic clock, in microseconds.
  using Moment = std::int64_t;
  static constexpr Moment kNever = -1;
  static constexpr GIOCondition kNothing = static_cast<GIOCondition>(0);

  struct Client {
    explicit Client(FileDescriptor socket) : channel(std::move(socket)) {}

    ConnectionChannel channel;
    gpointer tag = nullptr;
    GIOCondition awaited = kNothing;
    std::size_t queuedRequests = 0;
    /// When it is ended because its request, or its reply, stands still.
    Moment requestDeadline = kNever;
    Moment replyDeadline = kNever;
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
  Moment requestTimeout_;
  Moment replyTimeout_;
  NSString name_;
  FileDescriptor lock_;
  FileDescriptor listener_;
  gpointer listenerTag_ = nullptr;
  /// When connections are accepted again, after the system had no descriptor left.
  Moment acceptAgain_ = kNever;
  std::vector<std::unique_ptr<Client>> clients_;
  std::deque<QueuedRequest> queue_;
  bool isServing_ = false;
  /// The bytes of all requests that are under way or queued.
  std::size_t bufferedBytes_ = 0;
};

}  // namespace nimbo
