// SPDX-License-Identifier: Apache-2.0
#include "children/Pasteboard/WaylandClipboard.hpp"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "children/Pasteboard/PasteboardError.hpp"
#include "children/Pasteboard/TypeNames.hpp"
#include "children/Pasteboard/WaylandConnection.hpp"

namespace nimbo {
namespace {

/// How long somebody who has asked for data may take for the next part of them.
constexpr double kPartSeconds = 30;
/// So many are served at once.
constexpr std::size_t kMaximumTransfers = 256;
constexpr std::size_t kReadBytes = 1 << 16;

class WaylandClipboard final : public Clipboard {
 public:
  explicit WaylandClipboard(const Patience &patience) : connection_(patience) {}

  std::optional<std::vector<std::string>> types(const Patience & /*patience*/) override {
    requireOffer();
    if (connection_.types().size() > kMaximumTypes) throw PasteboardError(ErrorCode::tooLarge, kTooManyTypes);
    return connection_.types();
  }
  bool tellsRefusal() const override { return false; }
  std::optional<std::string> read(const std::string &type, const Patience &patience) override;
  void own(const std::vector<std::string> &types, const Patience &patience) override;
  void serve(Contents &contents, int signals) override;

 private:
  /// Somebody who has asked for data: he waits for them, or gets them.
  struct Transfer {
    std::string type;
    FileDescriptor file;
    Bytes bytes;
    std::size_t sentBytes = 0;
    Deadline deadline;
  };

  static void send(void *data, wl_proxy *source, const char *type, std::int32_t file);
  static void cancelled(void *data, wl_proxy *source);
  static constexpr DataControlSourceListener kListener = {send, cancelled};

  void requireOffer() const {
    if (!connection_.offer()) throw PasteboardError(ErrorCode::incomplete, "the clipboard is empty");
  }
  void advance(const Contents &contents);
  static bool advance(Transfer &transfer, const Contents &contents);

  WaylandConnection connection_;
  DataControlSource source_;
  bool isOwner_ = true;
  std::vector<Transfer> transfers_;
};

std::optional<std::string> WaylandClipboard::read(const std::string &type, const Patience &patience) {
  requireOffer();
  const std::size_t count = connection_.offerCount();
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
    throw PasteboardError(ErrorCode::other, "there is no pipe to read the clipboard through");
  const FileDescriptor reading(ends[0]);
  {
    const FileDescriptor writing(ends[1]);
    // The owner writes as to any pipe.
    ::fcntl(writing.get(), F_SETFL, 0);
    receiveType(connection_.offer(), type.c_str(), writing.get());
    connection_.dispatch();
  }
  std::string bytes;
  for (Deadline deadline = patience.step();;) {
    const std::size_t before = bytes.size();
    bytes.resize(before + kReadBytes);
    const ssize_t got = ::read(reading.get(), bytes.data() + before, kReadBytes);
    const int number = errno;
    bytes.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got == 0) break;
    if (bytes.size() > kMaximumContentBytes)
      throw PasteboardError(ErrorCode::tooLarge, "the clipboard holds too much");
    if (got > 0) {
      deadline = patience.step();
      continue;
    }
    if (number != EAGAIN && number != EINTR)
      throw PasteboardError(ErrorCode::other, "the clipboard cannot be read");
    if (deadline.isOver())
      throw PasteboardError(ErrorCode::timeLimit,
                            "the program that owns the clipboard does not answer in time");
    pollfd waited = {reading.get(), POLLIN, 0};
    ::poll(&waited, 1, deadline.remainingMilliseconds());
  }
  // A pipe ends in the same way when its writer does, which many do as soon as they have given all.
  if (!bytes.empty()) return bytes;
  connection_.roundTrip(patience);
  if (connection_.offerCount() == count) return bytes;
  constexpr char kReason[] = "the program that owns the clipboard ended before it gave anything";
  if (!connection_.offer()) throw PasteboardError(ErrorCode::incomplete, kReason);
  throw OwnerReplaced(ErrorCode::incomplete, kReason);
}

void WaylandClipboard::own(const std::vector<std::string> &types, const Patience &patience) {
  if (!types.empty()) {
    source_ = createDataSource(connection_.manager());
    ::wl_proxy_add_listener(source_.get(),
                            reinterpret_cast<void (**)()>(const_cast<DataControlSourceListener *>(&kListener)),
                            this);
    for (const std::string &type : types) offerType(source_.get(), type.c_str());
  }
  setSelection(connection_.device(), source_.get());
  connection_.roundTrip(patience);
  if (!isOwner_) throw PasteboardError(ErrorCode::other, "another program took the clipboard at the same time");
}

void WaylandClipboard::send(void *data, wl_proxy * /*source*/, const char *type, std::int32_t file) {
  auto &self = *static_cast<WaylandClipboard *>(data);
  FileDescriptor owned(file);
  ::fcntl(file, F_SETFL, O_NONBLOCK);
  ::fcntl(file, F_SETFD, FD_CLOEXEC);
  if (self.transfers_.size() < kMaximumTransfers)
    self.transfers_.push_back({type, std::move(owned), nullptr, 0, Deadline()});
}

void WaylandClipboard::cancelled(void *data, wl_proxy * /*source*/) {
  static_cast<WaylandClipboard *>(data)->isOwner_ = false;
}

/// Whether there is more to do for who has asked.
bool WaylandClipboard::advance(Transfer &transfer, const Contents &contents) {
  if (!transfer.bytes) {
    if (contents.stateOf(transfer.type) == Contents::State::awaited) {
      // Who no longer reads is not waited with.
      pollfd reader = {transfer.file.get(), 0, 0};
      return ::poll(&reader, 1, 0) == 0;
    }
    transfer.bytes = contents.bytesOf(transfer.type);
    transfer.deadline = Deadline::after(kPartSeconds);
  }
  while (transfer.bytes && transfer.sentBytes < transfer.bytes->size()) {
    const ssize_t sent = ::write(transfer.file.get(), transfer.bytes->data() + transfer.sentBytes,
                                 transfer.bytes->size() - transfer.sentBytes);
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) return errno == EAGAIN && !transfer.deadline.isOver();
    transfer.sentBytes += static_cast<std::size_t>(sent);
    transfer.deadline = Deadline::after(kPartSeconds);
  }
  return false;
}

void WaylandClipboard::advance(const Contents &contents) {
  std::erase_if(transfers_, [&contents](Transfer &transfer) { return !advance(transfer, contents); });
}

void WaylandClipboard::serve(Contents &contents, int signals) {
  for (;;) {
    connection_.dispatch();
    if (!isOwner_) contents.closeFeed();
    advance(contents);
    if (transfers_.empty() && (!isOwner_ || !contents.isWorthKeeping())) return;
    std::vector<pollfd> waited = {
        {connection_.descriptor(), POLLIN, 0}, {contents.feed(), POLLIN, 0}, {signals, POLLIN, 0}};
    Deadline deadline;
    for (const Transfer &transfer : transfers_) {
      waited.push_back({transfer.file.get(), static_cast<short>(transfer.bytes ? POLLOUT : 0), 0});
      deadline = earliest(deadline, transfer.deadline);
    }
    ::poll(waited.data(), waited.size(), deadline.remainingMilliseconds());
    if (waited[1].revents) contents.receive();
    if (waited[2].revents) return;
  }
}

}  // namespace

std::unique_ptr<Clipboard> openWaylandClipboard(const Patience &patience) {
  return std::make_unique<WaylandClipboard>(patience);
}

}  // namespace nimbo
