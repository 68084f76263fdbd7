// SPDX-License-Identifier: Apache-2.0
//
// Character references in strings. Each function answers the string itself when nothing is converted, and when
// there is no memory for the result; nil for nil. The decoders leave strings of 3 units or fewer as they are.
// Any thread may call them.
//
//     stringByConvertingEntitiesToCharacters(u"Q&amp;A &#8211; caf&eacute;"_ns);  // "Q&A – café"
//     stringByConvertingCharactersToStandardEntities(u"a < b"_ns);  // "a &lt; b"
//     stringByConvertingCharactersToEntities(u"café"_ns);  // "caf&eacute;"
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace HtmlExtensions {

/// Decodes character references by `convertEntities2Characters`. The folding of `nonUmlauted` takes effect only
/// when at least one reference is decoded.
NSString stringByConvertingEntitiesToCharacters(const NSString &string, Flag standard, Flag onlyNumericEntities,
                                                Flag nonUmlauted);
/// Decodes all references.
NSString stringByConvertingEntitiesToCharacters(const NSString &string);
/// Decodes all references, with or without the folding.
NSString stringByConvertingEntitiesToCharactersNonUmlauted(const NSString &string, Flag nonUmlauted);
/// Decodes only "&quot;", "&amp;", "&lt;" and "&gt;".
NSString stringByConvertingStandardEntitiesToCharacters(const NSString &string);

/// Writes "&", the double quote, "<" and ">" as entities.
NSString stringByConvertingCharactersToStandardEntities(const NSString &string);
/// Writes units above 127 as numeric references.
NSString stringByConvertingHighCharactersToEntities(const NSString &string);
/// Writes units above 127 as named entities where there is a name, else as numeric references. Markup is not
/// escaped.
NSString stringByConvertingCharactersToEntities(const NSString &string);

/// Makes the tables that the conversions use, so that the first of them does not have to. May be called from
/// any thread, and need not be called.
void initConversionTables();

}  // namespace HtmlExtensions
}  // namespace nimbo
