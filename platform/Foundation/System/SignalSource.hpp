// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Calls `function` from the calling thread's run loop whenever the process has got the signal, before whatever
/// else the loop has to do; signals that come close together may be one call. For one signal a process,
/// and so for one call, from whichever thread runs its loop.
///
///     connection.setInvalidationHandler([] { std::exit(EXIT_SUCCESS); });
///     callOnSignal(SIGTERM, [&] { connection.invalidate(); });
///     NSRunLoop::currentRunLoop().run();
void callOnSignal(int signal, std::function<void()> function);

}  // namespace nimbo
