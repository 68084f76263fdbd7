// SPDX-License-Identifier: Apache-2.0
//
// Locks that processes agree upon: the file "name.lock" beside a file says who works on it. Nothing holds those
// back who do not ask for it. Any thread may call.
//
//     if (!lockFileAtPath(path, false)) return inUse(path);
//     edit(path);
//     unlockFileAtPath(path);
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// Makes the lock of `path`, with the folders above it, and answers the lock's path: a property list with
/// "userName" and "processNumber" of this process. Nil when there is a lock already, be it this process's own;
/// of several that lock at once one wins. With `override` an old lock is replaced. The lock shows when it is
/// whole. Nil, too, when it cannot be written, which the longest names do not leave room for.
NSString lockFileAtPath(const NSString &path, Flag override);

/// Removes the lock of `path` if it is this user's and this process's own; else the lock stays and the answer
/// is false.
bool unlockFileAtPath(const NSString &path);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
