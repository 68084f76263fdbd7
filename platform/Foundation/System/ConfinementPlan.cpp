// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/ConfinementPlan.hpp"

#include <linux/capability.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/Foundation/System/SystemCallFilter.hpp"

namespace nimbo {
namespace detail {
namespace {

/// The system's own capabilities are fewer.
constexpr int kCapabilities = 64;

/// `spare` lies between what the process is told of by a signal and what ends it.
bool limit(__rlimit_resource resource, std::uint64_t most, std::uint64_t spare = 0) noexcept {
  rlimit old = {};
  if (::getrlimit(resource, &old) != 0) return false;
  const rlimit set = {std::min<rlim_t>(most, old.rlim_max), std::min<rlim_t>(most + spare, old.rlim_max)};
  return ::setrlimit(resource, &set) == 0;
}

int seccomp(unsigned flags, const std::vector<sock_filter> &filter) noexcept {
  const sock_fprog program = {static_cast<unsigned short>(filter.size()),
                              const_cast<sock_filter *>(filter.data())};
  return static_cast<int>(::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, flags, &program));
}

}  // namespace

ConfinementPlan::ConfinementPlan(const Confinement &confinement)
    : confinement_(confinement), landlock_(confinement) {
  for (const NSString &folder : confinement.writableFolders)
    if (auto name = folder.fileSystemRepresentation()) writableFolders_.push_back(*std::move(name));
  if (!confinement.usesFilter) return;
  namingFilter_ = systemCallFilter(confinement, Refusal::named);
  silentFilter_ = systemCallFilter(confinement, Refusal::silent);
}

bool ConfinementPlan::applyLimits(bool countsOwnProcesses) const noexcept {
  return limit(RLIMIT_CORE, 0) && limit(RLIMIT_AS, confinement_.memoryBytes) &&
         limit(RLIMIT_CPU, confinement_.processorSeconds, 1) && limit(RLIMIT_FSIZE, confinement_.fileBytes) &&
         limit(RLIMIT_NOFILE, confinement_.openFiles) &&
         // Elsewhere all processes of the user count, threads included.
         (!countsOwnProcesses || limit(RLIMIT_NPROC, confinement_.children + 2));
}

bool ConfinementPlan::dropPrivileges() const noexcept {
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return false;
  for (int capability = 0; capability < kCapabilities; ++capability)
    ::prctl(PR_CAPBSET_DROP, capability, 0, 0, 0);
  __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
  const __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
  return ::syscall(SYS_capset, &header, none) == 0;
}

bool ConfinementPlan::loadFilter(FileDescriptor *listener) const noexcept {
  if (listener && !namingFilter_.empty()) {
    const int descriptor = seccomp(SECCOMP_FILTER_FLAG_NEW_LISTENER, namingFilter_);
    if (descriptor >= 0) {
      *listener = FileDescriptor(descriptor);
      return true;
    }
  }
  return seccomp(0, silentFilter_) == 0;
}

ConfinementPlan::Step ConfinementPlan::apply(Protections *protections,
                                             FileDescriptor *listener) const noexcept {
  const bool countsOwnProcesses = protections->descendants && confinement_.children > 0;
  if (!applyLimits(countsOwnProcesses)) return Step::limits;
  if (countsOwnProcesses && ::getuid() != 0) protections->processes = true;
  if (!dropPrivileges()) return Step::privileges;
  if (usesLandlock()) {
    if (!landlock_.apply()) return Step::files;
    protections->reading = !confinement_.readablePaths.empty();
    protections->writing = true;
    if (landlock_.refusesSignals()) protections->signals = true;
  }
  if (!silentFilter_.empty()) {
    if (loadFilter(listener)) {
      protections->systemCalls = true;
      protections->network = !confinement_.network;
      protections->namedRefusals = listener && *listener;
      if (confinement_.children == 0) protections->processes = true;
    } else if (errno != ENOSYS && errno != EINVAL) {
      return Step::systemCalls;
    }
  }
  return Step::none;
}

}  // namespace detail

std::vector<NSString> Confinement::systemPaths() {
  std::vector<NSString> paths;
  for (const char *path : {"/bin",
                           "/sbin",
                           "/lib",
                           "/lib32",
                           "/lib64",
                           "/libx32",
                           "/usr",
                           "/etc",
                           "/opt",
                           "/nix/store",
                           "/var/cache/fontconfig",
                           "/var/lib/ghostscript",
                           "/var/lib/libreoffice",
                           "/var/spool/libreoffice",
                           "/sys/devices/system/cpu",
                           "/proc/cpuinfo",
                           "/proc/filesystems",
                           "/proc/meminfo",
                           "/dev/null",
                           "/dev/zero",
                           "/dev/random",
                           "/dev/urandom"})
    paths.push_back(NSString::stringWithUTF8String(path));
  return paths;
}

Protections confineThisProcess(const Confinement &confinement, NSError *error) {
  Protections protections;
  using enum detail::ConfinementPlan::Step;
  const char *reason = nullptr;
  switch (detail::ConfinementPlan(confinement).apply(&protections, nullptr)) {
    case none:
      return protections;
    case limits:
      reason = "the limits of this process cannot be set";
      break;
    case privileges:
      reason = "the privileges of this process cannot be dropped";
      break;
    case files:
      reason = "the files of this process cannot be confined";
      break;
    case systemCalls:
      reason = "the system calls of this process cannot be filtered";
      break;
  }
  setError(error, ErrorCode::other, reason);
  return protections;
}

}  // namespace nimbo
