// SPDX-License-Identifier: Apache-2.0
#include "clients/cpp/HelperClient.hpp"

#include <poll.h>
#include <signal.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <utility>
#include <variant>

#include "clients/cpp/AbsolutePath.hpp"
#include "clients/cpp/HelperProcess.hpp"
#include "clients/cpp/HelperProgram.hpp"
#include "helper/NimboImExport.hpp"
#include "platform/Foundation/Connection/ConnectionChannel.hpp"
#include "platform/Foundation/Connection/ConnectionName.hpp"

namespace nimbo {
namespace {

using Seconds = std::chrono::duration<double>;
using Answer = HelperClient::Answer;
using Status = HelperClient::Status;

/// The operation that waits for what a page refers to.
constexpr std::u16string_view kPageSelector = u"RTFDWithHTML:baseURL:allowRemoteRequest:";

/// How long a helper may take to end after SIGTERM, before it is killed.
constexpr Seconds kStopLimit{2};
/// How long a helper that closed a connection is given to be gone, so that the next call does not meet its
/// remains.
constexpr Seconds kDeathLimit{1};
/// The same before the next attempt of a call, which meets a living helper more often.
constexpr Seconds kAttemptPause{0.1};
/// How often a request is sent to helpers that live on and close the connection before they begin it.
constexpr int kRefusals = 10;
/// How often it is sent to helpers that end before they begin it, mostly over somebody else's request.
constexpr int kDeaths = 50;
/// A helper that is started ends when a request takes it so long and its caller has gone.
constexpr auto kAbandonedWorkSeconds = "60";

/// In as few digits as tell it from others.
std::string numberText(double number) {
  std::array<char, 32> digits;
  return std::string(digits.begin(), std::to_chars(digits.begin(), digits.end(), number).ptr);
}

/// The time as a message has it: "15 seconds".
std::string secondsText(double seconds) {
  return numberText(seconds) + " seconds";
}

Answer failure(Status status, std::string message) {
  Answer answer;
  answer.status = status;
  answer.message = std::move(message);
  return answer;
}

Answer answerOfReply(ConnectionReply reply) {
  Answer answer;
  answer.status = reply.exceptionName ? Status::exception : reply.result ? Status::answered : Status::nil;
  answer.result = std::move(reply.result);
  answer.exceptionName = std::move(reply.exceptionName);
  answer.exceptionReason = std::move(reply.exceptionReason);
  answer.reason = std::move(reply.error.localizedFailureReason);
  answer.code = reply.error.errorCode();
  return answer;
}

/// Waits until the socket is ready, and says for what: 0 when it is not at the deadline.
short waitUntilReady(const FileDescriptor &socket, short events, const Deadline &deadline) {
  pollfd state = {socket.get(), events, 0};
  for (;;) {
    const int result = ::poll(&state, 1, deadline.remainingMilliseconds());
    if (result > 0) return state.revents;
    if (result == 0 || errno != EINTR) return 0;
  }
}

}  // namespace

/// A connection with the messages on it.
struct HelperClient::Session {
  explicit Session(HelperConnection connection)
      : process(std::move(connection.process)), channel(std::move(connection.socket)) {}

