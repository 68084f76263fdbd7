// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/ChildProcess.hpp"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "platform/Foundation/System/ChildSupervisor.hpp"
#include "platform/Foundation/System/ConfinementPlan.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/PipeReading.hpp"
#include "platform/Foundation/System/SystemCallFilter.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo {
namespace {

using detail::ChildReport;

/// How long a supervisor may take to end what it is told to end before it is killed itself.
constexpr double kEndingSeconds = 3;
/// How long it may take to start a program; disks can be slow.
constexpr double kStartingSeconds = 30;
/// How much of the standard error a reason shows.
constexpr std::size_t kReasonBytes = 400;

struct Ends {
  FileDescriptor own, childs;
};

/// The own end of neither blocks.
bool makePipe(Ends *ends, bool childWrites) {
  int both[2];
  if (::pipe2(both, O_CLOEXEC) != 0) return false;
  ends->own = FileDescriptor(both[childWrites ? 0 : 1]);
  ends->childs = FileDescriptor(both[childWrites ? 1 : 0]);
  return ::fcntl(ends->own.get(), F_SETFL, O_NONBLOCK) == 0;
}

bool makeSocket(Ends *ends) {
  int both[2];
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, both) != 0) return false;
  ends->own = FileDescriptor(both[0]);
  ends->childs = FileDescriptor(both[1]);
  return ::fcntl(ends->own.get(), F_SETFL, O_NONBLOCK) == 0;
}

std::string messageOf(int number) {
  return std::generic_category().message(number);
}

NSError errorOf(const ChildReport &report) {
  using Stage = ChildReport::Stage;
  const auto make = [&report](std::string_view what) {
    return NSError::errorWithCode(ErrorCode::other, std::string(what) + ": " + messageOf(report.errorNumber));
  };
  switch (report.stage) {
    case Stage::program:
      if (report.errorNumber == ENOENT)
        return NSError::errorWithCode(ErrorCode::noSuchFile, "there is no such program");
      if (report.errorNumber == EACCES)
        return NSError::errorWithCode(ErrorCode::unreadable, "the program may not be run");
      return make("the program cannot be run");
    case Stage::limits:
      return make("the limits of a child process cannot be set");
    case Stage::privileges:
      return make("the privileges of a child process cannot be dropped");
    case Stage::files:
      return make("the files of a child process cannot be confined");
    case Stage::systemCalls:
      return make("the system calls of a child process cannot be filtered");
    default:
      return make("a child process cannot be set up");
  }
}

std::optional<std::string> argumentText(const NSString &argument) {
  return argument.length() == 0 ? std::string() : argument.fileSystemRepresentation();
}

}  // namespace

/// The ends that lead to the child and to its supervisor.
struct ChildProcess::Pipes {
  Ends messages, output, error, life, reports;

  bool make() {
    return makeSocket(&messages) && makePipe(&output, true) && makePipe(&error, true) &&
           makePipe(&life, false) && makeSocket(&reports);
  }
};

struct ChildProcess::State {
  pid_t supervisor = 0;
  FileDescriptor messages, output, error, life, reports;
  std::string standardOutput, standardError;
  std::size_t outputLimit = 0;
  std::optional<ChildReport> end;

  std::optional<ChildReport> receiveReport() {
    ChildReport report;
    ssize_t got = 0;
    while ((got = ::recv(reports.get(), &report, sizeof report, 0)) < 0 && errno == EINTR) {
    }
    if (got == sizeof report) return report;
    // A supervisor that was killed has none more.
    if (got >= 0 || errno != EAGAIN) reports.close();
    return std::nullopt;
  }
  /// Keeps the end of the standard error.
  void readError() {
    auto reading = detail::PipeReading::tooMuch;
    while (error && reading == detail::PipeReading::tooMuch) {
      reading = detail::readAvailable(error.get(), standardError, kStandardErrorBytes);
      if (standardError.size() > kStandardErrorBytes)
        standardError.erase(0, standardError.size() - kStandardErrorBytes);
    }
    if (reading == detail::PipeReading::ended) error.close();
  }
  detail::PipeReading readOutput() {
    const auto reading =
        output ? detail::readAvailable(output.get(), standardOutput, outputLimit) : detail::PipeReading::ended;
    if (reading == detail::PipeReading::ended) output.close();
    return reading;
  }
  void reap(double patienceSeconds) {
    if (supervisor <= 0) return;
    const FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, supervisor, 0)));
    const Deadline deadline = Deadline::after(patienceSeconds);
    pollfd waited = {process.get(), POLLIN, 0};
    int ready = 0;
    do ready = ::poll(&waited, 1, deadline.remainingMilliseconds());
    while (ready < 0 && errno == EINTR);
    if (ready <= 0) ::kill(supervisor, SIGKILL);
    while (::waitpid(supervisor, nullptr, 0) < 0 && errno == EINTR) {
    }
    supervisor = 0;
  }
};

