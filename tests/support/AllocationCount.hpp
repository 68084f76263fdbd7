// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace nimbo {

/// How often the test program and the parts of the project that are linked into it have asked for memory so
/// far, by `new`, `malloc` or `realloc`. Only for programs that are linked with AllocationCount.cpp and its
/// options.
std::size_t allocationCount();

}  // namespace nimbo
