// SPDX-License-Identifier: Apache-2.0
//
// The converters behind TECCreateConverter.
#pragma once

#include <memory>
#include <string_view>

#include "platform/CoreServices/TextEncodings/TECConverter.hpp"

namespace nimbo {

/// Which side of a conversion is UTF-16.
enum class ConversionDirection { toUnicode, fromUnicode };

/// The converter of a whole name, as `converterNameOfEncoding` gives it; a zero byte must follow. Null when
/// there is none.
std::unique_ptr<TECConverter> makeNamedConverter(std::string_view name, ConversionDirection direction);
/// The converter that ICU knows by the name; null when it knows none.
std::unique_ptr<TECConverter> makeICUConverter(const char *name, ConversionDirection direction);
/// The converter that the C library knows by the name; null when it knows none.
std::unique_ptr<TECConverter> makeIconvConverter(const char *name, ConversionDirection direction);
/// The converter of the project's own table of the name; null when there is none.
std::unique_ptr<TECConverter> makeTableConverter(const char *name, ConversionDirection direction);
/// The converter of UTF-8; never null.
std::unique_ptr<TECConverter> makeUTF8Converter(ConversionDirection direction);
/// The converter of UTF-16 to UTF-16, with or without changing the order of bytes; lone surrogates pass.
std::unique_ptr<TECConverter> makeUTF16Converter(bool swapsBytes);

}  // namespace nimbo