ChildProcess::ChildProcess(std::unique_ptr<State> state) : state_(std::move(state)) {}

ChildProcess::~ChildProcess() {
  terminate();
}

std::unique_ptr<ChildProcess> ChildProcess::start(const ChildProgram &program, const Confinement &confinement,
                                                  NSError *error) {
  const auto fail = [error](ErrorCode code, std::string_view reason) {
    setError(error, code, reason);
    return nullptr;
  };
  detail::SupervisedProgram started;
  const auto path = program.launchPath.fileSystemRepresentation();
  if (!path || path->front() != '/') return fail(ErrorCode::other, "the program has no absolute path");
  started.path = *path;
  started.arguments = {*path};
  for (const NSString &argument : program.arguments) {
    auto text = argumentText(argument);
    if (!text) return fail(ErrorCode::other, "an argument is none that a program can be given");
    started.arguments.push_back(*std::move(text));
  }
  const detail::ConfinementPlan plan(confinement);
  started.folder = plan.writableFolders().empty() ? "/" : plan.writableFolders().front();
  started.environment = {"PATH=/usr/bin:/bin", "LANG=C.UTF-8", "HOME=" + started.folder,
                         "TMPDIR=" + started.folder};
  for (const auto &[name, value] : program.environment) {
    const auto left = name.fileSystemRepresentation(), right = argumentText(value);
    if (!left || !right) return fail(ErrorCode::other, "a variable is none that a program can be given");
    started.environment.push_back(*left + "=" + *right);
  }

  for (bool usesNamespaces = confinement.usesNamespaces;; usesNamespaces = false) {
    Pipes pipes;
    if (!pipes.make()) return fail(ErrorCode::other, "a child process cannot be set up: " + messageOf(errno));
    started.input = pipes.messages.childs.get();
    started.output = pipes.output.childs.get();
    started.error = pipes.error.childs.get();
    started.life = pipes.life.childs.get();
    started.reports = pipes.reports.childs.get();
    auto state = std::make_unique<State>();
    state->supervisor = detail::startSupervisor(started, plan, usesNamespaces);
    if (state->supervisor < 0) {
      // The system has no such namespaces, or forbids them.
      if (usesNamespaces) continue;
      return fail(ErrorCode::other, "a child process cannot be started: " + messageOf(errno));
    }
    state->messages = std::move(pipes.messages.own);
    state->output = std::move(pipes.output.own);
    state->error = std::move(pipes.error.own);
    state->life = std::move(pipes.life.own);
    state->reports = std::move(pipes.reports.own);
    state->outputLimit = program.maximumOutputBytes;
    for (Ends *ends : {&pipes.messages, &pipes.output, &pipes.error, &pipes.life, &pipes.reports})
      ends->childs.close();
    std::unique_ptr<ChildProcess> child(new ChildProcess(std::move(state)));
    pollfd waited = {child->state_->reports.get(), POLLIN, 0};
    const Deadline deadline = Deadline::after(kStartingSeconds);
    while (::poll(&waited, 1, deadline.remainingMilliseconds()) < 0 && errno == EINTR) {
    }
    const auto report = child->state_->receiveReport();
    if (!report) return fail(ErrorCode::other, "a child process did not start");
    if (report->kind == ChildReport::Kind::failed) {
      if (report->stage == ChildReport::Stage::namespaces) continue;
      if (error) *error = errorOf(*report);
      return nullptr;
    }
    if (report->kind == ChildReport::Kind::ended)
      return fail(ErrorCode::other, "a child process did not start");
    child->protections_ = report->protections;
    if (!child->protections_.writing && !child->protections_.network)
      return fail(ErrorCode::other, "this system has nothing to confine a program with");
    return child;
  }
}

bool ChildProcess::isRunning() {
  if (!state_->end && state_->reports) state_->end = state_->receiveReport();
  return !state_->end && state_->reports;
}

