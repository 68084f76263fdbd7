// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/SystemCallFilter.hpp"

#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <initializer_list>
#include <memory>

#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo::detail {
namespace {

/// No process that reads documents needs them; some widen what the kernel shows of itself, some lead out of the
/// confinement. Those that a machine's kind lacks are passed over.
constexpr const char *kRefusedCalls[] = {
    // Other processes.
    "ptrace", "process_vm_readv", "process_vm_writev", "process_madvise", "kcmp", "pidfd_getfd", "move_pages",
    "migrate_pages",
    // The machine and its administration.
    "acct", "adjtimex", "bpf", "clock_adjtime", "clock_settime", "create_module", "delete_module",
    "fanotify_init", "finit_module", "init_module", "ioperm", "iopl", "kexec_file_load", "kexec_load",
    "lookup_dcookie", "nfsservctl", "perf_event_open", "quotactl", "quotactl_fd", "reboot", "setdomainname",
    "sethostname", "settimeofday", "swapoff", "swapon", "syslog", "uselib", "userfaultfd", "vhangup",
    // Mounts, namespaces and keys.
    "add_key", "chroot", "fsconfig", "fsmount", "fsopen", "fspick", "keyctl", "mount", "mount_setattr",
    "move_mount", "open_by_handle_at", "open_tree", "pivot_root", "request_key", "setns", "umount", "umount2",
    "unshare",
    // Devices.
    "mknod", "mknodat"};

/// What files are, beside their content: Landlock does not cover it. Programs change it of their own files
/// without need, and fail when they cannot; here they succeed, and nothing is changed.
constexpr const char *kIgnoredCalls[] = {"chmod",        "chown",        "fchmod",      "fchmodat",  "fchown",
                                         "fchownat",     "fremovexattr", "fsetxattr",   "futimesat", "lchown",
                                         "lremovexattr", "lsetxattr",    "removexattr", "setxattr",  "utime",
                                         "utimensat",    "utimes"};

/// Programs do without them where the system lacks them, or fall back on calls whose arguments can be seen.
constexpr const char *kMissingCalls[] = {"clone3", "io_uring_setup", "io_uring_enter", "io_uring_register"};

/// What came to the kernel later than the list of calls above: such calls have to look missing.
constexpr int kFirstNewerCall = 452, kLastNewerCall = 511;

constexpr int kSocketFamilies = AF_MAX + 16;
constexpr std::initializer_list<int> kInternetFamilies = {AF_INET, AF_INET6, AF_NETLINK};

class Filter {
 public:
  explicit Filter(Refusal refusal)
      : context_(::seccomp_init(SCMP_ACT_ALLOW)),
        refusal_(refusal == Refusal::named ? SCMP_ACT_NOTIFY : SCMP_ACT_ERRNO(EPERM)) {}
  Filter(const Filter &) = delete;
  Filter &operator=(const Filter &) = delete;
  ~Filter() {
    if (context_) ::seccomp_release(context_);
  }

  void refuse(const char *name) { add(refusal_, ::seccomp_syscall_resolve_name(name), {}); }
  void refuse(const char *name, scmp_arg_cmp condition) {
    add(refusal_, ::seccomp_syscall_resolve_name(name), {condition});
  }
  void ignore(const char *name) { add(SCMP_ACT_ERRNO(0), ::seccomp_syscall_resolve_name(name), {}); }
  void hide(int number) { add(SCMP_ACT_ERRNO(ENOSYS), number, {}); }

  std::vector<sock_filter> program() const {
    const FileDescriptor file(::memfd_create("filter", MFD_CLOEXEC));
    if (!isWhole_ || !file || ::seccomp_export_bpf(context_, file.get()) != 0) return {};
    struct stat info = {};
    if (::fstat(file.get(), &info) != 0) return {};
    std::vector<sock_filter> result(static_cast<std::size_t>(info.st_size) / sizeof(sock_filter));
    const std::size_t bytes = result.size() * sizeof(sock_filter);
    if (::pread(file.get(), result.data(), bytes, 0) != static_cast<ssize_t>(bytes)) return {};
    return result;
  }

 private:
  void add(std::uint32_t action, int number, std::initializer_list<scmp_arg_cmp> conditions) {
    if (number == __NR_SCMP_ERROR) return;  // The library is older than the call.
    const int failure =
        context_ ? ::seccomp_rule_add_array(context_, action, number, static_cast<unsigned>(conditions.size()),
                                            conditions.begin())
                 : -ENOMEM;
    // A call that only other machines have cannot be made here.
    if (failure != 0 && failure != -EDOM) isWhole_ = false;
  }

  scmp_filter_ctx context_;
  std::uint32_t refusal_;
  bool isWhole_ = true;
};

constexpr scmp_arg_cmp argumentEquals(unsigned index, std::uint64_t value) {
  return {index, SCMP_CMP_EQ, value, 0};
}

constexpr scmp_arg_cmp argumentHasBits(unsigned index, std::uint64_t bits, std::uint64_t value) {
  return {index, SCMP_CMP_MASKED_EQ, bits, value};
}

void refuseSockets(Filter &filter, bool allowsInternet) {
  if (!allowsInternet) return filter.refuse("socket");
  for (int family = 0; family < kSocketFamilies; ++family)
    if (std::ranges::find(kInternetFamilies, family) == kInternetFamilies.end())
      filter.refuse("socket", argumentEquals(0, static_cast<std::uint64_t>(family)));
  filter.refuse("socket", {0, SCMP_CMP_GE, kSocketFamilies, 0});
}

}  // namespace

std::vector<sock_filter> systemCallFilter(const Confinement &confinement, Refusal refusal) {
  Filter filter(refusal);
  for (const char *name : kRefusedCalls) filter.refuse(name);
  for (const char *name : kIgnoredCalls) filter.ignore(name);
  for (const char *name : kMissingCalls) filter.hide(::seccomp_syscall_resolve_name(name));
  for (int number = kFirstNewerCall; number <= kLastNewerCall; ++number) filter.hide(number);
  for (const std::uint64_t space :
       {CLONE_NEWNS, CLONE_NEWCGROUP, CLONE_NEWUTS, CLONE_NEWIPC, CLONE_NEWUSER, CLONE_NEWPID, CLONE_NEWNET})
    filter.refuse("clone", argumentHasBits(0, space, space));
  if (confinement.children == 0) {
    filter.refuse("fork");
    filter.refuse("vfork");
    filter.refuse("clone", argumentHasBits(0, CLONE_THREAD, 0));
  }
  refuseSockets(filter, confinement.network);
  // What is typed into a terminal would be run by the shell that waits there.
  filter.refuse("ioctl", argumentHasBits(1, 0xffffffff, TIOCSTI));
  filter.refuse("ioctl", argumentHasBits(1, 0xffffffff, TIOCLINUX));
  return filter.program();
}

std::string systemCallName(int number) {
  const std::unique_ptr<char, decltype(&std::free)> name(
      ::seccomp_syscall_resolve_num_arch(::seccomp_arch_native(), number), &std::free);
  return name ? name.get() : "system call " + std::to_string(number);
}

}  // namespace nimbo::detail
