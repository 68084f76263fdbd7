// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSStringFormatting.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Writes one line to the system log and to standard error, from any thread; line feeds inside the message
/// stay in it.
void NSLog(const NSString &message);
/// Writes text in UTF-8.
void NSLog(std::string_view message);
/// Writes a format with its arguments.
///
///     NSLog(u"a line"_ns);
///     NSLog("text in UTF-8");
///     NSLog(u"page %d of %@", 3, path);
template <class... Arguments>
requires(sizeof...(Arguments) > 0) void NSLog(FormatString<std::type_identity_t<Arguments>...> format,
                                              const Arguments &...arguments) {
  NSLog(stringWithFormat<Arguments...>(format, arguments...));
}

/// Takes a line of the log, without its line feed. It may be called by any thread.
using LogWriter = void (*)(std::string_view message);

/// Hands the lines of the log to `writer` in place of standard error, so that they look like what else the
/// program says there. They go to the system log as before.
void setLogWriter(LogWriter writer);

}  // namespace nimbo
