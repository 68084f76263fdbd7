// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What the engine of a name answers: the project's own library libnimbo-NAME, which brings heavy libraries
/// along and is loaded when it is first asked for. It lies in the folder "quiverleaf" beside the library that
/// this code is part of, and has a function `nimboEngine` that answers the same for the life of the process, as
/// does this. Null when it cannot be loaded; `*error` says why. Any thread may ask.
///
///     static const auto *engine = static_cast<const ImageEngine *>(engineNamed("imageio", &error));
///
/// The engine's side:
///
///     NIMBO_ENGINE const void *nimboEngine() { ... }
const void *engineNamed(std::string_view name, NSError *error = nullptr);

/// Declares `nimboEngine` as it is looked for.
#define NIMBO_ENGINE extern "C" __attribute__((visibility("default")))

}  // namespace nimbo
