// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <glib.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/Foundation/Connection/ConnectionChannel.hpp"
#include "platform/Foundation/Connection/ConnectionName.hpp"
#include "platform/Foundation/Connection/ConnectionRecord.hpp"
#include "platform/Foundation/Connection/OpenDescriptors.hpp"
#include "platform/Foundation/Connection/TransferPace.hpp"
#include "platform/Foundation/NSConnection.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo {

/// The serving side of a named connection, as one source of the run loop. Each turn takes in what has arrived
/// at every client, a bounded amount of each, and puts complete requests into one queue; then it serves the
/// first of them whose client is ready for the reply, and goes back to the run loop. No turn waits for a
/// client. No request is begun while a long message moves, in or out, up to a limit: work would hold it up for
/// longer than it holds up the work.
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
  void setRequestTimeout(double seconds) { requestTimeoutSeconds_ = seconds; }
  void setReplyTimeout(double seconds) { replyTimeoutSeconds_ = seconds; }
  void setVersion(NSString version) { record_.server.version = std::move(version); }
  void setIdleLimit(double seconds);
  void setAbandonedWorkLimit(double seconds) { abandonedWorkSeconds_ = seconds; }
  void setReachabilityInterval(double seconds);
  void setInvalidationHandler(std::function<void()> handler) { invalidated_ = std::move(handler); }
  void invalidate();

 private:
  static constexpr double kDefaultTimeoutSeconds = 15.0;
  static constexpr double kDefaultReachabilitySeconds = 30.0;
  static constexpr GIOCondition kNothing = static_cast<GIOCondition>(0);

  struct Client {
    explicit Client(FileDescriptor socket, int peer) : channel(std::move(socket)), process(peer) {}

    bool isIdle() const;

    ConnectionChannel channel;
    int process;
    gpointer tag = nullptr;
    GIOCondition awaited = kNothing;
    std::size_t queuedRequests = 0;
    /// When it is ended because its request, or its reply, stands still.
    Deadline requestDeadline;
    Deadline replyDeadline;
    TransferPace requestPace;
    TransferPace replyPace;
    Deadline::Clock::time_point lastUse = Deadline::Clock::now();
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

  static void leaveServices();
  void takeTurn();
  void acceptClients();
  bool makePlaceForClient();
  void attend(Client &client);
  void receive(Client &client);
  void flush(Client &client);
  void updatePaces();
  bool mayServe() const;
  void serveNextRequest();
  void serve(Client &client, const ConnectionRequest &request);
  void noteBegin(const Client &client, const ConnectionRequest &request);
  ConnectionReply perform(const ConnectionRequest &request);
  void reply(Client &client, const ConnectionReply &reply);
  void end(Client &client);
  void removeEndedClients();
  void updateAwaited(Client &client);
  void awaitConnections(bool awaits);
  void checkOwnLife();
  void endWhenDone();
  void updateReadyTime();
  std::deque<QueuedRequest>::iterator nextRequest();

  static gboolean prepareSource(GSource *source, gint *timeout);
  static gboolean dispatchSource(GSource *source, GSourceFunc callback, gpointer data);

  /// Held while this process is copied, by any thread, and while what a copy has to leave changes.
  static std::mutex copying_;
  /// The servers of this process, as a list.
  static ConnectionServer *first_;
  ConnectionServer *next_ = nullptr;
  GSource *source_;
  NSConnectionRootObject *rootObject_ = nullptr;
  double requestTimeoutSeconds_ = kDefaultTimeoutSeconds;
  double replyTimeoutSeconds_ = kDefaultTimeoutSeconds;
  double abandonedWorkSeconds_ = 0;
  double idleSeconds_ = 0;
  double reachabilitySeconds_ = kDefaultReachabilitySeconds;
  std::function<void()> invalidated_;
  NSString name_;
  ConnectionListener listener_;
  ConnectionRecord record_;
  OpenDescriptors descriptors_;
  gpointer listenerTag_ = nullptr;
  /// When connections are accepted again, after the system had no descriptor left.
  Deadline acceptAgain_;
  /// When nothing has been asked for so long that the process may end.
  Deadline idleEnd_;
  /// How long the next request waits for long messages at most.
  Deadline holdUpEnd_;
  /// When to see again whether clients still find the socket.
  Deadline reachabilityCheck_;
  /// Whether no further request is begun.
  bool isEnding_ = false;
  /// When GLib was asked to come back.
  Deadline readyTime_;
  std::vector<std::unique_ptr<Client>> clients_;
  std::deque<QueuedRequest> queue_;
  bool isServing_ = false;
  /// The bytes of all requests that are under way or queued.
  std::size_t bufferedBytes_ = 0;
};

}  // namespace nimbo
