// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace nimbo {

/// Whether extended attributes may be lost where the file system keeps none.
enum class AttributeLoss { allowed, refused };

/// Copies a file, a link or a folder with all that is in it, however deep, to `to`, where there must be
/// nothing. Links are copied, never followed; so are permissions, times, extended attributes and, as far as
/// allowed, the owner. A file system below the folder is copied too; several names of one file become several
/// files. False when anything cannot be copied: nothing is then left at `to`, and errno says why (EOPNOTSUPP:
/// attributes would be lost; EINVAL: `to` is inside the folder). Any thread may call.
///
///     if (!copyItem("/tmp/old", "/mnt/new", AttributeLoss::allowed)) NSLog(std::strerror(errno));
bool copyItem(const std::string &from, const std::string &to, AttributeLoss loss);

}  // namespace nimbo
