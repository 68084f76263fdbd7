// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// What is known of a file without reading it, by kMDItem names: its absolute path, name, content type and,
/// unless it is a folder, its size in bytes. Without what cannot be found out.
NSDictionary factsOfFile(const std::string &file);

}  // namespace nimbo
