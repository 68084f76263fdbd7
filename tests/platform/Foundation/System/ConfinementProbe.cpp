// SPDX-License-Identifier: Apache-2.0
//
// Tries what a confined program must not do, or may, and prints "done" or "refused: WHY":  confinement-probe
// WHAT [WHERE]
#include <arpa/inet.h>
#include <dirent.h>
#include <fcntl.h>
#include <linux/capability.h>
#include <netinet/in.h>
#include <sched.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace {

using std::string;

bool connectTo(int type, int port) {
  const int file = ::socket(AF_INET, type, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return file >= 0 && ::connect(file, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 &&
         ::send(file, "x", 1, MSG_NOSIGNAL) == 1;
}

/// A name that begins with '@' is an abstract one.
bool connectToSocket(const string &name) {
  const int file = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  name.copy(address.sun_path, sizeof address.sun_path - 1);
  if (name.starts_with('@')) address.sun_path[0] = '\0';
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
  return file >= 0 && ::connect(file, reinterpret_cast<sockaddr *>(&address), length) == 0;
}

bool openFile(const string &path, int flags) {
  const int file = ::open(path.c_str(), flags | O_CLOEXEC, 0666);
  char byte = 'x';
  return file >= 0 &&
         ((flags & O_ACCMODE) == O_RDONLY ? ::read(file, &byte, 1) >= 0 : ::write(file, &byte, 1) == 1);
}

bool startProcess() {
  const pid_t process = ::fork();
  if (process == 0) ::_exit(0);
  return process > 0 && ::waitpid(process, nullptr, 0) == process;
}

bool startProcesses(int count) {
  for (int i = 0; i < count; ++i) {
    const pid_t process = ::fork();
    if (process < 0) return false;
    if (process == 0)
      for (;;) ::pause();
  }
  return true;
}

/// Starts a process that leaves its family, its session and its group, and keeps the file locked as long as it
/// lives.
bool leaveLocker(const string &path) {
  if (::fork() == 0) {
    ::setsid();
    if (::fork() != 0) ::_exit(0);
    ::setsid();
    for (int file = 0; file < 3; ++file) ::close(file);
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT, 0600);
    ::flock(file, LOCK_EX);
    [[maybe_unused]] const ssize_t written = ::write(file, "locked", 6);
    for (;;) ::pause();
  }
  struct stat info = {};
  while (::stat(path.c_str(), &info) != 0 || info.st_size == 0) ::usleep(1000);
  return true;
}

bool useMemory(std::size_t bytes) {
  void *memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return false;
  std::memset(memory, 1, bytes);
  return true;
}

bool writeLargeFile(const string &path, std::size_t bytes) {
  ::signal(SIGXFSZ, SIG_IGN);
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT, 0600);
  const std::vector<char> block(1 << 20);
  for (std::size_t written = 0; written < bytes; written += block.size())
    if (::write(file, block.data(), block.size()) != static_cast<ssize_t>(block.size())) return false;
  return true;
}

bool openManyFiles(int count) {
  for (int i = 0; i < count; ++i)
    if (::open("/dev/null", O_RDONLY) < 0) return false;
  return true;
}

/// Whether there is any privilege to use or to get.
bool hasPrivileges() {
  __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3] = {};
  ::syscall(SYS_capget, &header, data);
  errno = EPERM;
  return ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) != 1 || data[0].effective != 0 || data[1].effective != 0 ||
         data[0].permitted != 0;
}

bool hasDescriptors() {
  for (int file = 3; file < 1024; ++file)
    if (::fcntl(file, F_GETFD) >= 0) return true;
  return false;
}

[[noreturn]] void serve() {
  char request[4096];
  for (;;) {
    const ssize_t got = ::read(STDIN_FILENO, request, sizeof request);
    if (got <= 0) ::_exit(0);
    const string text(request, static_cast<std::size_t>(got));
    if (text == "crash") {
      std::fputs("this went wrong\n", stderr);
      ::socket(AF_INET, SOCK_STREAM, 0);
      std::abort();
    }
    if (text == "hang")
      for (;;) ::pause();
    if (text == "close") ::close(STDIN_FILENO);
    const string reply = text == "long" ? string(100'000, 'x') : "re: " + text;
    ::send(STDIN_FILENO, reply.data(), reply.size(), 0);
  }
}

}  // namespace

