// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string_view>

#include "platform/CoreServices/TextEncodings/TECConverter.hpp"

namespace nimbo {

enum class ConversionDirection { toUnicode, fromUnicode };

// The converters behind TECCreateConverter. Null when there is none of the name.

/// By a converter's whole name, as `converterNameOfEncoding` gives it; a zero byte must follow.
std::unique_ptr<TECConverter> makeNamedConverter(std::string_view name, ConversionDirection direction);
std::unique_ptr<TECConverter> makeICUConverter(const char *name, ConversionDirection direction);
std::unique_ptr<TECConverter> makeIconvConverter(const char *name, ConversionDirection direction);
std::unique_ptr<TECConverter> makeTableConverter(const char *name, ConversionDirection direction);
std::unique_ptr<TECConverter> makeUTF8Converter(ConversionDirection direction);
/// UTF-16 to UTF-16, with or without changing the order of bytes; lone surrogates pass.
std::unique_ptr<TECConverter> makeUTF16Converter(bool swapsBytes);

}  // namespace nimbo
