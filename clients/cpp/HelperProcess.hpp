// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo {

/// A process by its number and by a descriptor (pidfd), which never means a later process of the same number.
struct HelperProcess {
  /// The process number; 0 when there is none.
  pid_t number = 0;
  /// The descriptor of the process.
  FileDescriptor handle;

  /// Whether there is a process.
  explicit operator bool() const noexcept { return static_cast<bool>(handle); }
  /// Waits until the process has ended, and takes its exit status when it is a child that `startHelper` made.
  /// False when it still runs after that time.
  bool waitUntilEnded(std::chrono::duration<double> limit) const;
  /// Sends a signal; nothing happens when the process has ended.
  void sendSignal(int signal) const;
  /// Kills it and waits until it has ended.
  void endByForce() const;
  /// Whether the file that it was started from, which it says was `path`, has been removed, moved or replaced.
  bool isProgramGone(const std::string &path) const;
};

/// A connection and the process at its other end.
struct HelperConnection {
  /// The connected socket.
  FileDescriptor socket;
  /// The process that serves it.
  HelperProcess process;

  /// Whether there is a connection.
  explicit operator bool() const noexcept { return static_cast<bool>(socket); }
};

/// Whether the other side has closed the connection; what it sent before may still be there to read.
bool isConnectionStale(const FileDescriptor &socket);

/// A connection to the helper that is registered under `name`. None when there is none; `*isBusy` is set when
/// there is one that takes no connection for that time.
HelperConnection connectToHelper(const NSString &name, std::chrono::duration<double> limit,
                                 bool *isBusy = nullptr);

/// Starts the helper program at `path`, which has to register under `name`, with these arguments, in a session
/// of its own, with standard streams on /dev/null, and waits until it answers. Of several clients that do so at
/// once one starts a helper, and all connect to it. Nothing when that fails; `*message` then says why.
HelperConnection startHelper(const NSString &name, const std::string &path,
                             const std::vector<std::string> &arguments, std::string *message);

}  // namespace nimbo
