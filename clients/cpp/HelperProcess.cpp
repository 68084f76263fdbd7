// SPDX-License-Identifier: Apache-2.0
#include "clients/cpp/HelperProcess.hpp"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>

extern "C" {  // glibc 2.36 forgets it.
#include <sys/pidfd.h>
}

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <thread>
#include <vector>

#include "clients/cpp/AbsolutePath.hpp"
#include "platform/Foundation/Connection/ConnectionName.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo {
namespace {

using Seconds = std::chrono::duration<double>;

/// How long a helper may take to start and register; a client that waits for another one to do this waits as
/// long.
constexpr Seconds kStartLimit{5};
constexpr Seconds kKillLimit{5};
constexpr std::chrono::milliseconds kRetryInterval{5};

/// The children that `startHelper` made and whose exit status has not been taken. They outlive the client that
/// started them, so whoever looks next takes it.
class Children {
 public:
  void add(pid_t child) {
    const std::lock_guard guard(mutex_);
    children_.push_back(child);
  }
  void reap() {
    const std::lock_guard guard(mutex_);
    std::erase_if(children_, [](pid_t child) {
      const pid_t ended = ::waitpid(child, nullptr, WNOHANG);
      return ended == child || (ended < 0 && errno == ECHILD);
    });
  }

 private:
  std::mutex mutex_;
  std::vector<pid_t> children_;
};

Children &children() {
  static Children list;
  return list;
}

class SpawnSettings {
 public:
  SpawnSettings() {
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_init(&attributes);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
      ::posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    // What the client left open for its own children is not the helper's, and would never be closed.
    ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    ::posix_spawn_file_actions_addchdir_np(&actions, "/");
    sigset_t signals;
    ::sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes, &signals);
    ::sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&attributes, &signals);
    ::posix_spawnattr_setflags(&attributes,
                               POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  SpawnSettings(const SpawnSettings &) = delete;
  SpawnSettings &operator=(const SpawnSettings &) = delete;
  ~SpawnSettings() {
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
  }

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
};

HelperProcess spawn(const std::string &path, const std::vector<std::string> &options, std::string *message) {
  std::string program = absolutePath(path, message);
  if (program.empty()) return {};
  std::vector<std::string> words = {program};
  words.insert(words.end(), options.begin(), options.end());
  std::vector<char *> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string &word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const SpawnSettings settings;
  pid_t child = 0;
  const int failure = ::posix_spawn(&child, program.c_str(), &settings.actions, &settings.attributes,
                                    arguments.data(), environ);
  if (failure != 0) {
    *message = "Cannot start " + program + ": " + std::strerror(failure);
    return {};
  }
  children().add(child);
  HelperProcess process = {child, FileDescriptor(::pidfd_open(child, 0))};
  if (!process) *message = program + " ended before it answered";
  return process;
}

FileDescriptor takeStartLock(const NSString &name, const Deadline &deadline, std::string *message) {
  NSString error;
  const FileDescriptor folder = openConnectionFolder(&error);
  const auto fileName = name.fileSystemRepresentation();
  FileDescriptor lock;
  if (folder && fileName)
    lock = FileDescriptor(::openat(folder.get(), (*fileName + ".start").c_str(),
                                   O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!lock) {
    *message = error      ? error.UTF8String()
               : fileName ? std::string("Cannot open the lock of the name: ") + std::strerror(errno)
                          : "The name cannot be the name of a socket";
    return lock;
  }
  if (isOccupied(name)) {
    *message = "A file that is no socket has the name of the connection";
    return FileDescriptor();
  }
  while (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
    if (deadline.isOver()) {
      *message = "Another client has been starting a helper for too long";
      return FileDescriptor();
    }
    std::this_thread::sleep_for(kRetryInterval);
  }
  return lock;
}

}  // namespace

bool HelperProcess::waitUntilEnded(Seconds limit) const {
  const Deadline deadline = Deadline::after(limit.count());
  pollfd ended = {handle.get(), POLLIN, 0};
  while (ended.revents == 0) {
    const int result = ::poll(&ended, 1, deadline.remainingMilliseconds());
    if (result == 0 || (result < 0 && errno != EINTR)) return false;
  }
  children().reap();
  return true;
}

void HelperProcess::sendSignal(int signal) const {
  ::pidfd_send_signal(handle.get(), signal, nullptr, 0);
}

void HelperProcess::endByForce() const {
  sendSignal(SIGKILL);
  waitUntilEnded(kKillLimit);
}

bool HelperProcess::isProgramGone(const std::string &path) const {
  struct stat running = {}, present = {};
  if (::stat(("/proc/" + std::to_string(number) + "/exe").c_str(), &running) != 0) return false;
  return ::stat(path.c_str(), &present) != 0 || present.st_dev != running.st_dev ||
         present.st_ino != running.st_ino;
}

bool isConnectionStale(const FileDescriptor &socket) {
  pollfd state = {socket.get(), 0, 0};
  return ::poll(&state, 1, 0) != 0;
}

HelperConnection connectToHelper(const NSString &name, Seconds limit, bool *isBusy) {
  const Deadline deadline = Deadline::after(limit.count());
  for (;;) {
    HelperConnection connection;
    connection.socket = connectToConnectionName(name, deadline.remaining(), isBusy);
    if (!connection) return connection;
    const int number = peerProcessIdentifier(connection.socket);
    connection.process = {number, FileDescriptor(::pidfd_open(number, 0))};
    if (!connection.process) return {};
    // While the connection stands the number has not been given to another process.
    if (!isConnectionStale(connection.socket)) return connection;
    // The helper is ending, or is in such demand that this connection had to make way.
    if (deadline.isOver()) return {};
    std::this_thread::sleep_for(kRetryInterval);
  }
}

HelperConnection startHelper(const NSString &name, const std::string &path,
                             const std::vector<std::string> &arguments, std::string *message) {
  const Deadline deadline = Deadline::after(kStartLimit.count());
  children().reap();
  const FileDescriptor lock = takeStartLock(name, deadline, message);
  if (!lock) return {};
  HelperConnection connection = connectToHelper(name, Seconds::zero());
  if (connection) return connection;
  const HelperProcess child = spawn(path, arguments, message);
  if (!child) return {};
  for (;;) {
    connection = connectToHelper(name, Seconds(deadline.remaining()));
    if (connection) {
      // Somebody else's helper was first; ours would idle for ever.
      if (connection.process.number != child.number) child.endByForce();
      return connection;
    }
    if (child.waitUntilEnded(kRetryInterval)) {
      *message = path + " ended before it answered";
      return {};
    }
    if (deadline.isOver()) {
      child.endByForce();
      *message = path + " does not answer";
      return {};
    }
  }
}

}  // namespace nimbo
