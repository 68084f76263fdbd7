// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace nimbo {

/// Removes a file, a link, or a folder with all that is in it, however deep. No link is followed. False when
/// something cannot be removed: the rest is then still there, and errno says why. What somebody else removes
/// meanwhile is no failure. Any thread may call.
///
///     if (!removeItem("/tmp/old")) NSLog(std::strerror(errno));
bool removeItem(const std::string &path);

}  // namespace nimbo
