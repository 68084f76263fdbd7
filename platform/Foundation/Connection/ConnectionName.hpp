// SPDX-License-Identifier: Apache-2.0
//
// Where named connections live: a name is a Unix stream socket of exactly that name in the runtime folder.
// That is `$QUIVERLEAF_RUNTIME_DIR`, else `$XDG_RUNTIME_DIR`, else "quiverleaf-UID" under the temporary
// folder. It is made with mode 0700 when it is missing; one that belongs to another user, or that others may
// write to, is refused, and so is a relative path, which would not mean the same to every process. Any thread
// may ask.
//
//     FileDescriptor lock;
//     NSString error;
//     const FileDescriptor listener = listenOnConnectionName(u"com.example.helper"_ns, &lock, &error);
//     if (!listener) NSLog(error);
#pragma once

#include <sys/types.h>

#include "platform/Foundation/Connection/ConnectionRecord.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The runtime folder, opened (O_PATH). Nothing when there is none that can be used; `*error` then says why.
FileDescriptor openConnectionFolder(NSString *error = nullptr);
/// The same when it is there; it is not made.
FileDescriptor openExistingConnectionFolder(NSString *error = nullptr);

/// What makes a name a process's own, until it is destroyed.
struct ConnectionListener {
  /// Non-blocking, and listens under the name with mode 0600.
  FileDescriptor socket;
  /// Locked as long as the name is the process's own.
  FileDescriptor lock;
  /// For the record of the process's work (ConnectionRecord.hpp). Nothing when it cannot be written.
  FileDescriptor record;
  /// The device of the file that the socket is.
  dev_t device = 0;
  /// The number of that file on the device.
  ino_t number = 0;

  /// Whether the name is the process's own.
  explicit operator bool() const noexcept { return static_cast<bool>(socket); }
};

/// Takes a name; a stale socket in its place is replaced. `record` is there before the first client can be.
/// Nothing when the name is taken or cannot be used; `*error` says why.
ConnectionListener listenOnConnectionName(const NSString &name, const ConnectionRecord &record,
                                          NSString *error = nullptr);

/// Whether a file that is no socket has the name, so that nobody can listen under it.
bool isOccupied(const NSString &name);

/// Whether clients that look for `name` find this listener: its folder and its socket are still in their
/// places.
bool isReachable(const ConnectionListener &listener, const NSString &name);

/// Takes the socket out of its place, for clients to see that nobody serves the name any more.
void removeSocket(const ConnectionListener &listener, const NSString &name);

/// Writes the record of the listener's process, into a new file when somebody has removed the old one.
void writeRecord(ConnectionListener *listener, const NSString &name, const ConnectionRecord &record);

/// Whether a living process holds the name, reachable or not.
bool isLocked(const NSString &name);

/// Whether there is no record of the name at all: who serves it is of a version that writes none.
bool isRecordMissing(const NSString &name);

/// The record of the process that serves the name, or served it last, for reading. Nothing when there is none
/// that is this user's.
FileDescriptor openConnectionRecord(const NSString &name);

/// A non-blocking socket that is connected to the process that serves `name`. Nothing when there is none, when
/// it belongs to another user, or when it takes no connection for `timeoutSeconds`, which only `*isBusy` tells
/// from the others.
FileDescriptor connectToConnectionName(const NSString &name, double timeoutSeconds = 15.0,
                                       bool *isBusy = nullptr);

/// The other side's process number, or 0 when that process runs under another user.
int peerProcessIdentifier(const FileDescriptor &socket);

}  // namespace nimbo
