// SPDX-License-Identifier: Apache-2.0
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/AppKit/Pasteboard/PasteboardConversion.hpp"
#include "platform/AppKit/Pasteboard/PasteboardFeed.hpp"
#include "platform/AppKit/Pasteboard/PasteboardServer.hpp"
#include "platform/AppKit/Pasteboard/PasteboardTargets.hpp"
#include "platform/Foundation/NSTask.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/InstalledProgram.hpp"

namespace nimbo::detail {
namespace {

/// How long another program may take for a step, and in all; a little more for when ours does not keep to it.
constexpr double kStepSeconds = 5, kWholeSeconds = 32;
/// How long the owner may take to receive data.
constexpr double kSendingSeconds = 10;

/// Whether it is a title that stands beside a URL.
bool isTitle(const NSString &type) {
  return std::ranges::any_of(
      targetsToRead(type), [](const PasteboardTarget &target) { return target.form == TargetForm::titleLine; });
}

template <class Target>
std::vector<NSString> namesOf(const std::vector<Target> &targets) {
  std::vector<NSString> names(targets.size());
  std::ranges::transform(targets, names.begin(), &Target::target);
  return names;
}

bool contains(const std::vector<NSString> &types, const NSString &type) {
  return std::ranges::find(types, type) != types.end();
}

/// The clipboard, which a program of its own talks to: each question is a run of it, and what is offered is a
/// process of it, which lives on and gets the data through a socket.
class DesktopPasteboard final : public PasteboardServer {
 public:
  NSString name() const override { return u"general"_ns; }

  bool isAvailable(NSError *error) const override {
    return run(u"check"_ns, {}, -1, deadline(), error).has_value();
  }

  std::int64_t changeCount() const override {
    const std::scoped_lock lock(mutex_);
    return changeCount_;
  }

  std::vector<NSString> types(NSError *error) const override {
    const auto output = run(u"types"_ns, {}, -1, deadline(), error);
    std::vector<NSString> targets;
    for (std::string_view left = output ? output->view() : std::string_view(); !left.empty();) {
      const std::size_t end = std::min(left.find('\n'), left.size());
      targets.push_back(NSString::stringWithLossyUTF8String(left.substr(0, end)));
      left.remove_prefix(std::min(end + 1, left.size()));
    }
    return typesOfTargets(targets);
  }

  bool declareTypes(std::span<const NSString> types, NSError *error) override {
    int ends[2];
    const std::scoped_lock lock(mutex_);
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) != 0) {
      setError(error, ErrorCode::other, "there is no way to give the clipboard anything");
      return false;
    }
    FileDescriptor own(ends[0]);
    const FileDescriptor feed(ends[1]);
    std::vector<PasteboardOffer> offers = offersOfTypes(types);
    if (!run(u"own"_ns, namesOf(offers), feed.get(), deadline_, error)) return false;
    ++changeCount_;
    types_.assign(types.begin(), types.end());
    offers_ = std::move(offers);
    given_.clear();
    url_ = title_ = NSData();
    owner_ = std::move(own);
    return true;
  }

  bool setData(const NSData &data, const NSString &type, NSError *error) override {
    const std::scoped_lock lock(mutex_);
    if (!contains(types_, type)) {
      setError(error, ErrorCode::unsupportedType, "the type has not been declared");
      return false;
    }
    if (data.length() > kMaximumContentBytes) {
      setError(error, ErrorCode::tooLarge, "these data are too large for the clipboard");
      return false;
    }
    for (const Record &record : recordsOfData(data, type))
      if (!send(record, error)) return false;
    if (!sendURLLines(data, type, error)) return false;
    if (!contains(given_, type)) given_.push_back(type);
    return true;
  }

