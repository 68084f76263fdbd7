// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace HtmlExtensions {

// Each answers the string itself when nothing is converted, and when there is no memory for the result; nil for
// nil. The decoders leave strings of 3 units or fewer as they are.

/// Decodes character references by `convertEntities2Characters`. The folding of `nonUmlauted` takes effect only
/// when at least one reference is decoded.
NSString stringByConvertingEntitiesToCharacters(const NSString &string, bool standard, bool onlyNumericEntities,
                                                bool nonUmlauted);
/// All references.
NSString stringByConvertingEntitiesToCharacters(const NSString &string);
/// All references, with or without the folding.
NSString stringByConvertingEntitiesToCharactersNonUmlauted(const NSString &string, bool nonUmlauted);
/// Only "&quot;", "&amp;", "&lt;" and "&gt;".
NSString stringByConvertingStandardEntitiesToCharacters(const NSString &string);

/// "&", the double quote, "<" and ">" as entities.
NSString stringByConvertingCharactersToStandardEntities(const NSString &string);
/// Units above 127 as numeric references.
NSString stringByConvertingHighCharactersToEntities(const NSString &string);
/// Units above 127 as named entities where there is a name, else as numeric references. Markup is not escaped.
NSString stringByConvertingCharactersToEntities(const NSString &string);

/// Makes the tables that the conversions use, so that the first of them does not have to. May be called from
/// any thread, and need not be called.
void initConversionTables();

}  // namespace HtmlExtensions
}  // namespace nimbo
