// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <linux/filter.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/Foundation/System/Confinement.hpp"

namespace nimbo::detail {

/// How a refused system call ends.
enum class Refusal {
  silent,  ///< With an error.
  named,   ///< Whoever listens at the filter is told of it, and answers with an error.
};

/// The program of a filter that refuses what the confinement does not allow; a plain value that may be loaded
/// after a fork. Empty where filters of this machine's kind cannot be made.
std::vector<sock_filter> systemCallFilter(const Confinement &confinement, Refusal refusal);

/// The name of a system call, or its number where that has none.
std::string systemCallName(int number);

}  // namespace nimbo::detail
