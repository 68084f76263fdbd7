// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Markup/TagScanner.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A `TagHandler` that finds the character set which a page declares: in an XML declaration or a meta tag, but
/// in no tag behind "<body>". Its context is an `NSMutableString`, which gets the name as it is written, with
/// the entities of a meta tag converted; it stays as it is when there is none.
/// Any thread may scan with it, each with a string of its own.
///
///     NSMutableString charset;
///     GetTagsOfString(page, RetrieveEncodingHandler, &charset, false);
///     const CFStringEncoding encoding = charset2CFStringEncoding(std::move(charset).string());
extern const TagHandler RetrieveEncodingHandler;

}  // namespace nimbo