  HelperProcess process;
  ConnectionChannel channel;
  /// Whether the helper says when it begins a request. One that does not, being of an older version, counts as
  /// having begun whatever was sent to it.
  bool tellsBegin = false;
  bool hasLostProgram = false;
};

HelperClient::HelperClient() : HelperClient(Options()) {}

HelperClient::HelperClient(Options options) : options_(std::move(options)) {
  if (!options_.name) options_.name = NSString::stringWithCharacters(kHelperConnectionName);
  std::string message;
  if (const std::string path = absolutePath(options_.helperPath, &message); !path.empty())
    options_.helperPath = path;
}

HelperClient::~HelperClient() = default;
HelperClient::HelperClient(HelperClient &&) noexcept = default;
HelperClient &HelperClient::operator=(HelperClient &&) noexcept = default;

/// Makes sure that there is a session whose connection still stands, with a helper whose program is there. An
/// outdated helper is told to end: it does when the request under way is done.
bool HelperClient::connect(Flag startsHelper, const Deadline &waiting, Answer *failed) {
  if (session_ && !isConnectionStale(session_->channel.socket())) return true;
  for (;;) {
    session_.reset();
    if (!connectOnce(startsHelper, waiting, failed)) return false;
    std::string message;
    if (!startsHelper || !session_->hasLostProgram || programToStart(&message).empty()) return true;
    session_->process.sendSignal(SIGTERM);
    if (!session_->process.waitUntilEnded(Seconds(waiting.remaining()))) {
      *failed = endUnbegun();
      return false;
    }
  }
}

bool HelperClient::connectOnce(Flag startsHelper, const Deadline &waiting, Answer *failed) {
  bool isBusy = false;
  HelperConnection connection = connectToHelper(options_.name, Seconds(waiting.remaining()), &isBusy);
  if (isBusy) {
    *failed = endUnbegun();
    return false;
  }
  std::string message = "No helper is registered";
  if (NSString error; !connection && !startsHelper && !openExistingConnectionFolder(&error))
    message += ": " + error.UTF8String();
  if (!connection && startsHelper) {
    const std::string path = programToStart(&message);
    if (!path.empty()) connection = startHelper(options_.name, path, helperArguments(), &message);
  }
  if (!connection) {
    *failed = failure(Status::unreachable, std::move(message));
    return false;
  }
  session_ = std::make_unique<Session>(std::move(connection));
  const auto record = readConnectionRecord(openConnectionRecord(options_.name));
  session_->tellsBegin = !isRecordMissing(options_.name);
  session_->hasLostProgram =
      record && record->process == session_->process.number && record->server.path &&
      session_->process.isProgramGone(record->server.path.fileSystemRepresentation().value_or(std::string()));
  return true;
}

/// Empty when there is none; `*message` then says where it was looked for.
std::string HelperClient::programToStart(std::string *message) const {
  return options_.helperPath.empty() ? findHelperProgram(message) : options_.helperPath;
}

std::vector<std::string> HelperClient::helperArguments() const {
  std::vector<std::string> arguments = {"--abandoned-work-seconds", kAbandonedWorkSeconds};
  if (options_.idleMinutes > 0)
    arguments.insert(arguments.end(), {"--idle-minutes", numberText(options_.idleMinutes)});
  return arguments;
}

Answer HelperClient::call(const NSString &selector, const NSDictionary &arguments) {
  NSError error;
  const ConnectionRequest request = {++serial_, selector, arguments};
  const std::vector<NSData> pieces = encodeMessage(request, &error);
  if (pieces.empty()) return failure(Status::invalid, error.localizedFailureReason.UTF8String());
  workSeconds_ = options_.timeoutSeconds + (selector.view() == kPageSelector ? kPageLoadSeconds : 0);
  const Deadline waiting = Deadline::after(options_.waitingSeconds);
  int refusals = 0, deaths = 0;
  do {
    Answer answer;
    if (!connect(options_.startsHelper, waiting, &answer)) return answer;
    try {
      if (ask(request.serial, pieces, waiting, &answer)) return answer;
    } catch (...) {
      session_.reset();
      throw;
    }
    ++(endSession() ? deaths : refusals);
  } while (refusals < kRefusals && deaths < kDeaths && !waiting.isOver());
  if (refusals < kRefusals && deaths < kDeaths) return endUnbegun();
  return failure(Status::unreachable,
                 refusals < kRefusals
                     ? "Helpers ended before they began the request, " + std::to_string(kDeaths) + " times"
                     : "The helper closed the connection before it began the request, " +
                           std::to_string(kRefusals) + " times");
}

/// Nil, the empty path and what cannot be one go as they are: they are the helper's to refuse.
Answer HelperClient::callWithFile(const NSString &selector, const NSString &keyword, const NSString &path,
                                  NSDictionary otherArguments) {
  std::string message;
  const auto name = path.fileSystemRepresentation();
  const std::string absolute = name ? absolutePath(*name, &message) : "";
  if (name && absolute.empty()) return failure(Status::invalid, message);
  otherArguments.setObject(name ? NSString::stringWithFileSystemRepresentation(absolute) : path, keyword);
  return call(selector, otherArguments);
}

/// Sends a request and awaits its end. False when the connection ended before the helper had begun it.
bool HelperClient::ask(std::int64_t serial, const std::vector<NSData> &request, const Deadline &waiting,
                       Answer *answer) {
  ConnectionChannel &channel = session_->channel;
  bool hasBegun = false;
  Deadline deadline = waiting;
  const auto begin = [&] {
    if (!hasBegun) deadline = Deadline::after(workSeconds_);
    hasBegun = true;
  };
  if (!session_->tellsBegin) begin();
  bool isOpen = channel.send(request);
  std::vector<NSData> bodies;
  while (isOpen) {
    const bool sends = channel.pendingBytes() > 0;
    const short ready = waitUntilReady(channel.socket(), sends ? POLLIN | POLLOUT : POLLIN, deadline);
    if (ready == 0) {
      *answer = hasBegun ? endTimedOut() : endUnbegun();
      return true;
    }
    if (ready & POLLOUT) isOpen = channel.flush();
    // What has come is read to its end, also when the other side takes no more.
    if (ready & ~POLLOUT) isOpen = channel.receive(&bodies) && isOpen;
    for (const NSData &body : std::exchange(bodies, {})) {
      ConnectionAnswer message;
      if (!decodeMessage(body, &message)) {
        *answer = endDied("The helper sent what is no reply");
        return true;
      }
      // It is of the present version after all: nothing was begun.
      if (std::holds_alternative<ConnectionGreeting>(message) && !session_->tellsBegin) {
        session_->tellsBegin = true;
        hasBegun = false;
        deadline = waiting;
      }
      if (const auto *begun = std::get_if<ConnectionBegun>(&message); begun && begun->serial == serial) begin();
      if (auto *reply = std::get_if<ConnectionReply>(&message); reply && reply->serial == serial) {
        *answer = answerOfReply(std::move(*reply));
        return true;
      }
    }
  }
  // Of an older helper nobody knows; but what it has not got in whole, it has not begun.
  if (!hasBegun || channel.pendingBytes() > 0) return false;
  *answer = endDied("The helper closed the connection before it replied");
  return true;
}

/// Whether the helper has ended, too.
bool HelperClient::endSession() {
  const bool hasEnded = session_->process.waitUntilEnded(kAttemptPause);
  session_.reset();
  return hasEnded;
}

/// The connection goes with the call: a late reply has nobody to reach.
Answer HelperClient::endTimedOut() {
  if (options_.endsHungHelper) session_->process.endByForce();
  session_.reset();
  return failure(Status::timedOut, "No reply within " + secondsText(workSeconds_));
}

/// A helper that works for others is left alone.
Answer HelperClient::endUnbegun() {
  std::string message = "The helper did not begin within " + secondsText(options_.waitingSeconds);
  const auto record = readConnectionRecord(openConnectionRecord(options_.name));
  const bool isIdle = session_ && record && record->process == session_->process.number && !record->isWorking;
  if (isIdle && options_.endsHungHelper) session_->process.endByForce();
  session_.reset();
  const auto state = helperState();
  if (state && state->isRunning && state->record.isWorking)
    message += ": it works on " + describedRequest(state->record);
  return failure(Status::timedOut, std::move(message));
}

Answer HelperClient::endDied(std::string message) {
  const bool hasEnded = session_->process.waitUntilEnded(kDeathLimit);
  session_.reset();
  return failure(Status::died, hasEnded ? "The helper died over it" : std::move(message));
}

std::string HelperClient::describedRequest(const ConnectionRecord &record) {
  const std::string selector = record.selector.UTF8String();
  const std::string subject = record.input ? record.input.UTF8String() + " (" + selector + ")" : selector;
  return subject + " for process " + std::to_string(record.client);
}

std::optional<HelperClient::State> HelperClient::helperState() const {
  auto record = readConnectionRecord(openConnectionRecord(options_.name));
  const bool isAlive = record && ::kill(record->process, 0) == 0;
  const bool isHeld = isLocked(options_.name);
  // No connection is made without need: it would wait beside those of callers.
  if (isAlive && isHeld) return State{true, std::move(*record)};
  bool isBusy = false;
  const HelperConnection connection = connectToHelper(options_.name, Seconds::zero(), &isBusy);
  // Whoever answers under the name serves it, whatever has become of its record and lock.
  if (connection && (!record || record->process != connection.process.number))
    return State{true, ConnectionRecord{.process = connection.process.number}};
  if (!record) return isHeld || isBusy ? std::optional(State{.isRunning = true}) : std::nullopt;
  return State{connection || (isAlive && isBusy), std::move(*record)};
}

int HelperClient::helperProcessIdentifier(Answer *failure) {
  Answer ignored;
  const Deadline waiting = Deadline::after(options_.timeoutSeconds);
  return connect(options_.startsHelper, waiting, failure ? failure : &ignored) ? session_->process.number : 0;
}

bool HelperClient::stopHelper() {
  Answer failed;
  if (!connect(false, Deadline::after(options_.timeoutSeconds), &failed)) return false;
  session_->process.sendSignal(SIGTERM);
  if (!session_->process.waitUntilEnded(kStopLimit)) session_->process.endByForce();
  session_.reset();
  return true;
}

Answer HelperClient::metaDataForFile(const NSString &path) {
  return callWithFile(u"metaDataForFile:"_ns, u"metaDataForFile"_ns, path);
}

Answer HelperClient::searchableTextOfWebArchive(const NSString &path) {
  return callWithFile(u"searchableTextOfWebArchive:"_ns, u"searchableTextOfWebArchive"_ns, path);
}

Answer HelperClient::attributedStringWithPDF(Flag attributed, const NSData &pdf) {
  return call(u"attributed:stringWithPDF:"_ns,
              {{u"attributed"_ns, bool(attributed)}, {u"stringWithPDF"_ns, pdf}});
}

Answer HelperClient::attributedStringWithContentsOfFile(const NSString &path) {
  return callWithFile(u"attributedStringWithContentsOfFile:"_ns, u"attributedStringWithContentsOfFile"_ns,
                      path);
}

Answer HelperClient::writeRTFDData(const NSData &rtfd, const NSString &toFile) {
  return callWithFile(u"writeRTFDData:toFile:"_ns, u"toFile"_ns, toFile, {{u"writeRTFDData"_ns, rtfd}});
}

Answer HelperClient::RTFDWithHTML(const NSData &html, const NSString &baseURL, Flag allowRemoteRequest) {
  return call(NSString::stringWithCharacters(kPageSelector),
              {{u"RTFDWithHTML"_ns, html},
               {u"baseURL"_ns, baseURL},
               {u"allowRemoteRequest"_ns, bool(allowRemoteRequest)}});
}

Answer HelperClient::PDFImageRepOfFile(const NSString &path) {
  return callWithFile(u"PDFImageRepOfFile:"_ns, u"PDFImageRepOfFile"_ns, path);
}

Answer HelperClient::posterImageForMovieWithFile(const NSString &path) {
  return callWithFile(u"posterImageForMovieWithFile:"_ns, u"posterImageForMovieWithFile"_ns, path);
}

Answer HelperClient::imageWithContentsOfFile(const NSString &path, Flag stringFromPDF, Flag canUseSpotlight) {
  return callWithFile(
      u"imageWithContentsOfFile:stringFromPDF:canUseSpotlight:"_ns, u"imageWithContentsOfFile"_ns, path,
      {{u"stringFromPDF"_ns, bool(stringFromPDF)}, {u"canUseSpotlight"_ns, bool(canUseSpotlight)}});
}

Answer HelperClient::stringWithPDF(const NSData &pdf, const NSDictionary &options) {
  return call(u"stringWithPDF:options:"_ns, {{u"stringWithPDF"_ns, pdf}, {u"options"_ns, options}});
}

}  // namespace nimbo
