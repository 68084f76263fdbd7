// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace nimbo {

/// Makes a user profile in a folder, which must exist, that keeps LibreOffice to reading: no macros, no links
/// that are updated, nothing saved by itself. False when it cannot be written.
bool writeProfile(const std::string &folder);

}  // namespace nimbo
