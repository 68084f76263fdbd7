// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// What the instruction of a field leads to: its address with the place in it behind "#"; nil when it leads
/// nowhere.
NSString linkOfInstruction(std::u16string_view instruction);
/// The instruction of a field that leads to an address.
std::u16string instructionOfLink(std::u16string_view link);

}  // namespace nimbo
