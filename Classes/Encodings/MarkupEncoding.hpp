// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Markup/TagScanner.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A `TagHandler` that finds the character set which a page declares: in an XML declaration or a meta tag, but
/// in no tag behind "<body>". `context` is an `NSMutableString`, which gets the name as it is written, with the
/// entities of a meta tag converted; it stays as it is when there is none.
bool RetrieveEncodingHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                             std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                             std::uint32_t textLocation, int kind, void *context);

}  // namespace nimbo
