// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <bitset>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/Foundation/System/ConfinementPlan.hpp"

namespace nimbo::detail {

/// A program and what it is started with, prepared before the fork. The descriptors are borrowed.
struct SupervisedProgram {
  std::string path;
  std::vector<std::string> arguments;    ///< With the program's name in front.
  std::vector<std::string> environment;  ///< "NAME=value".
  std::string folder;                    ///< Its working directory.
  int input = -1, output = -1, error = -1;
  int life = -1;     ///< The end for reading of a pipe; the child's life ends when the other end is closed.
  int reports = -1;  ///< A socket of packets, which takes `ChildReport`s.
};

/// The numbers of system calls that the filter knows.
inline constexpr std::size_t kSystemCalls = 512;

/// What a supervisor tells, a packet each: `started` or `failed`, and after `started` at last `ended`. It is
/// sent as it lies in memory.
struct ChildReport {
  enum class Kind { failed, started, ended };
  /// What failed.
  enum class Stage { namespaces, setUp, limits, privileges, files, systemCalls, program };

  Kind kind = Kind::failed;
  Stage stage = Stage::namespaces;
  int errorNumber = 0;
  Protections protections = {};
  int waitStatus = 0;  ///< As waitpid(2) gives it.
  double processorSeconds = 0;
  std::bitset<kSystemCalls> refusedCalls = {};
};

/// Starts the supervisor of a program: a process of its own that starts the program, confined, answers what the
/// filter refuses, takes in what the program leaves behind, and ends all of it when the program ends or `life`
/// is closed. It goes on in a copy of this process, where it makes system calls only. Negative when it cannot
/// be started; errno says why.
pid_t startSupervisor(const SupervisedProgram &program, const ConfinementPlan &plan, bool usesNamespaces);

}  // namespace nimbo::detail
