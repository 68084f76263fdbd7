// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSStringFormatting.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Writes one line to the system log and to standard error; line feeds inside the message stay in it.
void NSLog(const NSString &message);
/// The same for text in UTF-8.
void NSLog(std::string_view message);
/// The same for a format and its arguments.
///
///     NSLog(u"Unknown date: %@", text);
template <class... Arguments>
requires(sizeof...(Arguments) > 0) void NSLog(FormatString<std::type_identity_t<Arguments>...> format,
                                              const Arguments &...arguments) {
  NSLog(stringWithFormat<Arguments...>(format, arguments...));
}

}  // namespace nimbo
