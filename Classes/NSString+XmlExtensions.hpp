// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "Classes/TagScanner.hpp"
#include "platform/Foundation/NSArray.hpp"

namespace nimbo {
inline namespace XmlExtensions {

/// As `GetTagsOfString`; an `NSException` that the handler raises is logged and answers false.
bool parseXmlWithHandler(const NSString &string, TagHandler handler, void *context, bool isMutable);

}  // namespace XmlExtensions
}  // namespace nimbo