int main(int argc, char **argv) {
  const string what = argc > 1 ? argv[1] : "", where = argc > 2 ? argv[2] : "";
  const int number = std::atoi(where.c_str());
  const std::map<string, std::function<bool()>> actions = {
      {"tcp", [&] { return connectTo(SOCK_STREAM, number); }},
      {"udp", [&] { return connectTo(SOCK_DGRAM, number); }},
      {"socket", [&] { return connectToSocket(where); }},
      {"pair",
       [] {
         int ends[2];
         return ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0;
       }},
      {"read", [&] { return openFile(where, O_RDONLY); }},
      {"write", [&] { return openFile(where, O_WRONLY); }},
      {"create", [&] { return openFile(where, O_WRONLY | O_CREAT | O_EXCL); }},
      {"truncate", [&] { return ::truncate(where.c_str(), 0) == 0; }},
      {"remove", [&] { return ::unlink(where.c_str()) == 0; }},
      {"rename", [&] { return ::rename(where.c_str(), (where + ".new").c_str()) == 0; }},
      {"folder", [&] { return ::mkdir(where.c_str(), 0700) == 0; }},
      {"link", [&] { return ::symlink("/", where.c_str()) == 0; }},
      {"mode",
       [&] {
         struct stat before = {}, after = {};
         ::stat(where.c_str(), &before);
         const bool isDone = ::chmod(where.c_str(), before.st_mode ^ S_IXOTH) == 0;
         ::stat(where.c_str(), &after);
         errno = isDone ? 0 : errno;
         return before.st_mode != after.st_mode;
       }},
      {"list",
       [&] {
         DIR *folder = ::opendir(where.c_str());
         return folder && ::readdir(folder);
       }},
      {"run",
       [&] {
         ::execl(where.c_str(), where.c_str(), nullptr);
         return false;
       }},
      {"fork", startProcess},
      {"forks", [&] { return startProcesses(number); }},
      {"thread",
       [] {
         std::thread([] {}).join();
         return true;
       }},
      {"leave", [&] { return leaveLocker(where); }},
      {"leave-and-stay",
       [&] {
         leaveLocker(where);
         for (;;) ::pause();
         return true;
       }},
      {"unshare", [] { return ::unshare(CLONE_NEWUSER) == 0; }},
      {"trace", [&] { return ::ptrace(PTRACE_ATTACH, number, 0, 0) == 0; }},
      {"trace-me", [] { return ::ptrace(PTRACE_TRACEME, 0, 0, 0) == 0; }},
      {"signal", [&] { return ::kill(number, 0) == 0; }},
      {"new-call",
       [] {
         constexpr int kMissingInAnyKernel = 511;
         return ::syscall(kMissingInAnyKernel) == 0;
       }},
      {"terminal",
       [&] {
         const char byte = 'x';
         return ::syscall(SYS_ioctl, STDIN_FILENO, std::strtoull(where.c_str(), nullptr, 10), &byte) == 0;
       }},
      {"memory", [&] { return useMemory(std::size_t(number) << 20); }},
      {"large-file", [&] { return writeLargeFile(where, 8 << 20); }},
      {"files", [&] { return openManyFiles(number); }},
      {"privileges", hasPrivileges},
      {"descriptors", hasDescriptors},
      {"spin",
       [] {
         while (::getppid() >= 0) {
         }
         return true;
       }},
      {"output",
       [&] {
         const string block(1 << 16, 'x');
         while (::write(STDOUT_FILENO, block.data(), block.size()) > 0) {
         }
         return true;
       }},
      {"complain",
       [] {
         for (int i = 0; i < 20000; ++i) std::fprintf(stderr, "complaint %d\n", i);
         return true;
       }},
      {"environment",
       [] {
         for (char **text = environ; *text; ++text) std::puts(*text);
         return true;
       }},
      {"serve",
       [] {
         serve();
         return true;
       }},
  };
  const auto action = actions.find(what);
  if (action == actions.end()) return 2;
  errno = 0;
  const bool isDone = action->second();
  std::printf("%s%s\n", isDone ? "done" : "refused: ", isDone ? "" : std::strerror(errno));
  return isDone ? 0 : 1;
}
