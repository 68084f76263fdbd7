// SPDX-License-Identifier: Apache-2.0
//
// The text of a saved page and of its frames, for searching. Any thread may ask.
//
//     NSURL base;
//     NSString source;
//     const NSString text = searchableTextOfFile(path, &base, &source);
//     if (!text) NSLog(u"%@ is no web archive", path);
#pragma once

#include "platform/Foundation/NSMutableString.hpp"
#include "platform/WebKit/WebArchive.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace SearchableText {

/// Frames behind so many units of markup are left out; the first page is always read.
inline constexpr std::uint64_t kMaximumSearchableMarkupLength = 64u << 20;

/// The searchable text of the archive in a file; `*baseURL` and `*source`, unless they are null, get the URL
/// and the markup of its main resource. All are nil when the file cannot be read, is empty or holds no archive;
/// `*error` says that, or what is left out.
NSString searchableTextOfFile(const NSString &path, NSURL *baseURL = nullptr, NSString *source = nullptr,
                              NSError *error = nullptr);

/// The texts of the main resource and of all frames, in order; two line feeds stand in front of each, also of
/// the first one. Empty when none has any. `*error` says when frames are left out.
NSString searchableText(const WebArchive &archive, NSError *error = nullptr);
/// The same; `*source`, unless it is null, gets the markup of the main resource.
NSString searchableTextAndSource(const WebArchive &archive, NSString *source, NSError *error = nullptr);
/// Appends what `searchableText` answers. The text of a page is that of its body, laid out as its source is, by
/// `stringByConvertingHtml2PlainTextNonUmlauted`. `*error` says when frames are left out.
void appendSearchableTextTo(const WebArchive &archive, NSMutableString &text, NSError *error = nullptr);

}  // namespace SearchableText
}  // namespace nimbo
