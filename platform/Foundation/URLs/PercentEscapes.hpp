// SPDX-License-Identifier: Apache-2.0
//
// Percent escapes of bytes. Any thread may call these.
//
//     bytesByAddingPercentEscapes("a b/c", "/");  // "a%20b/c"
//     bytesByReplacingPercentEscapes("a%20b");  // "a b"
//     bytesByReplacingPercentEscapes("100%");  // "100%"
#pragma once

#include <string>
#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Writes every byte but letters and digits of ASCII and those of `plain` as "%" and two capital hexadecimal
/// digits.
std::string bytesByAddingPercentEscapes(std::string_view bytes, std::string_view plain);

/// Writes every escape as its byte; a "%" without two hexadecimal digits stays.
std::string bytesByReplacingPercentEscapes(std::string_view bytes);

}  // namespace nimbo
