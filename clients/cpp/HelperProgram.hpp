// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace nimbo {

/// The absolute path of the helper's program: `$QUIVERLEAF_HELPER`, which is not looked at, else the first of
/// these that is there: the one in the prefix of this library, when it is a shared one; the one beside the
/// running program, or in its prefix; the one of the installation that this library was built for;
/// "quiverleaf-helper" in `$PATH`. Empty when there is none; `*message` then says where it was looked for.
std::string findHelperProgram(std::string *message);

}  // namespace nimbo
