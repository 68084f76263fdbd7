// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <linux/filter.h>
#include <sys/resource.h>

#include <string>
#include <vector>

#include "platform/Foundation/System/Confinement.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/LandlockRules.hpp"

namespace nimbo::detail {

/// A confinement with all that needs memory prepared, so that it can be put in force between a fork and the
/// start of a program.
class ConfinementPlan {
 public:
  /// The steps of a confinement, for who has to tell which one failed.
  enum class Step { none, limits, privileges, files, systemCalls };

  explicit ConfinementPlan(const Confinement &confinement);

  const Confinement &confinement() const { return confinement_; }
  const std::vector<std::string> &writableFolders() const { return writableFolders_; }
  /// Whether Landlock keeps the files, so that nothing else has to.
  bool usesLandlock() const { return confinement_.usesLandlock && landlock_.isAvailable(); }
  /// Confines the calling thread, which is the process's only one, and adds what is in force to `protections`.
  /// Makes system calls only. A feature that the kernel lacks is left out; when one that it has fails, the step
  /// is answered, and errno says why. `*listener`, unless it is null, gets the descriptor at which refused
  /// calls can be learned, if there is one.
  Step apply(Protections *protections, FileDescriptor *listener) const noexcept;

 private:
  bool applyLimits(bool countsOwnProcesses) const noexcept;
  bool dropPrivileges() const noexcept;
  bool loadFilter(FileDescriptor *listener) const noexcept;

  Confinement confinement_;
  std::vector<std::string> writableFolders_;
  LandlockRules landlock_;
  std::vector<sock_filter> namingFilter_, silentFilter_;
};

}  // namespace nimbo::detail
