// SPDX-License-Identifier: Apache-2.0
//
// Path extensions by what the files are (Classes/Paths/FileTypes.tsv), in small letters and in a fixed order;
// some stand in a list twice. Lists answered by reference are made on first use and live as long as the
// process. An extension is looked for in any case; nil is in no list. Any thread may ask.
//
//     isImageType(u"JPG"_ns);  // true
//     isBinaryFileType(u"html"_ns);  // false
//     for (const NSString &extension : markupTypes()) NSLog(extension);
#pragma once

#include <vector>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSURLNimboExtensions {

/// The extensions of images.
const std::vector<NSString> &imageTypes();
/// The extensions of markup.
const std::vector<NSString> &markupTypes();
/// The extensions of programs.
const std::vector<NSString> &executableTypes();
/// The extensions of office documents of all kinds.
const std::vector<NSString> &officeTypes();
/// The extensions of all files that are no plain text.
const std::vector<NSString> &binaryFileTypes();
/// The extensions of rich text.
std::vector<NSString> richTextTypes();
/// The extensions of archives.
std::vector<NSString> archiveTypes();
/// The extensions of sounds and movies, and of what plays them.
std::vector<NSString> multimediaTypes();
/// The extensions of spreadsheets and presentations, and of the kinds that the flags add.
std::vector<NSString> officeTypesIncludingMSWord(Flag MSWord, Flag OpenOffice, Flag StarOffice, Flag PDF,
                                                 Flag PostScript);
/// The extensions of images, multimedia, archives, programs, those of `officeTypesIncludingMSWord`, rich text
/// if asked for, and "dat".
std::vector<NSString> binaryFileTypesIncludingRichText(Flag richText, Flag MSWord, Flag OpenOffice,
                                                       Flag StarOffice, Flag PDF, Flag PostScript);

/// Whether the extension is one of `imageTypes`.
bool isImageType(const NSString &extension);
/// Whether the extension is one of `markupTypes`.
bool isMarkupType(const NSString &extension);
/// Whether the extension is one of `richTextTypes`.
bool isRichTextType(const NSString &extension);
/// Whether the extension is one of `executableTypes`.
bool isExecutableType(const NSString &extension);
/// Whether the extension is one of `archiveTypes`.
bool isArchiveType(const NSString &extension);
/// Whether the extension is one of `multimediaTypes`.
bool isMultimediaType(const NSString &extension);
/// Whether the extension is one of `officeTypes`.
bool isOfficeType(const NSString &extension);
/// Whether the extension is one of `binaryFileTypes`.
bool isBinaryFileType(const NSString &extension);
/// Whether the extension is one of `officeTypesIncludingMSWord`.
bool isOfficeTypeIncludingMSWord(const NSString &extension, Flag MSWord, Flag OpenOffice, Flag StarOffice,
                                 Flag PDF, Flag PostScript);
/// Whether the extension is one of `binaryFileTypesIncludingRichText`.
bool isBinaryFileTypeIncludingRichText(const NSString &extension, Flag richText, Flag MSWord, Flag OpenOffice,
                                       Flag StarOffice, Flag PDF, Flag PostScript);

/// Whether the extension is one of the kinds of media asked for. These lists are shorter than that of all
/// multimedia and hold what browsers play; "embedded" are the kinds that need a plug-in.
bool isMultimediaType(const NSString &extension, Flag audio, Flag video, Flag embedded);

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
