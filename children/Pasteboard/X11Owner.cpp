// SPDX-License-Identifier: Apache-2.0
#include "children/Pasteboard/X11Owner.hpp"

#include <poll.h>

#include <algorithm>
#include <utility>

#include "children/Pasteboard/PasteboardError.hpp"
#include "children/Pasteboard/TypeNames.hpp"

namespace nimbo {
namespace {

/// How long a requestor may take for a piece, and a clipboard manager for everything.
constexpr double kPieceSeconds = 30, kHandOverSeconds = 5;
/// How far a request may lie before the ownership to be taken for older. The server's clock begins anew after
/// 49 days, which an owner may live to see.
constexpr xcb_timestamp_t kOlderMilliseconds = 3'600'000;
/// So many who ask for what is not there yet, or are being sent something, are served at once.
constexpr std::size_t kMaximumWaiting = 256, kMaximumTransfers = 256;

}  // namespace

X11Owner::X11Owner(X11Connection &connection, const std::vector<std::string> &types, const Patience &patience)
    : connection_(connection) {
  const std::vector<std::string> names = {
      "CLIPBOARD", "CLIPBOARD_MANAGER", "TARGETS", "MULTIPLE",    "TIMESTAMP",           "SAVE_TARGETS",
      "INCR",      "ATOM_PAIR",         "TEXT",    "UTF8_STRING", "QUIVERLEAF_CLIPBOARD"};
  const std::vector<xcb_atom_t> atoms = connection.atoms(names);
  xcb_atom_t *const known[] = {&clipboard_,   &manager_, &targets_, &multiple_, &timestamp_, &saveTargets_,
                               &incremental_, &pair_,    &text_,    &utf8_,     &property_};
  for (std::size_t i = 0; i < atoms.size(); ++i) *known[i] = atoms[i];
  atoms_ = connection.atoms(types);
  for (std::size_t i = 0; i < types.size(); ++i) types_.emplace(atoms_[i], types[i]);
  since_ = connection.serverTime(patience);
  ::xcb_set_selection_owner(connection.get(), connection.window(), clipboard_, since_);
  if (connection.selectionOwner(clipboard_) != connection.window())
    throw PasteboardError(ErrorCode::other, "another program took the clipboard at the same time");
}

void X11Owner::serve(Contents &contents, int signals) {
  contents_ = &contents;
  for (;;) {
    while (const X11Event event = connection_.pollEvent()) handle(event);
    dropTransfers([](const Transfer &transfer, xcb_window_t) { return transfer.deadline.isOver(); },
                  XCB_WINDOW_NONE);
    retryWaiting();
    connection_.flush();
    if (transfers_.empty() && (!isOwner_ || isHandedOver_ || !contents.isWorthKeeping())) return;
    if (handOver_.isOver()) return;
    waitForWork(signals);
  }
}

void X11Owner::waitForWork(int signals) {
  // One may have come with a reply.
  if (const X11Event event = connection_.pollEvent()) return handle(event);
  pollfd waited[] = {{::xcb_get_file_descriptor(connection_.get()), POLLIN, 0},
                     {contents_->feed(), POLLIN, 0},
                     {isHandedOver_ || !handOver_.isNever() ? -1 : signals, POLLIN, 0}};
  if (::poll(waited, std::size(waited), earliestDeadline().remainingMilliseconds()) < 0) return;
  if (waited[1].revents) contents_->receive();
  if (waited[2].revents && !beginHandOver()) isHandedOver_ = true;
}

Deadline X11Owner::earliestDeadline() const {
  Deadline deadline = handOver_;
  for (const Transfer &transfer : transfers_) deadline = earliest(deadline, transfer.deadline);
  return deadline;
}

/// Whether there is a clipboard manager, which then asks for everything that is there by now.
bool X11Owner::beginHandOver() {
  contents_->closeFeed();
  if (connection_.selectionOwner(manager_) == XCB_WINDOW_NONE) return false;
  setAtoms(connection_.window(), property_, XCB_ATOM_ATOM, atoms_);
  ::xcb_convert_selection(connection_.get(), connection_.window(), manager_, saveTargets_, property_, since_);
  handOver_ = Deadline::after(kHandOverSeconds);
  return true;
}

void X11Owner::handle(const X11Event &event) {
  switch (event->response_type & 0x7f) {
    case XCB_SELECTION_REQUEST:
      return receive(*reinterpret_cast<const Request *>(event.get()));
    case XCB_SELECTION_CLEAR:
      isOwner_ = false;
      return contents_->closeFeed();
    case XCB_SELECTION_NOTIFY: {
      const auto &notice = *reinterpret_cast<const xcb_selection_notify_event_t *>(event.get());
      isHandedOver_ = isHandedOver_ || notice.selection == manager_;
      return;
    }
    case XCB_PROPERTY_NOTIFY:
      return sendPiece(*reinterpret_cast<const xcb_property_notify_event_t *>(event.get()));
    case XCB_DESTROY_NOTIFY:
      return dropTransfers(
          [](const Transfer &transfer, xcb_window_t window) { return transfer.requestor == window; },
          reinterpret_cast<const xcb_destroy_notify_event_t *>(event.get())->window);
    default:
      return;
  }
}

void X11Owner::receive(const Request &request) {
  const bool isOlder =
      request.time != XCB_CURRENT_TIME && request.time != since_ && since_ - request.time <= kOlderMilliseconds;
  const bool isOurs = isOwner_ && request.selection == clipboard_ && !isOlder;
  const Outcome outcome = isOurs ? convert(request) : Outcome::refused;
  if (outcome != Outcome::awaited) return answer(request, outcome);
  if (waiting_.size() >= kMaximumWaiting) return answer(request, Outcome::refused);
  waiting_.push_back(request);
}

void X11Owner::retryWaiting() {
  std::erase_if(waiting_, [this](const Request &request) {
    const Outcome outcome = convert(request);
    if (outcome != Outcome::awaited) answer(request, outcome);
    return outcome != Outcome::awaited;
  });
}

/// Clients of old times name no property and mean that of the target's name.
static xcb_atom_t propertyOf(const xcb_selection_request_event_t &request) {
  return request.property == XCB_ATOM_NONE ? request.target : request.property;
}

void X11Owner::answer(const Request &request, Outcome outcome) {
  xcb_selection_notify_event_t notice = {};
  notice.response_type = XCB_SELECTION_NOTIFY;
  notice.time = request.time;
  notice.requestor = request.requestor;
  notice.selection = request.selection;
  notice.target = request.target;
  notice.property = outcome == Outcome::given ? propertyOf(request) : xcb_atom_t{XCB_ATOM_NONE};
  static_assert(sizeof notice <= sizeof(xcb_generic_event_t));
  xcb_generic_event_t bytes = {};
  std::copy_n(reinterpret_cast<const char *>(&notice), sizeof notice, reinterpret_cast<char *>(&bytes));
  ::xcb_send_event(connection_.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&bytes));
}

