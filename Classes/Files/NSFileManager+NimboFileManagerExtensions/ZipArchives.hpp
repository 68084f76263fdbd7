// SPDX-License-Identifier: Apache-2.0
//
// Zip archives of files and folders, made by programs that they wait for. No half of an archive ever stands
// where it is to be: programs write to another name first. Any thread may make them.
//
//     NSError error;
//     if (!compressFileAtPath(folder, u"/tmp/Copy.zip"_ns, true, &error)) tell(error.localizedFailureReason);
//     compressFiles({u"a.txt"_ns, u"Pictures"_ns}, folder, u"/tmp/Some.zip"_ns, false);
#pragma once

#include <span>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// Makes an archive of a file, or of a folder with all that is in it, in the place of what stands at `toPath`.
/// With `keepParent` the names in it begin with that of the folder. Resource forks and Finder information, be
/// they attributes or "._" companions, stand below "__MACOSX"; symbolic links stay links. It is made by
/// "/usr/bin/ditto" where that is, else by a program of this system's own, `quiverleaf-archive`. False when
/// there is nothing at `path`, no such program, or something cannot be read or written; the old archive is then
/// as it was; `*error` says why.
bool compressFileAtPath(const NSString &path, const NSString &toPath, Flag keepParent,
                        NSError *error = nullptr);

/// Makes an archive of files and folders, which are named from a folder, by "/usr/bin/zip"; with `append` it
/// puts them into the archive that is there, in the place of those with the same names. What a symbolic link
/// leads to is archived. Any name is a name, also one that begins with "-". A relative archive path begins at
/// this process's working folder; ".zip" is appended to one without an extension, and what stands at that one
/// itself is left alone. False when no file is named, the folder is none, the old archive cannot be removed, or
/// the program is not there or fails, as it does when it cannot read one of the files or when the names are
/// longer together than a command line may be; `*error` says why.
bool compressFiles(std::span<const NSString> files, const NSString &inDirectory, const NSString &toPath,
                   Flag append, NSError *error = nullptr);
/// As above with a list.
bool compressFiles(std::initializer_list<NSString> files, const NSString &inDirectory, const NSString &toPath,
                   Flag append, NSError *error = nullptr);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
