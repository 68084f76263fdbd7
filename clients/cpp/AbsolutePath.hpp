// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace nimbo {

/// `path` as it is named from any working directory: a relative one has the working directory of this moment in
/// front, links and dots in it stay. Empty when that directory is gone; `*message` then says so.
std::string absolutePath(const std::string &path, std::string *message);

}  // namespace nimbo
