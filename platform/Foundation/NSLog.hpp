// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Writes one line to the system log and to standard error; line feeds inside the message stay in it.
void NSLog(const NSString &message);
/// The same for text in UTF-8.
void NSLog(std::string_view message);

}  // namespace nimbo
