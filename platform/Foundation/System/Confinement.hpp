// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What is in force of a confinement; a kernel that lacks a feature, or a system that forbids it, leaves some
/// out. It is a plain value.
struct Protections {
  /// Only the readable and the writable paths can be read (Landlock).
  bool reading = false;
  /// Only the writable folders can be changed (Landlock, or a tree of mounts that is read-only).
  bool writing = false;
  /// There is no network (no sockets by the filter of system calls, or a network namespace without devices).
  bool network = false;
  /// System calls that a reader of documents has no use for are refused (seccomp).
  bool systemCalls = false;
  /// Processes outside can be neither signalled nor looked into (a process namespace, or Landlock's scopes).
  bool signals = false;
  /// No more processes than allowed can be started.
  bool processes = false;
  /// Whatever the process starts ends with it, even when this process is killed (a process namespace). Without
  /// it, what is left running is looked for and ended when the child ends, but not when its supervisor is
  /// killed.
  bool descendants = false;
  /// Refused system calls can be named.
  bool namedRefusals = false;
};

/// What a process that reads untrusted bytes may do. The same value confines a child before it runs its program
/// (`ChildProcess`), or the calling process itself (`confineThisProcess`). It is a plain value.
///
///     Confinement confinement{.writableFolders = {folder.path()}};
///     confinement.readablePaths = Confinement::systemPaths();
///     const auto child = ChildProcess::start(program, confinement, &error);
///
/// What is refused:
/// - writing, making and removing files outside of `writableFolders`, and reading them outside of the readable
///   ones: "permission denied". Whether a file is there, and how large it is, can be seen;
/// - permissions, owners, times and extended attributes of files are not changed, not even of its own; the
///   calls succeed all the same, because programs make them without need and fail without them;
/// - sockets, but those it was given; with `network`, all sockets but those of the internet;
/// - more than `children` processes at a time;
/// - tracing other processes, namespaces, mounts, keys, kernel modules, clocks, asynchronous rings, and system
///   calls that are newer than the filter. These, and sockets, answer "operation not permitted", or that the
///   system has no such call.
struct Confinement {
  /// Where files may be made, changed and removed, with all that is below.
  std::vector<NSString> writableFolders = {};
  /// The files and folders that may be read and run, with all that is below; what does not exist is left out.
  /// Without any, everything may be read.
  std::vector<NSString> readablePaths = {};
  /// Whether it may talk to the internet.
  bool network = false;
  /// The address space of each process, in bytes.
  std::uint64_t memoryBytes = std::uint64_t{2} << 30;
  /// The processor time of each process.
  std::uint32_t processorSeconds = 60;
  /// The largest file that it may write.
  std::uint64_t fileBytes = std::uint64_t{256} << 20;
  /// How many descriptors each process may have open.
  std::uint32_t openFiles = 256;
  /// How many processes it may have started at a time, and how deep they can be nested. With none, starting one
  /// is refused. Otherwise it holds where there are namespaces, and not for the system's administrator.
  std::uint32_t children = 0;

  /// Whether Landlock is used where it is there, as for the other two; tests leave some out.
  bool usesLandlock = true;
  /// Whether the filter of system calls is used.
  bool usesFilter = true;
  /// Whether namespaces are used.
  bool usesNamespaces = true;

  /// Programs, libraries, fonts and settings of the system, without anybody's home folder.
  static std::vector<NSString> systemPaths();
};

/// Confines the calling process for the rest of its life, without namespaces, as far as the kernel has the
/// features, and answers what is in force. It must have one thread. Nothing can be taken back; a second
/// confinement adds to the first. `*error` says why when not all of it could be done.
Protections confineThisProcess(const Confinement &confinement, NSError *error = nullptr);

}  // namespace nimbo
