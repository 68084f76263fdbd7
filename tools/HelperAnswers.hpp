// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>

#include "clients/cpp/HelperClient.hpp"
#include "tools/CommandLine.hpp"

namespace nimbo {

/// A client of the helper that waits, and starts one, as the options say.
HelperClient clientWithOptions(const CommonOptions &options);

/// Hands a result to `use`, writes the line that says why there is none or what is missing in it, and gives the
/// exit code. `file` is what messages call the input.
int report(const HelperClient::Answer &answer, const std::string &file,
           const std::function<void(const id &result)> &use);
/// The same; the result is written to standard output.
int report(const HelperClient::Answer &answer, const std::string &file, const CommonOptions &options);

}  // namespace nimbo
