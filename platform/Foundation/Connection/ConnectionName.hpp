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

#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The runtime folder, opened (O_PATH). Nothing when there is none that can be used; `*error` then says why.
FileDescriptor openConnectionFolder(NSString *error = nullptr);

/// A non-blocking socket that listens under `name`, mode 0600; a stale socket in its place is replaced. `*lock`
/// gets the lock that makes the name this process's own until it is closed. Nothing when the name is taken or
/// cannot be used; `*error` says why.
FileDescriptor listenOnConnectionName(const NSString &name, FileDescriptor *lock, NSString *error = nullptr);

/// A non-blocking socket that is connected to the process that serves `name`. Nothing when there is none, when
/// it belongs to another user, or when it takes no connection for `timeoutSeconds`, which only `*isBusy` tells
/// from the others.
FileDescriptor connectToConnectionName(const NSString &name, double timeoutSeconds = 15.0,
                                       bool *isBusy = nullptr);

/// The other side's process number, or 0 when that process runs under another user.
int peerProcessIdentifier(const FileDescriptor &socket);

}  // namespace nimbo
