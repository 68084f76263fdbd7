// SPDX-License-Identifier: Apache-2.0
//
// Content types of files, from ContentTypes.tsv and the system's database of signatures. One thread asks at a
// time.
//
//     LSCopyItemContentType(u"/tmp"_ns);  // "public.folder"
//     NSError error;
//     const NSString type = LSCopyItemContentType(path, &error);
//     if (!type) NSLog(error.localizedFailureReason);
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {

/// At most so much of a file's beginning is looked at, besides the directory of a zip archive or an OLE
/// compound file.
inline constexpr std::size_t kContentTypeHeadBytes = 64 << 10;

/// How many bytes `beginsLikeNoText` has to see.
inline constexpr std::size_t kNoTextHeadBytes = 5;

/// Whether a PDF or an archive begins, whatever it is called: its bytes may all be characters, but are no text.
bool beginsLikeNoText(std::string_view head);

/// Whether a file that begins so is PDF: readers accept the header anywhere in the first 1024 bytes, which the
/// databases of signatures do not.
bool beginsLikePDF(std::string_view head);

/// The uniform type identifier of what stands at `path`; symbolic links are followed. A file goes by its name;
/// by its content only when the name says nothing, may mean several types, or says a kind of text where
/// `beginsLikeNoText` holds. "public.data" when the content says nothing either or cannot be read,
/// "public.folder" for folders that are no documents, "public.item" for what is neither file nor folder, which
/// is never opened. Nil when nothing is there, or cannot be reached: `*error` says which.
NSString LSCopyItemContentType(const NSString &path, NSError *error = nullptr);

}  // namespace nimbo