ChildProcess::Event ChildProcess::waitForEvent(const Deadline &deadline, bool wantsMessage) {
  State &state = *state_;
  while (isRunning()) {
    if (deadline.isOver()) return Event::timeLimit;
    pollfd waited[] = {{state.reports.get(), POLLIN, 0},
                       {state.error.get(), POLLIN, 0},
                       {state.output.get(), POLLIN, 0},
                       {wantsMessage ? state.messages.get() : -1, POLLIN, 0}};
    if (::poll(waited, std::size(waited), deadline.remainingMilliseconds()) < 0) continue;
    if (waited[1].revents) state.readError();
    if (waited[2].revents && state.readOutput() == detail::PipeReading::tooMuch) return Event::tooMuch;
    if (waited[3].revents == 0) continue;
    // The end of the child can be read, too, as a message of no bytes.
    char first = 0;
    const bool hasBytes = ::recv(state.messages.get(), &first, 1, MSG_PEEK | MSG_DONTWAIT) > 0;
    if (hasBytes || waited[3].revents == POLLIN) return Event::message;
    wantsMessage = false;
  }
  // Whatever the child wrote, it has written.
  state.readError();
  return state.readOutput() == detail::PipeReading::tooMuch ? Event::tooMuch : Event::ended;
}

void ChildProcess::fail(Event event, NSError *error) {
  terminate();
  switch (event) {
    case Event::timeLimit:
      return setError(error, ErrorCode::timeLimit, "the program took longer than its time limit");
    case Event::tooMuch:
      return setError(error, ErrorCode::tooLarge, "the program wrote more than its output limit");
    default:
      return setError(error, ErrorCode::other, reasonOfEnd());
  }
}

std::optional<std::string> ChildProcess::exchange(std::string_view request, const Deadline &deadline,
                                                  NSError *error) {
  State &state = *state_;
  if (request.size() > kMaximumMessageBytes) {
    setError(error, ErrorCode::tooLarge, "the request to the program is too long");
    return std::nullopt;
  }
  // The child takes one request at a time, so that there is room for it.
  if (state.messages && isRunning())
    while (::send(state.messages.get(), request.data(), request.size(), MSG_NOSIGNAL) < 0 && errno == EINTR) {
    }
  const Event event = waitForEvent(deadline, true);
  if (event == Event::message) {
    std::string reply(kMaximumMessageBytes, '\0');
    ssize_t got = 0;
    while ((got = ::recv(state.messages.get(), reply.data(), reply.size(), MSG_TRUNC)) < 0 && errno == EINTR) {
    }
    if (got > 0 && static_cast<std::size_t>(got) <= reply.size()) {
      reply.resize(static_cast<std::size_t>(got));
      return reply;
    }
    terminate();
    setError(error, ErrorCode::tooLarge, "the reply of the program is empty or too long");
    return std::nullopt;
  }
  fail(event, error);
  return std::nullopt;
}

std::optional<ChildResult> ChildProcess::waitUntilExit(const Deadline &deadline, NSError *error) {
  State &state = *state_;
  state.messages.close();
  const Event event = waitForEvent(deadline, false);
  if (event != Event::ended || !state.end) {
    fail(event, error);
    return std::nullopt;
  }
  state.reap(kEndingSeconds);
  ChildResult result;
  const int status = state.end->waitStatus;
  result.terminationStatus = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  result.standardOutput = NSData::dataWithBytes(state.standardOutput.data(), state.standardOutput.size());
  result.standardError = NSString::stringWithLossyUTF8String(state.standardError);
  for (std::size_t number = 0; number < state.end->refusedCalls.size(); ++number)
    if (state.end->refusedCalls.test(number))
      result.refusedCalls.push_back(detail::systemCallName(static_cast<int>(number)));
  result.processorSeconds = state.end->processorSeconds;
  return result;
}

void ChildProcess::terminate() {
  state_->messages.close();
  state_->life.close();
  state_->reap(kEndingSeconds);
  isRunning();
  state_->readError();
}

std::string ChildProcess::reasonOfEnd() const {
  const State &state = *state_;
  if (!state.end) return state.reports ? std::string() : "the program was ended from outside";
  const int status = state.end->waitStatus;
  std::string reason = "the program ended with exit code " + std::to_string(WEXITSTATUS(status));
  if (WIFSIGNALED(status)) {
    const int signal = WTERMSIG(status);
    reason = "the program was ended by signal " + std::to_string(signal) + " (" + ::strsignal(signal) + ")";
  }
  const std::string_view said = trimmed(std::string_view(state.standardError), isASCIIWhiteSpace<char>);
  if (!said.empty()) reason.append(": ").append(said.substr(said.size() - std::min(said.size(), kReasonBytes)));
  std::string refused;
  for (std::size_t number = 0; number < state.end->refusedCalls.size(); ++number)
    if (state.end->refusedCalls.test(number))
      refused += (refused.empty() ? "" : ", ") + detail::systemCallName(static_cast<int>(number));
  return refused.empty() ? reason : reason + " (refused: " + refused + ")";
}

}  // namespace nimbo
