// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSTask.hpp"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/PipeReading.hpp"

namespace nimbo {
namespace {

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
  int start(const std::string &program, const std::vector<std::string> &arguments, int standardError);
  /// Readable when the process has ended.
  int descriptor() const { return descriptor_.get(); }
  int wait() {
    int status = 0;
    while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
    }
    pid_ = 0;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  }

 private:
  pid_t pid_ = 0;
  FileDescriptor descriptor_;
};

int Child::start(const std::string &program, const std::vector<std::string> &arguments, int standardError) {
  std::vector<char *> argv = {const_cast<char *>(program.c_str())};
  for (const std::string &argument : arguments) argv.push_back(const_cast<char *>(argument.c_str()));
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  if (const int failure = ::posix_spawn_file_actions_init(&actions)) return failure;
  if (const int failure = ::posix_spawnattr_init(&attributes)) {
    ::posix_spawn_file_actions_destroy(&actions);
    return failure;
  }
  sigset_t none;
  sigset_t all;
  ::sigemptyset(&none);
  ::sigfillset(&all);
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_adddup2(&actions, standardError, STDERR_FILENO);
  ::posix_spawnattr_setpgroup(&attributes, 0);
  ::posix_spawnattr_setsigmask(&attributes, &none);
  ::posix_spawnattr_setsigdefault(&attributes, &all);
  ::posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  const int failure = ::posix_spawn(&pid_, program.c_str(), &actions, &attributes, argv.data(), environ);
  ::posix_spawnattr_destroy(&attributes);
  ::posix_spawn_file_actions_destroy(&actions);
  if (failure) {
    pid_ = 0;
    return failure;
  }
  // The C library's own declaration of it is not usable from C++.
  descriptor_ = FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, pid_, 0)));
  return descriptor_ ? 0 : errno;
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
  const auto program = launchPath.fileSystemRepresentation();
  if (!program || program->front() != '/') return fail(ErrorCode::other, "the program has no absolute path");
  std::vector<std::string> texts;
  for (const NSString &argument : arguments) {
    const auto text = argument.fileSystemRepresentation();
    if (!text && argument.length() != 0)
      return fail(ErrorCode::other, "an argument is none that a program can be given");
    texts.push_back(text.value_or(std::string()));
  }

  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return failCall(errno);
  FileDescriptor readEnd(ends[0]);
  FileDescriptor writeEnd(ends[1]);
  if (::fcntl(readEnd.get(), F_SETFL, O_NONBLOCK) != 0) return failCall(errno);
  Child child;
  if (const int failure = child.start(*program, texts, writeEnd.get())) {
    if (failure == ENOENT) return fail(ErrorCode::noSuchFile, "there is no such program");
    return failure == EACCES ? fail(ErrorCode::unreadable, "the program may not be run") : failCall(failure);
  }
  writeEnd.close();

  std::string output;
  for (bool ended = false; !ended;) {
    if (deadline.isOver()) return fail(ErrorCode::timeLimit, "the program took longer than its time limit");
    struct pollfd waited[2] = {{child.descriptor(), POLLIN, 0}, {readEnd.get(), POLLIN, 0}};
    if (::poll(waited, 2, deadline.remainingMilliseconds()) < 0 && errno != EINTR) return failCall(errno);
    // Whether it has ended is looked at before the pipe is read: what it wrote last is then not missed.
    ended = waited[0].revents != 0;
    if (!readEnd) continue;
    switch (detail::readAvailable(readEnd.get(), output, maximumOutputBytes)) {
      case detail::PipeReading::waiting:
        break;
      case detail::PipeReading::ended:
        readEnd.close();
        break;
      case detail::PipeReading::tooMuch:
        return fail(ErrorCode::tooLarge, "the program wrote more than its output limit");
    }
  }
  const int status = child.wait();
  return Result{status, NSData::dataWithBytes(output.data(), output.size())};
}

}  // namespace nimbo
