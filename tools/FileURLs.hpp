// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace nimbo {

/// The path of a file on this machine for a text that begins with "file://", as desktops hand files over; any
/// other text is a path already. Characters that a URL writes as escapes may stand for themselves, but not "?"
/// and "#", with all behind them. Raises `UsageError` for a file of another machine or without a path.
std::string pathOfFileArgument(const std::string &argument);

}  // namespace nimbo
