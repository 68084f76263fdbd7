// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/ChildSupervisor.hpp"

#include <fcntl.h>
#include <linux/close_range.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <string_view>

namespace nimbo::detail {
namespace {

using Stage = ChildReport::Stage;

/// How a child that could not be set up exits; nobody looks at it.
constexpr int kNotStarted = 127;

std::vector<char *> pointers(const std::vector<std::string> &texts) {
  std::vector<char *> result;
  result.reserve(texts.size() + 1);
  for (const std::string &text : texts) result.push_back(const_cast<char *>(text.c_str()));
  result.push_back(nullptr);
  return result;
}

/// All that is needed behind the fork, where nothing may be allocated.
struct Preparation {
  const SupervisedProgram &program;
  const ConfinementPlan &plan;
  std::vector<char *> arguments = pointers(program.arguments);
  std::vector<char *> environment = pointers(program.environment);
  std::string userMap = mapOf(::geteuid()), groupMap = mapOf(::getegid());
  bool hasNamespaces = false;

  static std::string mapOf(unsigned number) {
    return std::to_string(number) + " " + std::to_string(number) + " 1";
  }
};

bool writeFile(const char *path, std::string_view text) {
  const FileDescriptor file(::open(path, O_WRONLY | O_CLOEXEC));
  return file && ::write(file.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

/// The user and the group stay who they are; groups cannot be changed.
bool mapUser(const Preparation &prepared) {
  return writeFile("/proc/self/uid_map", prepared.userMap) && writeFile("/proc/self/setgroups", "deny") &&
         writeFile("/proc/self/gid_map", prepared.groupMap);
}

/// Makes all mounts read-only but the writable folders, in a mount namespace. False when the system does not
/// let it.
bool protectMounts(const ConfinementPlan &plan) {
  if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
  for (const std::string &folder : plan.writableFolders())
    if (::mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr) != 0) return false;
  // Some systems cover parts of /proc and do not let it be mounted anew.
  ::mount("proc", "/proc", "proc", MS_NOSUID | MS_NODEV | MS_NOEXEC, nullptr);
  struct mount_attr readOnly = {}, writable = {};
  readOnly.attr_set = MOUNT_ATTR_RDONLY;
  writable.attr_clr = MOUNT_ATTR_RDONLY;
  if (::mount_setattr(AT_FDCWD, "/", AT_RECURSIVE, &readOnly, sizeof readOnly) != 0) return false;
  return std::ranges::all_of(plan.writableFolders(), [&writable](const std::string &folder) {
    return ::mount_setattr(AT_FDCWD, folder.c_str(), 0, &writable, sizeof writable) == 0;
  });
}

/// Closes the descriptors from `first` to `last`, or has them closed when a program starts.
void closeDescriptors(unsigned first, unsigned last, bool onlyInPrograms) {
  if (first > last || ::close_range(first, last, onlyInPrograms ? CLOSE_RANGE_CLOEXEC : 0) == 0) return;
  rlimit limit = {};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  const unsigned end = static_cast<unsigned>(std::min<rlim_t>({limit.rlim_cur, last, INT_MAX}));
  for (unsigned descriptor = first; descriptor <= end; ++descriptor) {
    if (onlyInPrograms)
      ::fcntl(static_cast<int>(descriptor), F_SETFD, FD_CLOEXEC);
    else
      ::close(static_cast<int>(descriptor));
  }
}

void closeAllButOwn(const SupervisedProgram &program) {
  int kept[] = {program.input, program.output, program.error, program.life, program.reports};
  std::ranges::sort(kept);
  unsigned next = 0;
  for (const int descriptor : kept) {
    const auto own = static_cast<unsigned>(descriptor);
    if (own > next) closeDescriptors(next, own - 1, false);
    next = own + 1;
  }
  closeDescriptors(next, ~0u, false);
}

/// What the child tells its supervisor before it runs its program.
struct SetUp {
  Stage stage = Stage::setUp;
  int errorNumber = 0;
  Protections protections = {};
};

union DescriptorMessage {
  cmsghdr header;
  char bytes[CMSG_SPACE(sizeof(int))];
};

void sendSetUp(int socket, const SetUp &setUp, const FileDescriptor &listener) {
  iovec bytes = {const_cast<SetUp *>(&setUp), sizeof setUp};
  DescriptorMessage control = {};
  msghdr message = {};
  message.msg_iov = &bytes;
  message.msg_iovlen = 1;
  if (listener) {
    message.msg_control = &control;
    message.msg_controllen = sizeof control;
    control.header.cmsg_level = SOL_SOCKET;
    control.header.cmsg_type = SCM_RIGHTS;
    control.header.cmsg_len = CMSG_LEN(sizeof(int));
    const int descriptor = listener.get();
    std::memcpy(CMSG_DATA(&control.header), &descriptor, sizeof descriptor);
  }
  while (::sendmsg(socket, &message, MSG_NOSIGNAL) < 0 && errno == EINTR) {
  }
}

/// False at the end.
bool receiveSetUp(int socket, SetUp *setUp, FileDescriptor *listener) {
  iovec bytes = {setUp, sizeof *setUp};
  DescriptorMessage control = {};
  msghdr message = {};
  message.msg_iov = &bytes;
  message.msg_iovlen = 1;
  message.msg_control = &control;
  message.msg_controllen = sizeof control;
  ssize_t got = 0;
  while ((got = ::recvmsg(socket, &message, MSG_CMSG_CLOEXEC)) < 0 && errno == EINTR) {
  }
  if (got != sizeof *setUp) return false;
  if (message.msg_controllen >= CMSG_LEN(sizeof(int)) && control.header.cmsg_type == SCM_RIGHTS) {
    int descriptor = -1;
    std::memcpy(&descriptor, CMSG_DATA(&control.header), sizeof descriptor);
    *listener = FileDescriptor(descriptor);
  }
  return true;
}

Stage stageOf(ConfinementPlan::Step step) {
  switch (step) {
    case ConfinementPlan::Step::limits:
      return Stage::limits;
    case ConfinementPlan::Step::privileges:
      return Stage::privileges;
    case ConfinementPlan::Step::files:
      return Stage::files;
    default:
      return Stage::systemCalls;
  }
}

/// Gives the program its three descriptors, whatever numbers they have now; all others close when it starts.
bool takeDescriptors(const SupervisedProgram &program) {
  int moved[3] = {program.input, program.output, program.error};
  for (int &descriptor : moved) descriptor = ::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  for (int number = 0; number < 3; ++number)
    if (::dup2(moved[number], number) < 0) return false;
  closeDescriptors(STDERR_FILENO + 1, ~0u, true);
  return true;
}

/// The rest of a child's life up to its program. `setUpSocket` is above the standard descriptors.
[[noreturn]] void runProgram(const Preparation &prepared, Protections protections, pid_t supervisor,
                             int setUpSocket) {
  const auto fail = [setUpSocket](Stage stage) {
    sendSetUp(setUpSocket, {stage, errno, {}}, FileDescriptor());
    ::_exit(kNotStarted);
  };
  ::prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
  if (::getppid() != supervisor) ::_exit(kNotStarted);
  ::setsid();
  ::umask(S_IRWXG | S_IRWXO);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  if (!takeDescriptors(prepared.program) || ::chdir(prepared.program.folder.c_str()) != 0) fail(Stage::setUp);
  FileDescriptor listener;
  const auto step = prepared.plan.apply(&protections, &listener);
  if (step != ConfinementPlan::Step::none) fail(stageOf(step));
  sendSetUp(setUpSocket, {Stage::program, 0, protections}, listener);
  ::execve(prepared.program.path.c_str(), prepared.arguments.data(), prepared.environment.data());
  fail(Stage::program);
  ::_exit(kNotStarted);
}

/// The supervisor's own life.
class Supervisor {
 public:
  explicit Supervisor(const Preparation &prepared) : prepared_(prepared) {}

  [[noreturn]] void run();

 private:
  void report(ChildReport::Kind kind) {
    report_.kind = kind;
    while (::send(prepared_.program.reports, &report_, sizeof report_, MSG_NOSIGNAL) < 0 && errno == EINTR) {
    }
  }
  [[noreturn]] void fail(Stage stage, int errorNumber) {
    report_.stage = stage;
    report_.errorNumber = errorNumber;
    report(ChildReport::Kind::failed);
    ::_exit(EXIT_SUCCESS);
  }
  void setUpNamespaces();
  void start();
  void hearSetUp();
  void answerRefusal();
  void reap(int options);
  void endAll();

  const Preparation &prepared_;
  ChildReport report_;
  FileDescriptor setUpSocket_, signals_, listener_;
  SetUp setUp_;
  pid_t child_ = 0;
  bool isOver_ = false;
};

void Supervisor::setUpNamespaces() {
  if (!mapUser(prepared_)) fail(Stage::namespaces, errno);
  report_.protections.descendants = true;
  report_.protections.signals = true;
  report_.protections.network = !prepared_.plan.confinement().network;
  // Programs know that they may not write everywhere, but not that a system is read-only.
  if (!prepared_.plan.usesLandlock()) report_.protections.writing = protectMounts(prepared_.plan);
}

void Supervisor::start() {
  const pid_t self = ::getpid();
  int ends[2];
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) fail(Stage::setUp, errno);
  setUpSocket_ = FileDescriptor(ends[0]);
  // The child's end must not stand where its standard descriptors will.
  const FileDescriptor childsEnd(::fcntl(ends[1], F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  ::close(ends[1]);
  child_ = static_cast<pid_t>(::syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0));
  if (child_ < 0) fail(Stage::setUp, errno);
  if (child_ == 0) {
    setUpSocket_.close();
    runProgram(prepared_, report_.protections, self, childsEnd.get());
  }
}

void Supervisor::hearSetUp() {
  if (receiveSetUp(setUpSocket_.get(), &setUp_, &listener_)) {
    if (setUp_.errorNumber == 0) return;
    endAll();
    fail(setUp_.stage, setUp_.errorNumber);
  }
  // The program runs now, or the child has died before it did.
  setUpSocket_.close();
  if (setUp_.stage != Stage::program) return;
  report_.protections = setUp_.protections;
  report(ChildReport::Kind::started);
}

void Supervisor::answerRefusal() {
  seccomp_notif refused = {};
  if (::ioctl(listener_.get(), SECCOMP_IOCTL_NOTIF_RECV, &refused) != 0) {
    // ENOENT: who called is dead.
    if (errno != ENOENT && errno != EINTR) listener_.close();
    return;
  }
  const auto number = static_cast<std::size_t>(refused.data.nr);
  if (number < kSystemCalls) report_.refusedCalls.set(number);
  seccomp_notif_resp answer = {};
  answer.id = refused.id;
  answer.error = -EPERM;
  ::ioctl(listener_.get(), SECCOMP_IOCTL_NOTIF_SEND, &answer);
}

void Supervisor::reap(int options) {
  int status = 0;
  rusage usage = {};
  for (;;) {
    const pid_t ended = ::wait4(-1, &status, options, &usage);
    if (ended < 0 && errno == EINTR) continue;
    if (ended <= 0) return;
    if (ended != child_) continue;
    isOver_ = true;
    report_.waitStatus = status;
    const auto seconds = [](const timeval &time) {
      return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    report_.processorSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
  }
}

/// Kills this process's children, as the system lists them.
void killChildren() {
  const FileDescriptor list(::open("/proc/thread-self/children", O_RDONLY | O_CLOEXEC));
  char digits[4096];
  ssize_t count = 0;
  pid_t process = 0;
  while (list && (count = ::read(list.get(), digits, sizeof digits)) > 0) {
    for (const char digit : std::string_view(digits, static_cast<std::size_t>(count))) {
      if (digit >= '0' && digit <= '9') {
        process = process * 10 + (digit - '0');
      } else if (process > 0) {
        ::kill(process, SIGKILL);
        process = 0;
      }
    }
  }
}

/// Ends the child and all that came of it. Those whose parents die become children of this process, the first
/// of their process namespace, or the one that takes such children in.
void Supervisor::endAll() {
  // Anywhere else, this would be all processes of the user.
  const bool isFirst = prepared_.hasNamespaces && ::getpid() == 1;
  if (isFirst)
    ::kill(-1, SIGKILL);
  else if (child_ > 1)
    ::kill(-child_, SIGKILL);
  for (;;) {
    if (!isFirst) killChildren();
    siginfo_t information = {};
    if (::waitid(P_ALL, 0, &information, WEXITED | WNOWAIT) != 0 && errno == ECHILD) return;
    reap(WNOHANG);
  }
}

void Supervisor::run() {
  ::setsid();
  ::prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0);
  struct sigaction plain = {};
  plain.sa_handler = SIG_DFL;
  for (int signal = 1; signal < NSIG; ++signal) ::sigaction(signal, &plain, nullptr);
  closeAllButOwn(prepared_.program);
  sigset_t ends;
  ::sigemptyset(&ends);
  ::sigaddset(&ends, SIGCHLD);
  signals_ = FileDescriptor(::signalfd(-1, &ends, SFD_CLOEXEC | SFD_NONBLOCK));
  if (prepared_.hasNamespaces) setUpNamespaces();
  start();
  while (!isOver_) {
    pollfd waited[] = {{prepared_.program.life, POLLIN, 0},
                       {signals_.get(), POLLIN, 0},
                       {listener_.get(), POLLIN, 0},
                       {setUpSocket_.get(), POLLIN, 0}};
    if (::poll(waited, std::size(waited), -1) < 0) continue;
    if (waited[3].revents) hearSetUp();
    if (waited[2].revents) answerRefusal();
    if (waited[0].revents) break;
    if (!waited[1].revents) continue;
    signalfd_siginfo signal;
    while (::read(signals_.get(), &signal, sizeof signal) > 0) {
    }
    reap(WNOHANG);
  }
  // The program may have ended before it was seen to have started.
  while (isOver_ && setUpSocket_) hearSetUp();
  endAll();
  report(ChildReport::Kind::ended);
  ::_exit(EXIT_SUCCESS);
}

}  // namespace

pid_t startSupervisor(const SupervisedProgram &program, const ConfinementPlan &plan, bool usesNamespaces) {
  Preparation prepared{program, plan};
  prepared.hasNamespaces = usesNamespaces;
  sigset_t all, old;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &old);
  int flags = SIGCHLD;
  if (usesNamespaces) flags |= CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNS | CLONE_NEWIPC;
  if (usesNamespaces && !plan.confinement().network) flags |= CLONE_NEWNET;
  // Not fork(3), which calls what other libraries have asked it to.
  const auto supervisor = static_cast<pid_t>(::syscall(SYS_clone, flags, 0, 0, 0, 0));
  if (supervisor == 0) Supervisor(prepared).run();
  const int number = errno;
  ::pthread_sigmask(SIG_SETMASK, &old, nullptr);
  errno = number;
  return supervisor;
}

}  // namespace nimbo::detail
