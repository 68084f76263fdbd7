// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "Classes/PlainText/PlainTextRecord.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// How much a tag changes a depth: 1 for a start tag, -1 for an end tag, 0 for a tag of less than 3 units or
/// one that ends in "/>".
int depthChangeOfTag(std::u16string_view tag);

/// A `TagHandler` that writes a space and the text for each text that counts as the body's, whatever its white
/// space, with all character references decoded when it has more than 3 units; `context` is a
/// `PlainTextRecord`. "body" and "noframes" begin the body, "head" interrupts it. It changes no units and never
/// stops the scan.
bool SimplePlainTextHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                            std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                            std::uint32_t textLocation, int kind, void *context);

}  // namespace nimbo
