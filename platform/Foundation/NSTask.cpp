// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSTask.hpp"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>
#include <system_error>

#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/PipeReading.hpp"

namespace nimbo {
namespace {

constexpr std::size_t kHandledBytes = 1 << 16;

/// What a program is started with, as the system takes it.
struct Launch {
  std::string program;
  std::vector<std::string> arguments;
  std::optional<std::vector<std::string>> environment;
  std::string folder;
};

/// The descriptors by their numbers in the program; where there is none, /dev/null or, if `inherits`, this
/// process's own.
struct Streams {
  std::array<FileDescriptor, 3> descriptors;
  std::array<bool, 3> inherits = {};
};

std::vector<char *> pointersTo(const std::vector<std::string> &texts) {
  std::vector<char *> pointers;
  pointers.reserve(texts.size() + 1);
  for (const std::string &text : texts) pointers.push_back(const_cast<char *>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

/// What `posix_spawn` is told to do before the program runs.
class SpawnActions {
 public:
  SpawnActions() { failure_ = ::posix_spawn_file_actions_init(&actions_); }
  SpawnActions(const SpawnActions &) = delete;
  SpawnActions &operator=(const SpawnActions &) = delete;
  ~SpawnActions() { ::posix_spawn_file_actions_destroy(&actions_); }

  void connect(const Streams &streams) {
    for (int number = 0; number < 3 && !failure_; ++number) {
      const auto index = static_cast<std::size_t>(number);
      if (streams.descriptors[index])
        failure_ = ::posix_spawn_file_actions_adddup2(&actions_, streams.descriptors[index].get(), number);
      else if (!streams.inherits[index])
        failure_ = ::posix_spawn_file_actions_addopen(&actions_, number, "/dev/null",
                                                      number == STDIN_FILENO ? O_RDONLY : O_WRONLY, 0);
    }
  }
  void enter(const std::string &folder) {
    if (!failure_ && !folder.empty())
      failure_ = ::posix_spawn_file_actions_addchdir_np(&actions_, folder.c_str());
  }
  /// 0, or the number of the first error.
  int failure() const { return failure_; }
  const posix_spawn_file_actions_t *get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_ = {};
  int failure_ = 0;
};

/// A child process, leader of a process group of its own; it is killed with the group and reaped when nobody
/// has waited.
class Child {
 public:
  Child() = default;
  Child(const Child &) = delete;
  Child &operator=(const Child &) = delete;
  ~Child() {
    if (pid_ <= 0) return;
    ::kill(-pid_, SIGKILL);
    wait();
  }

  /// 0, or the error's number.
  int start(const Launch &launch, const Streams &streams);
  /// Readable when the process has ended.
  int descriptor() const { return descriptor_.get(); }
  /// Nothing when the status is lost: this process ignores SIGCHLD, or another thread has waited for any child.
  std::optional<int> wait() {
    int status = 0;
    pid_t waited = 0;
    do waited = ::waitpid(pid_, &status, 0);
    while (waited < 0 && errno == EINTR);
    pid_ = 0;
    if (waited < 0) return std::nullopt;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  }

 private:
  pid_t pid_ = 0;
  FileDescriptor descriptor_;
};

int Child::start(const Launch &launch, const Streams &streams) {
  const std::vector<char *> argv = pointersTo(launch.arguments);
  const std::vector<char *> own = launch.environment ? pointersTo(*launch.environment) : std::vector<char *>();
  SpawnActions actions;
  actions.connect(streams);
  actions.enter(launch.folder);
  if (actions.failure()) return actions.failure();
  posix_spawnattr_t attributes;
  if (const int failure = ::posix_spawnattr_init(&attributes)) return failure;
  sigset_t none;
  sigset_t all;
  ::sigemptyset(&none);
  ::sigfillset(&all);
  ::posix_spawnattr_setsigmask(&attributes, &none);
  ::posix_spawnattr_setsigdefault(&attributes, &all);
  ::posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  const int failure = ::posix_spawn(&pid_, launch.program.c_str(), actions.get(), &attributes, argv.data(),
                                    launch.environment ? own.data() : environ);
  ::posix_spawnattr_destroy(&attributes);
  if (failure) {
    pid_ = 0;
    return failure;
  }
  // The C library's own declaration of it is not usable from C++.
  descriptor_ = FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, pid_, 0)));
  return descriptor_ ? 0 : errno;
}

/// The descriptor under a number above those of the standard streams, which connecting them cannot overwrite.
FileDescriptor aboveStandardStreams(FileDescriptor descriptor) {
  if (!descriptor || descriptor.get() > STDERR_FILENO) return descriptor;
  return FileDescriptor(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

/// A file in memory for the program to read: unlike a pipe it takes all at once, and nobody has to write on.
FileDescriptor inputFile(const NSData &data) {
  FileDescriptor file = aboveStandardStreams(FileDescriptor(::memfd_create("input", MFD_CLOEXEC)));
  if (!file || !writeAll(file.get(), data.view()) || ::lseek(file.get(), 0, SEEK_SET) != 0)
    return FileDescriptor();
  return file;
}

/// What is read of a program's output.
class OutputReader {
 public:
  /// What came of reading on.
  enum class State { open, refused, tooMuch, late };

  /// Begins to read a new pipe, whose other end is answered; nothing, with errno, when there can be none.
  FileDescriptor open() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return FileDescriptor();
    pipe_ = FileDescriptor(ends[0]);
    FileDescriptor writeEnd = aboveStandardStreams(FileDescriptor(ends[1]));
    return ::fcntl(pipe_.get(), F_SETFL, O_NONBLOCK) == 0 ? std::move(writeEnd) : FileDescriptor();
  }
  /// Negative when there is nothing to be read any more.
  int descriptor() const { return pipe_.get(); }
  NSData data() const { return NSData::dataWithBytes(bytes_.data(), bytes_.size()); }

  /// Collects what the pipe has now, within the limit.
  State collect(std::size_t limit) {
    const auto state = detail::readAvailable(pipe_.get(), bytes_, limit);
    if (state == detail::PipeReading::ended) pipe_.close();
    return state == detail::PipeReading::tooMuch ? State::tooMuch : State::open;
  }
  /// Hands over what the pipe has now.
  State handOver(const std::function<bool(std::string_view)> &handler, const Deadline &deadline) {
    for (auto state = detail::PipeReading::tooMuch; state == detail::PipeReading::tooMuch;) {
      if (deadline.isOver()) return State::late;
      state = detail::readAvailable(pipe_.get(), bytes_, kHandledBytes);
      if (state == detail::PipeReading::ended) pipe_.close();
      if (!bytes_.empty() && !handler(bytes_)) return State::refused;
      bytes_.clear();
    }
    return State::open;
  }

 private:
  FileDescriptor pipe_;
  std::string bytes_;
};

/// The text as the system takes it, which may be empty; nothing when it can be none.
std::optional<std::string> systemText(const NSString &text) {
  return text.length() == 0 ? std::string() : text.fileSystemRepresentation();
}

/// Nothing when there is something that the system cannot be given; `*error` says what.
std::optional<Launch> launchOf(const NSTask &task, NSError *error) {
  const auto fail = [error](std::string_view reason, ErrorCode code = ErrorCode::other) {
    setError(error, code, reason);
    return std::nullopt;
  };
  const auto program = task.launchPath.fileSystemRepresentation();
  if (!program || program->front() != '/') return fail("the program has no absolute path");
  Launch launch{.program = *program, .arguments = {*program}, .environment = {}, .folder = {}};
  for (const NSString &argument : task.arguments) {
    auto text = systemText(argument);
    if (!text) return fail("an argument is none that a program can be given");
    launch.arguments.push_back(std::move(*text));
  }
  if (task.environment) launch.environment.emplace();
  for (const auto &[name, value] : task.environment.value_or(std::vector<std::pair<NSString, NSString>>())) {
    const auto nameText = name.fileSystemRepresentation(), valueText = systemText(value);
    if (!nameText || nameText->find('=') != std::string::npos || !valueText)
      return fail("the environment is none that a program can be given");
    launch.environment->push_back(*nameText + "=" + *valueText);
  }
  if (!task.currentDirectoryPath) return launch;
  bool isFolder = false;
  NSFileManager::fileExistsAtPath(task.currentDirectoryPath, &isFolder);
  if (!isFolder) return fail("there is no such folder to run the program in", ErrorCode::noSuchFile);
  launch.folder = task.currentDirectoryPath.fileSystemRepresentation().value();
  return launch;
}

}  // namespace

std::optional<NSTask::Result> NSTask::run(NSError *error) const {
  const auto fail = [error](ErrorCode code, std::string_view reason) {
    setError(error, code, reason);
    return std::nullopt;
  };
  const auto failCall = [&fail](int number) {
    return fail(ErrorCode::other, "the program cannot be run: " + std::generic_category().message(number));
  };
  const auto failLate = [&fail] {
    return fail(ErrorCode::timeLimit, "the program took longer than its time limit");
  };
  const auto launch = launchOf(*this, error);
  if (!launch) return std::nullopt;

  Streams streams;
  OutputReader output, errors;
  const bool readsOutput = outputHandler || standardOutput == Output::collected;
  const bool readsErrors = standardError == Output::collected;
  streams.inherits = {false, standardOutput == Output::inherited, standardError == Output::inherited};
  auto &[input, outputEnd, errorEnd] = streams.descriptors;
  if (standardInputDescriptor >= 0)
    input = FileDescriptor(::fcntl(standardInputDescriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  else if (standardInput)
    input = inputFile(standardInput);
  if ((standardInputDescriptor >= 0 || standardInput) && !input) return failCall(errno);
  if (readsOutput && !(outputEnd = output.open())) return failCall(errno);
  if (readsErrors && !(errorEnd = errors.open())) return failCall(errno);
  Child child;
  if (const int failure = child.start(*launch, streams)) {
    if (failure == ENOENT) return fail(ErrorCode::noSuchFile, "there is no such program");
    return failure == EACCES ? fail(ErrorCode::unreadable, "the program may not be run") : failCall(failure);
  }
  for (FileDescriptor &descriptor : streams.descriptors) descriptor.close();

  for (bool ended = false; !ended;) {
    if (deadline.isOver()) return failLate();
    struct pollfd waited[] = {
        {child.descriptor(), POLLIN, 0}, {output.descriptor(), POLLIN, 0}, {errors.descriptor(), POLLIN, 0}};
    if (::poll(waited, std::size(waited), deadline.remainingMilliseconds()) < 0 && errno != EINTR)
      return failCall(errno);
    // Whether it has ended is looked at before the pipes are read: what it wrote last is then not missed.
    ended = waited[0].revents != 0;
    auto state = OutputReader::State::open;
    if (output.descriptor() >= 0)
      state = outputHandler ? output.handOver(outputHandler, deadline) : output.collect(maximumOutputBytes);
    if (state == OutputReader::State::open && errors.descriptor() >= 0)
      state = errors.collect(maximumOutputBytes);
    if (state == OutputReader::State::tooMuch)
      return fail(ErrorCode::tooLarge, "the program wrote more than its output limit");
    if (state == OutputReader::State::late) return failLate();
    if (state == OutputReader::State::refused)
      return fail(ErrorCode::other, "what the program wrote was refused");
  }
  const std::optional<int> status = child.wait();
  if (!status) return fail(ErrorCode::other, "how the program has ended cannot be learned");
  const bool keepsOutput = readsOutput && !outputHandler;
  return Result{*status, keepsOutput ? output.data() : NSData(), readsErrors ? errors.data() : NSData()};
}

}  // namespace nimbo