  NSData dataForType(const NSString &type, NSError *error) const override {
    const std::vector<PasteboardTarget> targets = targetsToReadNow(type);
    if (targets.empty()) {
      setError(error, ErrorCode::incomplete, "the clipboard holds no data of this type");
      return {};
    }
    const auto output = run(u"read"_ns, namesOf(targets), -1, deadline(), error);
    if (!output) return {};
    const auto nameBytes =
        static_cast<std::uint32_t>(std::min(output->view().find('\n'), output->view().size()));
    const NSString name = NSString::stringWithLossyUTF8String(output->view().substr(0, nameBytes));
    const auto target = std::ranges::find(targets, name, &PasteboardTarget::target);
    return target == targets.end()
               ? NSData()
               : dataFromTarget(*target, output->subdataWithRange({nameBytes + 1, output->length()}), error);
  }

  void setDeadline(const Deadline &deadline) override {
    const std::scoped_lock lock(mutex_);
    deadline_ = deadline;
  }

 private:
  /// The same data under several names, each with '\n' behind it.
  struct Record {
    std::string names;
    NSData data;
  };

  /// What the program writes; nothing when it fails: `*error` says why. It reads the input, unless that is
  /// negative.
  static std::optional<NSData> run(const NSString &command, const std::vector<NSString> &targets, int input,
                                   const Deadline &deadline, NSError *error) {
    std::size_t nameBytes = 0;
    for (const NSString &target : targets) nameBytes += target.UTF8String().size() + 1;
    if (nameBytes > kMaximumNamesBytes) {
      setError(error, ErrorCode::tooLarge, "the names of these types are too long for the clipboard");
      return std::nullopt;
    }
    NSTask task{
        .launchPath = NSString::stringWithFileSystemRepresentation(installedProgram("quiverleaf-pasteboard")),
        .arguments = {command, NSString::stringWithUTF8String(
                                   std::to_string(std::min(kStepSeconds, deadline.remaining())))},
        .standardInputDescriptor = input,
        .deadline = earliest(Deadline::after(kWholeSeconds), deadline),
        .maximumOutputBytes = kMaximumContentBytes + kMaximumTypeNameBytes + 1,
        .standardOutput = NSTask::Output::collected};
    if (task.launchPath.length() == 0) {
      setError(error, ErrorCode::unsupportedType, "the program that talks to the clipboard is not installed");
      return std::nullopt;
    }
    task.arguments.insert(task.arguments.end(), targets.begin(), targets.end());
    NSError failure;
    const auto result = task.run(&failure);
    if (!result && failure.errorCode() == ErrorCode::timeLimit)
      setError(&failure, ErrorCode::timeLimit, "there is no answer in time");
    if (!result && error) *error = failure;
    if (!result) return std::nullopt;
    if (result->terminationStatus == 0) return result->standardOutput;
    // The libraries of the desktop tell something before it, too.
    std::string_view reason = result->standardError.view();
    reason.remove_prefix(reason.rfind('\n') + 1);
    if (reason.empty())
      setError(error, ErrorCode::other, "the program that talks to the clipboard failed");
    else
      setError(error, static_cast<ErrorCode>(result->terminationStatus), reason);
    return std::nullopt;
  }

  /// From what a type is read but what this process itself offers and has not given, which nobody would wait
  /// for.
  std::vector<PasteboardTarget> targetsToReadNow(const NSString &type) const {
    std::vector<PasteboardTarget> targets = targetsToRead(type);
    const std::scoped_lock lock(mutex_);
    if (!isOwner()) return targets;
    std::erase_if(targets, [this](const PasteboardTarget &target) {
      const auto offer = std::ranges::find(offers_, target.target, &PasteboardOffer::target);
      return offer != offers_.end() && !isGiven(*offer);
    });
    return targets;
  }

  /// Whether nobody else has copied anything since.
  bool isOwner() const {
    pollfd owner = {owner_.get(), POLLRDHUP, 0};
    return owner_ && ::poll(&owner, 1, 0) == 0;
  }

  /// Whether others have what the offer is made of.
  bool isGiven(const PasteboardOffer &offer) const {
    return std::ranges::any_of(offer.sources, [this](const PasteboardTarget &source) {
      return source.form == TargetForm::URLLine ? areLinesGiven() : contains(given_, source.type);
    });
  }

  /// Whether there is a URL, and its title if one has been declared.
  bool areLinesGiven() const { return url_ && (title_ || std::ranges::none_of(types_, isTitle)); }

