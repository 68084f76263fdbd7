// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Connection/ConnectionServer.hpp"

#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <new>
#include <utility>

#include "platform/Foundation/Connection/AbandonedWork.hpp"
#include "platform/Foundation/NSException.hpp"
#include "platform/Foundation/NSLog.hpp"

namespace nimbo {
namespace {

/// Clients beyond this wait until one leaves, or is idle and makes way.
constexpr rlim_t kMaximumConnections = 256;
/// A client with this many requests in the queue is not read from.
constexpr std::size_t kMaximumQueuedRequests = 16;
/// A client that has more than this to take in is not served.
constexpr std::size_t kMaximumPendingReplyBytes = 1u << 20;
/// The client whose request would take the requests of all beyond this is ended.
constexpr std::size_t kMaximumBufferedBytes = std::size_t{1} << 30;
constexpr double kAcceptPauseSeconds = 1;
/// How long messages that move may hold up the next request, whoever sends them.
constexpr double kHoldUpSeconds = 5;
/// A request of at least this much is read to its end before another is begun, if it moves.
constexpr std::size_t kLongRequestBytes = 256u << 10;

constexpr auto kGenericException = u"NSGenericException";

/// A moment as GLib counts it: its monotonic clock is the steady one, in microseconds; -1 is never.
std::int64_t monotonicTime(const Deadline &deadline) {
  if (deadline.isNever()) return -1;
  return std::chrono::ceil<std::chrono::microseconds>(deadline.moment().time_since_epoch()).count();
}

NSString programPath() {
  std::error_code error;
  return NSString::stringWithFileSystemRepresentation(
      std::filesystem::read_symlink("/proc/self/exe", error).native());
}

bool isReadable(const FileDescriptor &socket) {
  pollfd state = {socket.get(), POLLIN, 0};
  return ::poll(&state, 1, 0) == 1;
}

/// What a request is about, for people: the first of its arguments that is a text.
NSString inputOfRequest(const ConnectionRequest &request) {
  for (const auto &[keyword, value] : request.arguments)
    if (NSString text = value.string()) return text;
  return NSString();
}

ConnectionReply exceptionReply(std::int64_t serial, NSString name, NSString reason) {
  return {serial, id(), std::move(name), std::move(reason)};
}

}  // namespace

std::mutex ConnectionServer::copying_;
ConnectionServer *ConnectionServer::first_ = nullptr;

gboolean ConnectionServer::prepareSource(GSource *source, gint *timeout) {
  ConnectionServer &server = *reinterpret_cast<Source *>(source)->server;
  *timeout = -1;
  return server.mayServe() && server.nextRequest() != server.queue_.end();
}

gboolean ConnectionServer::dispatchSource(GSource *source, GSourceFunc, gpointer) {
  reinterpret_cast<Source *>(source)->server->takeTurn();
  return G_SOURCE_CONTINUE;
}

bool ConnectionServer::Client::isIdle() const {
  return queuedRequests == 0 && channel.incompleteBytes() == 0 && channel.pendingBytes() == 0;
}

ConnectionServer::ConnectionServer() {
  static const int failure = ::pthread_atfork([] { copying_.lock(); }, [] { copying_.unlock(); },
                                              [] {
                                                leaveServices();
                                                copying_.unlock();
                                              });
  if (failure != 0) throw std::bad_alloc();
  record_.process = ::getpid();
  record_.server = {NSString(), programPath(), NSDate::date()};
  static GSourceFuncs functions = {prepareSource, nullptr, dispatchSource, nullptr, nullptr, nullptr};
  source_ = g_source_new(&functions, sizeof(Source));
  reinterpret_cast<Source *>(source_)->server = this;
  g_source_set_static_name(source_, "NSConnection");
  // GLib would take the sockets of a source that may not recurse out of its poll, and put them back, around
  // each turn.
  g_source_set_can_recurse(source_, TRUE);
  g_source_attach(source_, g_main_context_get_thread_default());
  const std::lock_guard guard(copying_);
  next_ = std::exchange(first_, this);
}

ConnectionServer::~ConnectionServer() {
  {
    const std::lock_guard guard(copying_);
    ConnectionServer **server = &first_;
    while (*server != this) server = &(*server)->next_;
    *server = next_;
  }
  g_source_destroy(source_);
  g_source_unref(source_);
}

bool ConnectionServer::registerName(const NSString &name) {
  if (listener_ && name == name_) return true;
  ConnectionListener listener = listenOnConnectionName(name, record_);
  if (!listener) return false;
  awaitConnections(false);
  name_ = name;
  {
    const std::lock_guard guard(copying_);
    listener_ = std::move(listener);
  }
  descriptors_.countOwn();
  awaitConnections(true);
  setReachabilityInterval(reachabilitySeconds_);
  return true;
}

void ConnectionServer::setIdleLimit(double seconds) {
  idleSeconds_ = seconds;
  idleEnd_ = seconds > 0 ? Deadline::after(seconds) : Deadline::never();
  updateReadyTime();
}

void ConnectionServer::setReachabilityInterval(double seconds) {
  reachabilitySeconds_ = seconds;
  reachabilityCheck_ = listener_ ? Deadline::after(seconds) : Deadline::never();
  updateReadyTime();
}

void ConnectionServer::invalidate() {
  if (std::exchange(isEnding_, true)) return;
  awaitConnections(false);
  if (listener_) removeSocket(listener_, name_);
  {
    const std::lock_guard guard(copying_);
    listener_ = {};
  }
  reachabilityCheck_ = idleEnd_ = Deadline::never();
  endWhenDone();
}

/// A copy that an operation makes of this process serves nobody; and no other process could take over from this
/// one while a copy holds the socket and the lock.
void ConnectionServer::leaveServices() {
  for (ConnectionServer *server = first_; server; server = server->next_) {
    server->listener_ = {};
    for (const auto &client : server->clients_) client->channel.close();
  }
}

/// An operation that runs the run loop comes back here: then clients are attended to, but none is served.
void ConnectionServer::takeTurn() {
  if (listenerTag_ && g_source_query_unix_fd(source_, listenerTag_)) acceptClients();
  for (const auto &client : clients_)
    if (!client->isEnded) attend(*client);
  updatePaces();
  if (mayServe()) serveNextRequest();
  for (const auto &client : clients_)
    if (!client->isEnded) updateAwaited(*client);
  if (!isServing_) removeEndedClients();
  checkOwnLife();
  updateReadyTime();
  endWhenDone();
}

void ConnectionServer::acceptClients() {
  while (makePlaceForClient()) {
    FileDescriptor socket(::accept4(listener_.socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket) {
      if (errno == EINTR || errno == ECONNABORTED) continue;
      if (errno == EAGAIN) return;
      // Out of descriptors or memory: the socket stays readable, and without a pause the loop would spin.
      awaitConnections(false);
      acceptAgain_ = Deadline::after(kAcceptPauseSeconds);
      return;
    }
    const int process = peerProcessIdentifier(socket);
    if (process == 0) continue;
    auto client = std::make_unique<Client>(std::move(socket), process);
    client->awaited = G_IO_IN;
    client->tag = g_source_add_unix_fd(source_, client->channel.socket().get(), G_IO_IN);
    {
      const std::lock_guard guard(copying_);
      clients_.push_back(std::move(client));
    }
    if (!clients_.back()->channel.send(encodeMessage(record_.server))) end(*clients_.back());
  }
}

/// Ends the client that has been idle for longest when there are as many as there may be. False when all are
/// busy: then those that come wait in the socket's queue until one leaves.
bool ConnectionServer::makePlaceForClient() {
  const auto count =
      std::count_if(clients_.begin(), clients_.end(), [](const auto &client) { return !client->isEnded; });
  if (static_cast<rlim_t>(count) < std::min(kMaximumConnections, descriptors_.limit() / 2)) return true;
  // Nobody makes way for nobody, and nobody who has just asked for something.
  if (!isReadable(listener_.socket)) return false;
  Client *idlest = nullptr;
  for (const auto &client : clients_)
    if (!client->isEnded && client->isIdle() && (!idlest || client->lastUse < idlest->lastUse) &&
        !isReadable(client->channel.socket()))
      idlest = client.get();
  if (idlest)
    end(*idlest);
  else
    awaitConnections(false);
  return idlest != nullptr;
}

/// Does what a client's socket is ready for, then ends the client when it has stood still for too long. A long
/// request may have kept the server from seeing that it did not: hence this order.
void ConnectionServer::attend(Client &client) {
  const GIOCondition ready = g_source_query_unix_fd(source_, client.tag);
  if (ready & G_IO_OUT) flush(client);
  if ((ready & G_IO_IN) && !client.isEnded) receive(client);
  // A client that is gone does not wait for its answers.
  if (ready & (G_IO_HUP | G_IO_ERR | G_IO_NVAL)) end(client);
  if (earliest(client.requestDeadline, client.replyDeadline).isOver()) end(client);
}

void ConnectionServer::receive(Client &client) {
  std::vector<NSData> bodies;
  bool isGood = false;
  bufferedBytes_ -= client.channel.incompleteBytes();
  try {
    isGood = client.channel.receive(&bodies);
  } catch (const std::bad_alloc &) {
    NSLog("A connection was ended: no memory for its request");
  }
  bufferedBytes_ += client.channel.incompleteBytes();
  for (NSData &body : bodies) {
    bufferedBytes_ += body.length();
    queue_.push_back({&client, std::move(body)});
    ++client.queuedRequests;
  }
  if (!isGood || bufferedBytes_ > kMaximumBufferedBytes) return end(client);
  client.requestDeadline =
      client.channel.incompleteBytes() > 0 ? Deadline::after(requestTimeoutSeconds_) : Deadline::never();
}

void ConnectionServer::flush(Client &client) {
  if (!client.channel.flush()) return end(client);
  client.replyDeadline =
      client.channel.pendingBytes() > 0 ? Deadline::after(replyTimeoutSeconds_) : Deadline::never();
}

/// The first request in the queue whose client may be served.
std::deque<ConnectionServer::QueuedRequest>::iterator ConnectionServer::nextRequest() {
  return std::find_if(queue_.begin(), queue_.end(), [](const QueuedRequest &request) {
    return request.client->channel.pendingBytes() <= kMaximumPendingReplyBytes;
  });
}

void ConnectionServer::updatePaces() {
  for (const auto &client : clients_) {
    const ConnectionChannel &channel = client->channel;
    client->requestPace.update(channel.receivedBytes(), !client->isEnded && channel.incompleteBytes() > 0 &&
                                                            channel.announcedBytes() >= kLongRequestBytes);
    client->replyPace.update(channel.sentBytes(), !client->isEnded && channel.pendingBytes() > 0);
  }
  if (isServing_ || isEnding_ || nextRequest() == queue_.end())
    holdUpEnd_ = Deadline::never();
  else if (holdUpEnd_.isNever())
    holdUpEnd_ = Deadline::after(kHoldUpSeconds);
}

bool ConnectionServer::mayServe() const {
  if (isServing_ || isEnding_) return false;
  return holdUpEnd_.isOver() || std::none_of(clients_.begin(), clients_.end(), [](const auto &client) {
           return client->requestPace.isSteady() || client->replyPace.isSteady();
         });
}

void ConnectionServer::serveNextRequest() {
  const auto next = nextRequest();
  if (next == queue_.end()) return;
  Client &client = *next->client;
  const NSData body = std::move(next->body);
  queue_.erase(next);
  --client.queuedRequests;
  bufferedBytes_ -= body.length();
  ConnectionRequest request;
  bool isGood = false;
  try {
    isGood = decodeMessage(body, &request);
  } catch (const std::bad_alloc &) {
    NSLog("A connection was ended: no memory for its request");
  }
  // Who is told that the work begins and has gone does not want it done.
  if (!isGood || !client.channel.send(encodeMessage(ConnectionBegun{request.serial}))) return end(client);
  isServing_ = true;
  serve(client, request);
  isServing_ = false;
  holdUpEnd_ = Deadline::never();
}

void ConnectionServer::serve(Client &client, const ConnectionRequest &request) {
  noteBegin(client, request);
  const ConnectionReply answer = [&] {
    const AbandonedWork abandonedWork(client.channel.socket(), abandonedWorkSeconds_);
    return perform(request);
  }();
  writeConnectionRecordIsIdle(listener_.record);
  if (!client.isEnded) reply(client, answer);
  client.lastUse = Deadline::Clock::now();
  if (idleSeconds_ > 0) idleEnd_ = Deadline::after(idleSeconds_);
  if (!descriptors_.areTooManyLeft(clients_.size())) return;
  NSLog("The service ends: operations have left too many files open in it");
  invalidate();
}

void ConnectionServer::noteBegin(const Client &client, const ConnectionRequest &request) {
  record_.isWorking = true;
  record_.selector = request.selector;
  record_.input = inputOfRequest(request);
  record_.client = client.process;
  record_.begun = NSDate::date();
  record_.waiting.clear();
  for (const QueuedRequest &queued : queue_) {
    const int process = queued.client->process;
    if (std::find(record_.waiting.begin(), record_.waiting.end(), process) == record_.waiting.end())
      record_.waiting.push_back(process);
  }
  if (listener_) writeRecord(&listener_, name_, record_);
}

ConnectionReply ConnectionServer::perform(const ConnectionRequest &request) {
  const NSString generic = NSString::stringWithCharacters(kGenericException);
  if (!rootObject_) return exceptionReply(request.serial, generic, u"The connection has no root object"_ns);
  try {
    ConnectionReply reply = {request.serial, id(), NSString(), NSString()};
    reply.result = rootObject_->perform(request.selector, request.arguments, &reply.error);
    return reply;
  } catch (const NSException &exception) {
    return exceptionReply(request.serial, exception.name() ? exception.name() : generic, exception.reason());
  } catch (const std::exception &exception) {
    return exceptionReply(request.serial, generic, NSString::stringWithLossyUTF8String(exception.what()));
  } catch (...) {
    return exceptionReply(request.serial, generic, u"Unknown exception"_ns);
  }
}

void ConnectionServer::reply(Client &client, const ConnectionReply &reply) {
  NSError error;
  std::vector<NSData> pieces;
  try {
    pieces = encodeMessage(reply, &error);
  } catch (const std::bad_alloc &) {
    setError(&error, ErrorCode::memoryLimit, "there is no memory for the answer");
  }
  // There is no answer that large; one that cannot be written at all is a fault of the operation.
  if (pieces.empty() && error.errorCode() != ErrorCode::other)
    pieces = encodeMessage(ConnectionReply{reply.serial, id(), NSString(), NSString(), error});
  else if (pieces.empty())
    pieces = encodeMessage(exceptionReply(reply.serial, NSString::stringWithCharacters(kGenericException),
                                          error.localizedFailureReason));
  const bool wasIdle = client.channel.pendingBytes() == 0;
  if (!client.channel.send(std::move(pieces))) return end(client);
  if (wasIdle && client.channel.pendingBytes() > 0)
    client.replyDeadline = Deadline::after(replyTimeoutSeconds_);
}

/// Ends a connection: its socket is not looked at any more and its requests are dropped; the rest goes with
/// `removeEndedClients`.
void ConnectionServer::end(Client &client) {
  if (client.isEnded) return;
  client.isEnded = true;
  g_source_remove_unix_fd(source_, client.tag);
  bufferedBytes_ -= client.channel.incompleteBytes();
  std::erase_if(queue_, [&](const QueuedRequest &request) {
    if (request.client != &client) return false;
    bufferedBytes_ -= request.body.length();
    return true;
  });
}

void ConnectionServer::removeEndedClients() {
  const auto removed = [&] {
    const std::lock_guard guard(copying_);
    return std::erase_if(clients_, [](const auto &client) { return client->isEnded; });
  }();
  if (removed > 0 && acceptAgain_.isNever()) awaitConnections(true);
}

/// Tells GLib what a client's socket is waited for. Only when that changed, since each time costs a turn of the
/// loop.
void ConnectionServer::updateAwaited(Client &client) {
  const bool reads = client.queuedRequests < kMaximumQueuedRequests;
  const bool writes = client.channel.pendingBytes() > 0;
  const auto awaited = static_cast<GIOCondition>((reads ? G_IO_IN : 0) | (writes ? G_IO_OUT : 0));
  if (awaited == client.awaited) return;
  // While it is not read from, a request that stands still is not the client's fault.
  if (!reads) client.requestDeadline = Deadline::never();
  if (reads && !(client.awaited & G_IO_IN) && client.channel.incompleteBytes() > 0)
    client.requestDeadline = Deadline::after(requestTimeoutSeconds_);
  g_source_modify_unix_fd(source_, client.tag, awaited);
  client.awaited = awaited;
}

void ConnectionServer::awaitConnections(bool awaits) {
  if (awaits == (listenerTag_ != nullptr)) return;
  if (!awaits)
    g_source_remove_unix_fd(source_, std::exchange(listenerTag_, nullptr));
  else if (listener_)
    listenerTag_ = g_source_add_unix_fd(source_, listener_.socket.get(), G_IO_IN);
}

/// Ends the service when nobody uses it any more, or nobody can reach it.
void ConnectionServer::checkOwnLife() {
  if (isServing_) return;
  const bool isIdle =
      std::all_of(clients_.begin(), clients_.end(), [](const auto &client) { return client->isIdle(); });
  if (idleEnd_.isOver()) {
    if (isIdle) return invalidate();
    idleEnd_ = Deadline::after(idleSeconds_);
  }
  if (!reachabilityCheck_.isOver()) return;
  if (isIdle && !isReachable(listener_, name_)) return invalidate();
  reachabilityCheck_ = Deadline::after(reachabilitySeconds_);
}

/// What readers still take of their replies is written out first.
void ConnectionServer::endWhenDone() {
  if (!isEnding_ || isServing_) return;
  updatePaces();
  for (const auto &client : clients_)
    if (client->replyPace.isSteady()) return;
  if (invalidated_) std::exchange(invalidated_, nullptr)();
}

/// Lets the loop come back when the next client may have to be ended. Since GLib is woken by each change, a
/// deadline that moves away is left to pass once.
void ConnectionServer::updateReadyTime() {
  if (acceptAgain_.isOver()) {
    acceptAgain_ = Deadline::never();
    awaitConnections(true);
  }
  Deadline next = earliest(earliest(acceptAgain_, holdUpEnd_), earliest(idleEnd_, reachabilityCheck_));
  for (const auto &client : clients_) {
    if (client->isEnded) continue;
    next = earliest(next, earliest(client->requestDeadline, client->replyDeadline));
    next = earliest(next, earliest(client->requestPace.deadline(), client->replyPace.deadline()));
  }
  if (next >= readyTime_ && !readyTime_.isOver()) return;
  readyTime_ = next;
  g_source_set_ready_time(source_, monotonicTime(next));
}

}  // namespace nimbo
