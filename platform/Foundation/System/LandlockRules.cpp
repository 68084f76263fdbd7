// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/LandlockRules.hpp"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo::detail {
namespace {

/// What came with later versions than that of the system's header.
constexpr std::uint64_t kTruncate = 1 << 14, kControlDevice = 1 << 15;
constexpr std::uint64_t kScopeAbstractSockets = 1 << 0, kScopeSignals = 1 << 1;
constexpr int kVersionOfRefer = 2, kVersionOfTruncate = 3, kVersionOfDevices = 5, kVersionOfScopes = 6;

/// The attributes of a set of rules as the newest of these versions has them.
struct RulesetAttributes {
  std::uint64_t handledFiles = 0;
  std::uint64_t handledNetwork = 0;
  std::uint64_t scopes = 0;
};
constexpr std::size_t kSizeWithoutScopes = sizeof(std::uint64_t);

constexpr std::uint64_t kReading =
    LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR | LANDLOCK_ACCESS_FS_EXECUTE;
constexpr std::uint64_t kWriting = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                                   LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_DIR |
                                   LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SOCK |
                                   LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_SYM;
constexpr std::uint64_t kNever = LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_BLOCK;
/// What a rule for a file, which is no folder, may say.
constexpr std::uint64_t kOfFiles = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_EXECUTE |
                                   LANDLOCK_ACCESS_FS_WRITE_FILE | kTruncate | kControlDevice;

/// A device that programs write to without a thought.
constexpr const char *kNullDevice = "/dev/null";
/// What a process sees of itself; the link leads another way in each.
constexpr const char *kOwnProcess = "/proc/self";

int kernelVersion() {
  const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  return version > 0 ? static_cast<int>(version) : 0;
}

}  // namespace

LandlockRules::LandlockRules(const Confinement &confinement) : version_(kernelVersion()) {
  const bool limitsReading = !confinement.readablePaths.empty();
  handled_ = kWriting | kNever | (limitsReading ? kReading : 0);
  if (version_ >= kVersionOfRefer) handled_ |= LANDLOCK_ACCESS_FS_REFER;
  if (version_ >= kVersionOfTruncate) handled_ |= kTruncate;
  if (version_ >= kVersionOfDevices) handled_ |= kControlDevice;
  const auto add = [this](const NSString &path, std::uint64_t access) {
    if (const auto name = path.fileSystemRepresentation()) paths_.push_back({*name, access & handled_});
  };
  for (const NSString &path : confinement.readablePaths) add(path, kReading);
  if (limitsReading) paths_.push_back({kOwnProcess, kReading & ~std::uint64_t{LANDLOCK_ACCESS_FS_EXECUTE}});
  for (const NSString &folder : confinement.writableFolders) add(folder, ~kNever);
  paths_.push_back({kNullDevice, kOfFiles & ~std::uint64_t{LANDLOCK_ACCESS_FS_EXECUTE} & handled_});
}

bool LandlockRules::refusesSignals() const {
  return version_ >= kVersionOfScopes;
}

bool LandlockRules::apply() const noexcept {
  const RulesetAttributes attributes = {handled_, 0,
                                        refusesSignals() ? kScopeAbstractSockets | kScopeSignals : 0};
  const std::size_t size = refusesSignals() ? sizeof attributes : kSizeWithoutScopes;
  const FileDescriptor rules(static_cast<int>(::syscall(SYS_landlock_create_ruleset, &attributes, size, 0)));
  if (!rules) return false;
  for (const Path &path : paths_) {
    const FileDescriptor file(::open(path.name.c_str(), O_PATH | O_CLOEXEC));
    struct stat info = {};
    if (!file || ::fstat(file.get(), &info) != 0) continue;
    landlock_path_beneath_attr rule = {};
    rule.allowed_access = S_ISDIR(info.st_mode) ? path.access : path.access & kOfFiles;
    rule.parent_fd = file.get();
    if (rule.allowed_access == 0) continue;
    if (::syscall(SYS_landlock_add_rule, rules.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) != 0) return false;
  }
  return ::syscall(SYS_landlock_restrict_self, rules.get(), 0) == 0;
}

}  // namespace nimbo::detail
