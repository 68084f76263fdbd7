// SPDX-License-Identifier: Apache-2.0
//
// UTF-16 that comes as bytes. Any thread may read it.
//
//     using namespace std::literals;
//     orderOfUTF16("a\0b\0"sv);  // std::endian::little
//     unitsOfUTF16("\xfe\xff\0a"sv, std::endian::little);  // u"a"
#pragma once

#include <bit>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The order of the bytes of UTF-16 that has a byte order mark or begins with a character of ASCII; nothing for
/// other bytes.
std::optional<std::endian> orderOfUTF16(std::string_view bytes);

/// The code units of UTF-16, without its byte order mark, in the given order where no mark says another. Half a
/// unit at the end does not count.
std::u16string unitsOfUTF16(std::string_view bytes, std::endian order);

}  // namespace nimbo
