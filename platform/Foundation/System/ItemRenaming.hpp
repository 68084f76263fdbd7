// SPDX-License-Identifier: Apache-2.0
//
// Items moved within a file system. On failure errno says why (EXDEV: the places are on two file systems), and
// both are as they were. Any thread may call.
//
//     if (!renameWithoutReplacing(path, path + ".0") && errno == EEXIST) rotate(path);
//     renameReplacing(temporary, path);
#pragma once

#include <string>

namespace nimbo {

/// Gives a file, a link or a folder another path, where there must be nothing (else EEXIST); of two that do so
/// at once one wins.
bool renameWithoutReplacing(const std::string &from, const std::string &to);

/// Gives a file, a link or a folder another path, in place of what is there. A file takes the place of a file
/// at one stroke. When one of them is a folder, the old item first goes to a hidden name beside it and is
/// removed in the end; whoever is killed in between leaves both.
bool renameReplacing(const std::string &from, const std::string &to);

}  // namespace nimbo