  /// How an offer is made of the type, which is given now; null when it is not, or something better is given.
  const PasteboardTarget *sourceOfOffer(const PasteboardOffer &offer, const NSString &type) const {
    const auto source = std::ranges::find(offer.sources, type, &PasteboardTarget::type);
    if (source == offer.sources.end()) return nullptr;
    const auto isGiven = [this](const PasteboardTarget &better) { return contains(given_, better.type); };
    return std::ranges::any_of(offer.sources.begin(), source, isGiven) ? nullptr : &*source;
  }

  /// What others are offered of the data of a type.
  std::vector<Record> recordsOfData(const NSData &data, const NSString &type) const {
    std::vector<Record> records;
    for (const PasteboardOffer &offer : offers_) {
      const PasteboardTarget *const source = sourceOfOffer(offer, type);
      if (!source || source->form == TargetForm::URLLine) continue;
      const NSData offered = dataForTarget(*source, data);
      const auto same = std::ranges::find(records, offered, &Record::data);
      Record &record = same != records.end() ? *same : records.emplace_back(Record{"", offered});
      record.names += offer.target.UTF8String() + "\n";
    }
    return records;
  }

  /// Sends the URL with its title, when the type is one of them, and both are there that have been declared.
  bool sendURLLines(const NSData &data, const NSString &type, NSError *error) {
    const auto lines = std::ranges::find_if(offers_, [](const PasteboardOffer &offer) {
      return offer.sources.front().form == TargetForm::URLLine;
    });
    if (lines == offers_.end()) return true;
    if (isTitle(type))
      title_ = data;
    else if (sourceOfOffer(*lines, type))
      url_ = data;
    else
      return true;
    return !areLinesGiven() || send({lines->target.UTF8String() + "\n", URLLines(url_, title_)}, error);
  }

  /// Gives the owner the data of some targets, nil for none.
  bool send(const Record &record, NSError *error) {
    const PasteboardRecord numbers = {static_cast<std::uint32_t>(record.names.size()),
                                      record.data ? record.data.length() : PasteboardRecord::kMissing};
    std::string head(sizeof numbers, '\0');
    std::memcpy(head.data(), &numbers, sizeof numbers);
    const Deadline deadline = earliest(Deadline::after(kSendingSeconds), deadline_);
    return sendAll(head + record.names, deadline, error) && sendAll(record.data.view(), deadline, error);
  }

  bool sendAll(std::string_view bytes, const Deadline &deadline, NSError *error) {
    while (!bytes.empty()) {
      const ssize_t sent = ::send(owner_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (sent >= 0) {
        bytes.remove_prefix(static_cast<std::size_t>(sent));
        continue;
      }
      if (errno == EINTR) continue;
      if (errno != EAGAIN || deadline.isOver()) {
        const bool isLate = errno == EAGAIN;
        // A part of a record may have been sent, so that nothing else can follow it.
        owner_.close();
        setError(error, isLate ? ErrorCode::timeLimit : ErrorCode::other,
                 isLate ? "the owner of the clipboard does not take the data in time"
                        : "another program has copied something since, or the desktop is gone");
        return false;
      }
      pollfd waited = {owner_.get(), POLLOUT, 0};
      ::poll(&waited, 1, deadline.remainingMilliseconds());
    }
    return true;
  }

  Deadline deadline() const {
    const std::scoped_lock lock(mutex_);
    return deadline_;
  }

  mutable std::mutex mutex_;
  Deadline deadline_;
  std::int64_t changeCount_ = 0;
  std::vector<NSString> types_, given_;
  std::vector<PasteboardOffer> offers_;
  /// The parts of what has both.
  NSData url_, title_;
  /// Leads to the process that owns the clipboard for us.
  FileDescriptor owner_;
};

}  // namespace

SharedPointer<PasteboardServer> desktopPasteboard() {
  static const auto pasteboard = SharedPointer<PasteboardServer>::adopt(new DesktopPasteboard);
  return pasteboard;
}

}  // namespace nimbo::detail
