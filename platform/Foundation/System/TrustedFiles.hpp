// SPDX-License-Identifier: Apache-2.0
//
// Files and folders that only root and the user can change. They are opened first, and what was opened is
// checked, so that nobody can exchange them in between. Any thread may open them.
//
//     const FileDescriptor folder = openTrusted(AT_FDCWD, "/usr/lib/plug-in", S_IFDIR, &error);
//     if (!folder || !holderIsTrusted(folder.get(), &error)) return;
//     const FileDescriptor file = openTrusted(folder.get(), "settings", S_IFREG, &error);
//     if (file) read(pathOfDescriptor(file.get()));
#pragma once

#include <sys/types.h>

#include <string>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo {

/// What stands at `name`, below the open folder unless that is AT_FDCWD, opened with O_PATH. Nothing, with
/// `*error`, unless it is of the kind, a file type of `st_mode`, belongs to root or the user and is not
/// writable by group or others. A symbolic link is none of these kinds. Links and folders further up in `name`
/// are not looked at.
FileDescriptor openTrusted(int folder, const std::string &name, mode_t kind, NSError *error);

/// Whether only root and the user can exchange the open folder, as far as the folder that holds it says: it
/// belongs to root or the user, and group and others may not write it unless it is sticky, as /tmp is. If not,
/// `*error` says why.
bool holderIsTrusted(int folder, NSError *error);

/// A path that leads to what is open, and to no other thing, until the descriptor is closed.
std::string pathOfDescriptor(int descriptor);

}  // namespace nimbo
