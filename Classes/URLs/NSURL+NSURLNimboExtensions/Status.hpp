// SPDX-License-Identifier: Apache-2.0
//
// What statuses and errors of loading mean. Any thread may ask.
//
//     isHTTPStatusCodeOkay(200);  // true
//     isHTTPStatusCodeTemporaryError(503);  // true
//     const NSString message = messageForHTTPError(404);
#pragma once

#include <cstdint>

#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSURLNimboExtensions {

/// Whether a whole page came: true up to 299, but false from 201 to 206, which bring no whole page.
bool isHTTPStatusCodeOkay(std::int32_t code);
/// Whether another attempt may succeed: 307, 408, 500, 502, 503, 504, 507, 509 and 510.
bool isHTTPStatusCodeTemporaryError(std::int32_t code);
/// The reason phrase, in the user's language where the main bundle has it. Nil when there is none.
NSString messageForHTTPError(std::int32_t code);

/// Whether another attempt may succeed: the server's answer was bad, there was no connection, it was lost, or
/// time was over. False for nil. The error's domain does not matter.
bool isTemporaryNSURLError(const NSError &error);
/// The status that means about the same; 0 when there is none, and for nil.
std::int32_t HTTPStatusCodeForNSURLError(const NSError &error);

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
