// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Confinement.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A program that reads untrusted bytes, and what it is started with. Its environment is what stands here and
/// PATH, HOME, TMPDIR and LANG; its home and its working directory are the first writable folder. It is a plain
/// value.
struct ChildProgram {
  /// How many bytes a program may write to its standard output unless it is said otherwise.
  static constexpr std::uint32_t kMaximumOutputBytes = 16 << 20;

  /// An absolute path; the search path is not used.
  NSString launchPath;
  /// The arguments behind the program's name.
  std::vector<NSString> arguments = {};
  /// More of the environment, names and values.
  std::vector<std::pair<NSString, NSString>> environment = {};
  /// How many bytes it may write to its standard output.
  std::uint32_t maximumOutputBytes = kMaximumOutputBytes;
};

/// What came of a child that ended by itself. It is a plain value.
struct ChildResult {
  /// The exit code, or 128 + the number of the signal that ended the program.
  int terminationStatus = 0;
  /// What it wrote to its standard output.
  NSData standardOutput;
  /// The end of what it wrote to its standard error.
  NSString standardError;
  /// The names of the system calls that were refused, where they can be named.
  std::vector<std::string> refusedCalls;
  /// The processor time that the program used, without that of its own children.
  double processorSeconds = 0;
};

/// A confined child process with all that it starts, which ends when this object does, or when this process
/// dies in whatever way. One that is waited for runs to its end; one that is asked stays warm between
/// questions: its standard input is a socket of packets, where it reads a request and writes its reply, and
/// reads the end when it is no longer needed.
///
///     auto child = ChildProcess::start({.launchPath = u"/usr/bin/gs"_ns, .arguments = arguments},
///                                      {.writableFolders = {folder.path()}}, &error);
///     const auto result = child ? child->waitUntilExit(Deadline::after(5), &error) : std::nullopt;
///     if (!result || result->terminationStatus != 0) return nil;
///
/// Between this process and the program stands a supervisor, a copy of this process without its files and
/// connections; it is the first of a process namespace where the system has them. One thread uses a child at a
/// time; it may be another one than that which started it.
class ChildProcess {
 public:
  /// How long a request or a reply may be, in bytes.
  static constexpr std::size_t kMaximumMessageBytes = 64 << 10;
  /// How much of the end of the standard error is kept, in bytes.
  static constexpr std::size_t kStandardErrorBytes = 16 << 10;

  /// Starts a program. Null when it cannot be started, or when this system has nothing to confine it with;
  /// `*error` says why: `noSuchFile` or `unreadable` for the program.
  static std::unique_ptr<ChildProcess> start(const ChildProgram &program, const Confinement &confinement,
                                             NSError *error = nullptr);
  ~ChildProcess();
  ChildProcess(const ChildProcess &) = delete;
  ChildProcess &operator=(const ChildProcess &) = delete;

  /// Sends a request and waits for the reply. Nothing when the child does not reply by the deadline or dies;
  /// `*error` says why, with the end of its standard error. It is then ended.
  std::optional<std::string> exchange(std::string_view request, const Deadline &deadline,
                                      NSError *error = nullptr);
  /// Tells the child that no more requests come and waits until it has ended, and then ends what it left
  /// running. Nothing when it does not keep within its limits of time and output; `*error` says so:
  /// `timeLimit`, `tooLarge`. It is then ended.
  std::optional<ChildResult> waitUntilExit(const Deadline &deadline, NSError *error = nullptr);
  /// Ends the child and all that it started, and waits until they are gone.
  void terminate();

  /// Whether the program has not ended, as far as it is known without waiting.
  bool isRunning();
  /// What is in force.
  const Protections &protections() const NIMBO_LIFETIMEBOUND { return protections_; }
  /// Why the child ended, as a clause: "the program was ended by signal 11 (Segmentation fault): ...". Empty
  /// while it runs.
  std::string reasonOfEnd() const;

 private:
  struct Pipes;
  struct State;
  enum class Event { message, ended, timeLimit, tooMuch };

  explicit ChildProcess(std::unique_ptr<State> state);
  Event waitForEvent(const Deadline &deadline, bool wantsMessage);
  void fail(Event event, NSError *error);

  std::unique_ptr<State> state_;
  Protections protections_;
};

}  // namespace nimbo