X11Owner::Outcome X11Owner::convert(const Request &request) {
  if (request.target == multiple_) return convertAll(request);
  return give(request.requestor, request.target, propertyOf(request));
}

/// What is asked for stands in a property, in pairs of a target and a property; those that are refused are
/// marked there.
X11Owner::Outcome X11Owner::convertAll(const Request &request) {
  if (request.property == XCB_ATOM_NONE) return Outcome::refused;
  const auto property = connection_.property(request.requestor, request.property, false);
  if (!property) return Outcome::refused;
  std::vector<xcb_atom_t> pairs = atomsIn(*property);
  if (pairs.size() > 2 * kMaximumTypes) return Outcome::refused;
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2)
    if (stateOf(pairs[i]) == Contents::State::awaited) return Outcome::awaited;
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2)
    if (pairs[i + 1] == XCB_ATOM_NONE || give(request.requestor, pairs[i], pairs[i + 1]) != Outcome::given)
      pairs[i + 1] = XCB_ATOM_NONE;
  setAtoms(request.requestor, request.property, pair_, pairs);
  return Outcome::given;
}

X11Owner::Outcome X11Owner::give(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
  if (target == targets_) {
    std::vector<xcb_atom_t> all = {targets_, multiple_, timestamp_, saveTargets_};
    all.insert(all.end(), atoms_.begin(), atoms_.end());
    setAtoms(requestor, property, XCB_ATOM_ATOM, all);
    return Outcome::given;
  }
  if (target == timestamp_) {
    ::xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_INTEGER, 32,
                          1, &since_);
    return Outcome::given;
  }
  const Contents::State state = stateOf(target);
  if (state == Contents::State::awaited) return Outcome::awaited;
  if (state != Contents::State::given) return Outcome::refused;
  const Bytes bytes = contents_->bytesOf(types_.at(target));
  // Who asks for text of whatever kind gets to know of which it is.
  const xcb_atom_t type = target == text_ ? utf8_ : target;
  if (bytes->size() > connection_.propertyBytes()) {
    if (transfers_.size() >= kMaximumTransfers) return Outcome::refused;
    beginTransfer({requestor, property, type, bytes, 0, Deadline::after(kPieceSeconds)});
    return Outcome::given;
  }
  ::xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, requestor, property, type, 8,
                        static_cast<std::uint32_t>(bytes->size()), bytes->data());
  return Outcome::given;
}

