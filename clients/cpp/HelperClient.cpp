// SPDX-License-Identifier: Apache-2.0
#include "clients/cpp/HelperClient.hpp"

#include <poll.h>
#include <signal.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <utility>
#include <vector>

#include "clients/cpp/AbsolutePath.hpp"
#include "clients/cpp/HelperProcess.hpp"
#include "clients/cpp/HelperProgram.hpp"
#include "helper/NimboImExport.hpp"
#include "platform/Foundation/Connection/ConnectionChannel.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo {
namespace {

using Seconds = std::chrono::duration<double>;
using Answer = HelperClient::Answer;
using Status = HelperClient::Status;

/// How long a helper may take to end after SIGTERM, before it is killed.
constexpr Seconds kStopLimit{2};
/// How long a helper that closed a connection is given to be gone, so that the next call does not meet its
/// remains.
constexpr Seconds kDeathLimit{1};
/// How often a request is sent at most.
constexpr int kAttempts = 2;

/// The time as a message has it: "15 seconds".
std::string secondsText(double seconds) {
  std::array<char, 32> digits;
  const auto end = std::to_chars(digits.begin(), digits.end(), seconds).ptr;
  return std::string(digits.begin(), end) + " seconds";
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
  /// The deadline of the call under way.
  Deadline deadline;
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

/// Makes sure that there is a session whose connection still stands.
bool HelperClient::connect(bool startsHelper, Answer *failed) {
  if (session_ && !isConnectionStale(session_->channel.socket())) return true;
  session_.reset();
  bool isBusy = false;
  HelperConnection connection = connectToHelper(options_.name, Seconds(options_.timeoutSeconds), &isBusy);
  if (isBusy) {
    *failed =
        failure(Status::timedOut, "The helper takes no connection for " + secondsText(options_.timeoutSeconds));
    return false;
  }
  std::string message = "No helper is registered";
  if (!connection && startsHelper) {
    const std::string path = options_.helperPath.empty() ? findHelperProgram(&message) : options_.helperPath;
    if (!path.empty()) connection = startHelper(options_.name, path, &message);
  }
  if (!connection) {
    *failed = failure(Status::unreachable, std::move(message));
    return false;
  }
  session_ = std::make_unique<Session>(std::move(connection));
  return true;
}

Answer HelperClient::call(const NSString &selector, const NSDictionary &arguments) {
  NSString error;
  const ConnectionRequest request = {++serial_, selector, arguments};
  const std::vector<NSData> pieces = encodeMessage(request, &error);
  if (pieces.empty()) return failure(Status::invalid, error.UTF8String());
  for (int attempt = 1;; ++attempt) {
    Answer failed;
    if (!connect(options_.startsHelper, &failed)) return failed;
    session_->deadline = Deadline::after(options_.timeoutSeconds);
    if (session_->channel.send(pieces)) {
      try {
        return awaitReply(request.serial);
      } catch (...) {
        session_.reset();
        throw;
      }
    }
    // The helper ended since the last call. Only when it cannot have seen any of the request is that sent
    // again.
    if (session_->channel.pendingBytes() < lengthOfPieces(pieces) || attempt == kAttempts)
      return endDied("The helper closed the connection");
    endDied({});
  }
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

Answer HelperClient::awaitReply(std::int64_t serial) {
  ConnectionChannel &channel = session_->channel;
  std::vector<NSData> bodies;
  for (bool isOpen = true; isOpen;) {
    const bool sends = channel.pendingBytes() > 0;
    const short ready = waitUntilReady(channel.socket(), sends ? POLLIN | POLLOUT : POLLIN, session_->deadline);
    if (ready == 0) return endTimedOut();
    if (ready & POLLOUT) isOpen = channel.flush();
    if (ready & ~POLLOUT) isOpen = channel.receive(&bodies) && isOpen;
    for (const NSData &body : bodies) {
      ConnectionReply reply;
      if (!decodeMessage(body, &reply)) return endDied("The helper sent what is no reply");
      if (reply.serial == serial) return answerOfReply(std::move(reply));
    }
    bodies.clear();
  }
  return endDied("The helper ended, or closed the connection, before it replied");
}

/// The connection goes with the call: a late reply has nobody to reach.
Answer HelperClient::endTimedOut() {
  if (options_.endsHungHelper) session_->process.endByForce();
  session_.reset();
  return failure(Status::timedOut, "No reply within " + secondsText(options_.timeoutSeconds));
}

Answer HelperClient::endDied(std::string message) {
  session_->process.waitUntilEnded(kDeathLimit);
  session_.reset();
  return failure(Status::died, std::move(message));
}

int HelperClient::helperProcessIdentifier(Answer *failure) {
  Answer ignored;
  return connect(options_.startsHelper, failure ? failure : &ignored) ? session_->process.number : 0;
}

bool HelperClient::stopHelper() {
  Answer failed;
  if (!connect(false, &failed)) return false;
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

Answer HelperClient::attributedStringWithPDF(bool attributed, const NSData &pdf) {
  return call(u"attributed:stringWithPDF:"_ns, {{u"attributed"_ns, attributed}, {u"stringWithPDF"_ns, pdf}});
}

Answer HelperClient::attributedStringWithContentsOfFile(const NSString &path) {
  return callWithFile(u"attributedStringWithContentsOfFile:"_ns, u"attributedStringWithContentsOfFile"_ns,
                      path);
}

Answer HelperClient::writeRTFDData(const NSData &rtfd, const NSString &toFile) {
  return callWithFile(u"writeRTFDData:toFile:"_ns, u"toFile"_ns, toFile, {{u"writeRTFDData"_ns, rtfd}});
}

Answer HelperClient::RTFDWithHTML(const NSData &html, const NSString &baseURL, bool allowRemoteRequest) {
  return call(
      u"RTFDWithHTML:baseURL:allowRemoteRequest:"_ns,
      {{u"RTFDWithHTML"_ns, html}, {u"baseURL"_ns, baseURL}, {u"allowRemoteRequest"_ns, allowRemoteRequest}});
}

Answer HelperClient::PDFImageRepOfFile(const NSString &path) {
  return callWithFile(u"PDFImageRepOfFile:"_ns, u"PDFImageRepOfFile"_ns, path);
}

Answer HelperClient::posterImageForMovieWithFile(const NSString &path) {
  return callWithFile(u"posterImageForMovieWithFile:"_ns, u"posterImageForMovieWithFile"_ns, path);
}

Answer HelperClient::imageWithContentsOfFile(const NSString &path, bool stringFromPDF, bool canUseSpotlight) {
  return callWithFile(u"imageWithContentsOfFile:stringFromPDF:canUseSpotlight:"_ns,
                      u"imageWithContentsOfFile"_ns, path,
                      {{u"stringFromPDF"_ns, stringFromPDF}, {u"canUseSpotlight"_ns, canUseSpotlight}});
}

}  // namespace nimbo
