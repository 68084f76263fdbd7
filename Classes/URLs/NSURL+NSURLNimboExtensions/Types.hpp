// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSURLNimboExtensions {

// Path extensions by what the files are, in small letters and in a fixed order; some stand in a list twice.
// Those answered by reference are made on first use and live as long as the process.

const std::vector<NSString> &imageTypes();
const std::vector<NSString> &markupTypes();
const std::vector<NSString> &executableTypes();
const std::vector<NSString> &officeTypes();
const std::vector<NSString> &binaryFileTypes();
std::vector<NSString> richTextTypes();
std::vector<NSString> archiveTypes();
std::vector<NSString> multimediaTypes();
/// The flags add to spreadsheets and presentations, which are always there.
std::vector<NSString> officeTypesIncludingMSWord(Flag MSWord, Flag OpenOffice, Flag StarOffice, Flag PDF,
                                                 Flag PostScript);
/// Images, multimedia, archives, programs, the list above, rich text if asked for, and "dat".
std::vector<NSString> binaryFileTypesIncludingRichText(Flag richText, Flag MSWord, Flag OpenOffice,
                                                       Flag StarOffice, Flag PDF, Flag PostScript);

// Whether an extension, in any case, is in the list of this name. False for nil.

bool isImageType(const NSString &extension);
bool isMarkupType(const NSString &extension);
bool isRichTextType(const NSString &extension);
bool isExecutableType(const NSString &extension);
bool isArchiveType(const NSString &extension);
bool isMultimediaType(const NSString &extension);
bool isOfficeType(const NSString &extension);
bool isBinaryFileType(const NSString &extension);
bool isOfficeTypeIncludingMSWord(const NSString &extension, Flag MSWord, Flag OpenOffice, Flag StarOffice,
                                 Flag PDF, Flag PostScript);
bool isBinaryFileTypeIncludingRichText(const NSString &extension, Flag richText, Flag MSWord, Flag OpenOffice,
                                       Flag StarOffice, Flag PDF, Flag PostScript);

/// Whether an extension, in any case, is one of the kinds of media asked for. These lists are shorter than that
/// of all multimedia and hold what browsers play; "embedded" are the kinds that need a plug-in.
bool isMultimediaType(const NSString &extension, Flag audio, Flag video, Flag embedded);

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
