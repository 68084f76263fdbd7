// SPDX-License-Identifier: Apache-2.0
#include "tests/support/SystemCallFaults.hpp"

#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <string>

namespace nimbo {
namespace {

constexpr int kNotTraced = 77;

/// Whether the call has to do with files at all.
bool reachesFiles(unsigned long long call) {
  switch (call) {
    case SYS_brk:
    case SYS_mmap:
    case SYS_munmap:
    case SYS_mremap:
    case SYS_mprotect:
    case SYS_madvise:
    case SYS_futex:
    case SYS_getrandom:
    case SYS_rt_sigaction:
    case SYS_rt_sigprocmask:
    case SYS_rt_sigreturn:
    case SYS_sigaltstack:
    case SYS_prlimit64:
    case SYS_getpid:
    case SYS_gettid:
    case SYS_getuid:
    case SYS_geteuid:
    case SYS_exit_group:
      return false;
    default:
      return true;
  }
}

/// The traced process, stopped.
class Tracee {
 public:
  explicit Tracee(pid_t process) : process_(process) {}

  void read() { ::ptrace(PTRACE_GETREGS, process_, nullptr, &registers_); }
  unsigned long long call() const { return registers_.orig_rax; }

  /// Lets nothing come of the call.
  void skip() {
    registers_.orig_rax = ~0ull;
    write();
  }
  void answer(int error) {
    read();
    registers_.rax = static_cast<unsigned long long>(-error);
    write();
  }
  void cutShort() {
    auto &length = call() == SYS_copy_file_range ? registers_.r8 : registers_.rdx;
    if (call() == SYS_copy_file_range || call() == SYS_write || call() == SYS_read) length = (length + 1) / 2;
    write();
  }

  /// What the surroundings of a test answer to the call; nothing when it is made.
  std::optional<int> answerOf(const SystemCallFaults &faults) const {
    if (call() == SYS_fsync || call() == SYS_syncfs) return 0;
    if (faults.withFoldersApart && isRename() && folderOf(from()) != folderOf(to())) return EXDEV;
    if (faults.withoutRenameFlags && call() == SYS_renameat2 && registers_.r8 != 0) return EINVAL;
    return std::nullopt;
  }

 private:
  void write() { ::ptrace(PTRACE_SETREGS, process_, nullptr, &registers_); }
  bool isRename() const { return call() == SYS_rename || call() == SYS_renameat || call() == SYS_renameat2; }
  std::string from() const { return text(call() == SYS_rename ? registers_.rdi : registers_.rsi); }
  std::string to() const { return text(call() == SYS_rename ? registers_.rsi : registers_.r10); }
  static std::string folderOf(const std::string &path) { return path.substr(0, path.rfind('/') + 1); }

  std::string text(unsigned long long address) const {
    std::string bytes;
    for (char unit = 0;; bytes += unit) {
      iovec local = {&unit, 1}, remote = {reinterpret_cast<void *>(address + bytes.size()), 1};
      if (::process_vm_readv(process_, &local, 1, &remote, 1, 0) != 1 || unit == '\0') return bytes;
    }
  }

  const pid_t process_;
  user_regs_struct registers_ = {};
};

FaultyOutcome outcomeOf(int status) {
  if (!WIFEXITED(status)) return FaultyOutcome::killed;
  if (WEXITSTATUS(status) == kNotTraced) return FaultyOutcome::notTraced;
  return WEXITSTATUS(status) == 0 ? FaultyOutcome::answeredTrue : FaultyOutcome::answeredFalse;
}

/// Lets the process run to where it enters or leaves a call. Whether it still lives.
bool goesOn(pid_t process, int *status) {
  for (int signal = 0;; signal = WSTOPSIG(*status)) {
    ::ptrace(PTRACE_SYSCALL, process, nullptr, signal);
    if (::waitpid(process, status, 0) != process || !WIFSTOPPED(*status)) return false;
    if (WSTOPSIG(*status) == (SIGTRAP | 0x80)) return true;
  }
}

}  // namespace

FaultyOutcome runWithFaults(const SystemCallFaults &faults, const std::function<bool()> &work) {
  const pid_t process = ::fork();
  if (process == 0) {
    if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(kNotTraced);
    ::raise(SIGSTOP);
    ::_exit(work() ? 0 : 1);
  }
  int status = 0, calls = 0;
  if (process < 0 || ::waitpid(process, &status, 0) != process || !WIFSTOPPED(status))
    return FaultyOutcome::notTraced;
  ::ptrace(PTRACE_SETOPTIONS, process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  Tracee tracee(process);
  bool isReached = faults.call < 0;
  while (goesOn(process, &status)) {
    tracee.read();
    auto answer = tracee.answerOf(faults);
    if (reachesFiles(tracee.call()) && calls++ == faults.call) {
      isReached = true;
      if (faults.kind == SystemCallFaults::Kind::kill) ::kill(process, SIGKILL);
      if (faults.kind == SystemCallFaults::Kind::fail) answer = faults.error;
      if (faults.kind == SystemCallFaults::Kind::cutShort) tracee.cutShort();
    }
    if (answer) tracee.skip();
    if (!goesOn(process, &status)) break;
    if (answer) tracee.answer(*answer);
  }
  return isReached ? outcomeOf(status) : FaultyOutcome::notReached;
}

}  // namespace nimbo