Contents::State X11Owner::stateOf(xcb_atom_t target) const {
  const auto type = types_.find(target);
  return type == types_.end() ? Contents::State::notOffered : contents_->stateOf(type->second);
}

void X11Owner::setAtoms(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                        const std::vector<xcb_atom_t> &atoms) {
  ::xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        static_cast<std::uint32_t>(atoms.size()), atoms.data());
}

void X11Owner::beginTransfer(Transfer transfer) {
  const xcb_window_t requestor = transfer.requestor;
  std::erase_if(transfers_, [&transfer](const Transfer &other) {
    return other.requestor == transfer.requestor && other.property == transfer.property;
  });
  const auto size = static_cast<std::uint32_t>(transfer.bytes->size());
  const xcb_atom_t property = transfer.property;
  transfers_.push_back(std::move(transfer));
  watch(requestor);
  ::xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, requestor, property, incremental_, 32, 1,
                        &size);
}

/// Lets the server tell what becomes of a requestor's window as long as something is sent there.
void X11Owner::watch(xcb_window_t requestor) {
  const bool isServed = std::ranges::find(transfers_, requestor, &Transfer::requestor) != transfers_.end();
  std::uint32_t events = isServed ? XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY : 0;
  if (requestor == connection_.window()) events |= XCB_EVENT_MASK_PROPERTY_CHANGE;
  ::xcb_change_window_attributes(connection_.get(), requestor, XCB_CW_EVENT_MASK, &events);
}

/// The requestor has taken a piece; the one after the last is empty.
void X11Owner::sendPiece(const xcb_property_notify_event_t &notice) {
  if (notice.state != XCB_PROPERTY_DELETE) return;
  const auto transfer = std::ranges::find_if(transfers_, [&notice](const Transfer &other) {
    return other.requestor == notice.window && other.property == notice.atom;
  });
  if (transfer == transfers_.end()) return;
  const std::size_t length =
      std::min(transfer->bytes->size() - transfer->sentBytes, connection_.propertyBytes());
  ::xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, transfer->requestor, transfer->property,
                        transfer->type, 8, static_cast<std::uint32_t>(length),
                        transfer->bytes->data() + transfer->sentBytes);
  transfer->sentBytes += length;
  transfer->deadline = Deadline::after(kPieceSeconds);
  if (length > 0) return;
  const xcb_window_t requestor = transfer->requestor;
  transfers_.erase(transfer);
  watch(requestor);
}

void X11Owner::dropTransfers(bool (*isOver)(const Transfer &, xcb_window_t), xcb_window_t window) {
  std::vector<xcb_window_t> requestors;
  std::erase_if(transfers_, [&](const Transfer &transfer) {
    if (!isOver(transfer, window)) return false;
    requestors.push_back(transfer.requestor);
    return true;
  });
  for (const xcb_window_t requestor : requestors) watch(requestor);
}

}  // namespace nimbo
