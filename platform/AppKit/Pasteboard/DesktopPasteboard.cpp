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
constexpr std::uint32_t kMaximumDataBytes = std::uint32_t{512} << 20;
/// What stands in front of data that are read.
constexpr std::uint32_t kMaximumNameBytes = 1 << 16;
/// Stands in the place of the number of bytes of data that there will not be.
constexpr std::uint32_t kMissing = UINT32_MAX;

/// Whether it is a title that stands beside a URL.
bool isTitle(const NSString &type) {
  return std::ranges::any_of(
      targetsToRead(type), [](const PasteboardTarget &target) { return target.form == TargetForm::titleLine; });
}

std::vector<NSString> namesOf(const std::vector<PasteboardTarget> &targets) {
  std::vector<NSString> names(targets.size());
  std::ranges::transform(targets, names.begin(), &PasteboardTarget::target);
  return names;
}

/// The clipboard, which a program of its own talks to: each question is a run of it, and what is offered is a
/// process of it, which lives on and gets the data through a socket.
class DesktopPasteboard final : public PasteboardServer {
 public:
  NSString name() const override { return u"general"_ns; }

  bool isAvailable(NSError *error) const override { return run(u"check"_ns, {}, -1, error).has_value(); }

  std::int64_t changeCount() const override {
    const std::scoped_lock lock(mutex_);
    return changeCount_;
  }

  std::vector<NSString> types(NSError *error) const override {
    const auto output = run(u"types"_ns, {}, -1, error);
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
    std::vector<PasteboardTarget> offered = targetsToOffer(types);
    if (!run(u"own"_ns, namesOf(offered), feed.get(), error)) return false;
    ++changeCount_;
    types_.assign(types.begin(), types.end());
    offered_ = std::move(offered);
    given_.clear();
    url_ = title_ = NSData();
    owner_ = std::move(own);
    return true;
  }

  bool setData(const NSData &data, const NSString &type, NSError *error) override {
    const std::scoped_lock lock(mutex_);
    if (std::ranges::find(types_, type) == types_.end()) {
      setError(error, ErrorCode::unsupportedType, "the type has not been declared");
      return false;
    }
    if (data.length() > kMaximumDataBytes) {
      setError(error, ErrorCode::tooLarge, "these data are too large for the clipboard");
      return false;
    }
    if (isTitle(type)) {
      title_ = data;
      if (!sendURLLines(error)) return false;
    }
    for (const PasteboardTarget &target : offered_) {
      if (target.type != type) continue;
      if (target.form == TargetForm::URLLine) {
        url_ = data;
        if (!sendURLLines(error)) return false;
      } else if (!send(target.target, dataForTarget(target, data), error)) {
        return false;
      }
    }
    given_.push_back(type);
    return true;
  }

  NSData dataForType(const NSString &type, NSError *error) const override {
    if (isOnlyDeclared(type)) {
      setError(error, ErrorCode::incomplete, "the clipboard holds no data of this type");
      return {};
    }
    const std::vector<PasteboardTarget> targets = targetsToRead(type);
    const auto output = run(u"read"_ns, namesOf(targets), -1, error);
    if (!output) return {};
    const auto nameBytes =
        static_cast<std::uint32_t>(std::min(output->view().find('\n'), output->view().size()));
    const NSString name = NSString::stringWithLossyUTF8String(output->view().substr(0, nameBytes));
    const auto target = std::ranges::find(targets, name, &PasteboardTarget::target);
    return target == targets.end()
               ? NSData()
               : dataFromTarget(*target, output->subdataWithRange({nameBytes + 1, output->length()}), error);
  }

 private:
  /// What the program writes; nothing when it fails: `*error` says why. It reads the input, unless that is
  /// negative.
  static std::optional<NSData> run(const NSString &command, const std::vector<NSString> &targets, int input,
                                   NSError *error) {
    NSTask task{
        .launchPath = NSString::stringWithFileSystemRepresentation(installedProgram("quiverleaf-pasteboard")),
        .arguments = {command, NSString::stringWithUTF8String(std::to_string(kStepSeconds))},
        .standardInputDescriptor = input,
        .deadline = Deadline::after(kWholeSeconds),
        .maximumOutputBytes = kMaximumDataBytes + kMaximumNameBytes,
        .standardOutput = NSTask::Output::collected};
    if (task.launchPath.length() == 0) {
      setError(error, ErrorCode::unsupportedType, "the program that talks to the clipboard is not installed");
      return std::nullopt;
    }
    task.arguments.insert(task.arguments.end(), targets.begin(), targets.end());
    const auto result = task.run(error);
    if (!result) return std::nullopt;
    if (result->terminationStatus == 0) return result->standardOutput;
    if (result->standardError.length() == 0)
      setError(error, ErrorCode::other, "the program that talks to the clipboard failed");
    else
      setError(error, static_cast<ErrorCode>(result->terminationStatus), result->standardError.view());
    return std::nullopt;
  }

  /// Whether this process has promised data of the type that it has not given.
  bool isOnlyDeclared(const NSString &type) const {
    const std::scoped_lock lock(mutex_);
    return isOwner() && std::ranges::find(types_, type) != types_.end() &&
           std::ranges::find(given_, type) == given_.end();
  }

  /// Whether nobody else has copied anything since.
  bool isOwner() const {
    pollfd owner = {owner_.get(), POLLRDHUP, 0};
    return owner_ && ::poll(&owner, 1, 0) == 0;
  }

  /// Sends the URL with its title, as soon as both are there that have been declared.
  bool sendURLLines(NSError *error) {
    const auto lines = std::ranges::find(offered_, TargetForm::URLLine, &PasteboardTarget::form);
    if (lines == offered_.end() || !url_ || (!title_ && std::ranges::any_of(types_, isTitle))) return true;
    return send(lines->target, URLLines(url_, title_), error);
  }

  /// Gives the owner the data of a target, nil for none.
  bool send(const NSString &target, const NSData &data, NSError *error) {
    const std::string name = target.UTF8String() + "\n";
    const std::uint32_t numbers[] = {static_cast<std::uint32_t>(name.size()), data ? data.length() : kMissing};
    std::string head(sizeof numbers, '\0');
    std::memcpy(head.data(), numbers, sizeof numbers);
    const Deadline deadline = Deadline::after(kSendingSeconds);
    return sendAll(head + name, deadline, error) && sendAll(data.view(), deadline, error);
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
                        : "another program has copied something since");
        return false;
      }
      pollfd waited = {owner_.get(), POLLOUT, 0};
      ::poll(&waited, 1, deadline.remainingMilliseconds());
    }
    return true;
  }

  mutable std::mutex mutex_;
  std::int64_t changeCount_ = 0;
  std::vector<NSString> types_, given_;
  std::vector<PasteboardTarget> offered_;
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
