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

#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {

/// At most so much of a file's beginning is looked at, besides the directory of a zip archive or an OLE
/// compound file.
inline constexpr std::size_t kContentTypeHeadBytes = 64 << 10;

/// The uniform type identifier of what stands at `path`; symbolic links are followed. A file goes by its name;
/// only when the name says nothing, or may mean several types, by its content. "public.data" when that says
/// nothing either or cannot be read, "public.folder" for folders that are no documents, "public.item" for what
/// is neither file nor folder, which is never opened. Nil when nothing is there, or cannot be reached: `*error`
/// says which.
NSString LSCopyItemContentType(const NSString &path, NSError *error = nullptr);

}  // namespace nimbo
