// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Types.hpp"

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/Collections/NSArray+NSStringExtensions.hpp"
#include "Classes/Paths/FileTypes.hpp"

namespace nimbo {
inline namespace NSURLNimboExtensions {

namespace {

using List = std::vector<NSString>;

constexpr FileKinds kindsIf(bool flag, FileKinds kinds) {
  return flag ? kinds : FileKinds::none;
}

constexpr FileKinds officeKinds(bool MSWord, bool OpenOffice, bool StarOffice, bool PDF, bool PostScript) {
  using enum FileKinds;
  return office | kindsIf(MSWord, word) | kindsIf(OpenOffice, openOffice) | kindsIf(StarOffice, starOffice) |
         kindsIf(PDF, pdf) | kindsIf(PostScript, postScript);
}

constexpr FileKinds binaryKinds(bool hasRichText, FileKinds ofOffice) {
  using enum FileKinds;
  return image | media | archive | executable | ofOffice | kindsIf(hasRichText, richText) | data;
}

constexpr FileKinds kAllOffice = officeKinds(true, true, true, true, true);
constexpr FileKinds kAllBinary = binaryKinds(true, kAllOffice);

/// Compares as `containsStringNoCase` does.
bool isOfKinds(const NSString &extension, FileKinds kinds) {
  if (isAsciiUnichars(extension.characters(), extension.length()))
    return intersects(kindsOfExtension(extension.view()), kinds);
  // Some other characters fold to ASCII, one of them to several letters.
  return containsStringNoCase(extensionsOfKinds(kinds), extension);
}

}  // namespace

const List &imageTypes() {
  static const List list = extensionsOfKinds(FileKinds::image);
  return list;
}

const List &markupTypes() {
  static const List list = extensionsOfKinds(FileKinds::markup);
  return list;
}

const List &executableTypes() {
  static const List list = extensionsOfKinds(FileKinds::executable);
  return list;
}

const List &officeTypes() {
  static const List list = extensionsOfKinds(kAllOffice);
  return list;
}

const List &binaryFileTypes() {
  static const List list = extensionsOfKinds(kAllBinary);
  return list;
}

List richTextTypes() {
  return extensionsOfKinds(FileKinds::richText);
}

List archiveTypes() {
  return extensionsOfKinds(FileKinds::archive);
}

List multimediaTypes() {
  return extensionsOfKinds(FileKinds::media);
}

List officeTypesIncludingMSWord(Flag MSWord, Flag OpenOffice, Flag StarOffice, Flag PDF, Flag PostScript) {
  return extensionsOfKinds(officeKinds(MSWord, OpenOffice, StarOffice, PDF, PostScript));
}

List binaryFileTypesIncludingRichText(Flag richText, Flag MSWord, Flag OpenOffice, Flag StarOffice, Flag PDF,
                                      Flag PostScript) {
  return extensionsOfKinds(binaryKinds(richText, officeKinds(MSWord, OpenOffice, StarOffice, PDF, PostScript)));
}

bool isImageType(const NSString &extension) {
  return isOfKinds(extension, FileKinds::image);
}

bool isMarkupType(const NSString &extension) {
  return isOfKinds(extension, FileKinds::markup);
}

bool isRichTextType(const NSString &extension) {
  return isOfKinds(extension, FileKinds::richText);
}

bool isExecutableType(const NSString &extension) {
  return isOfKinds(extension, FileKinds::executable);
}

bool isArchiveType(const NSString &extension) {
  return isExtensionOfKinds(extension, FileKinds::archive, initUpperCharsTable());
}

bool isMultimediaType(const NSString &extension) {
  return isExtensionOfKinds(extension, FileKinds::media, initUpperCharsTable());
}

bool isOfficeType(const NSString &extension) {
  return isOfKinds(extension, kAllOffice);
}

bool isBinaryFileType(const NSString &extension) {
  return isOfKinds(extension, kAllBinary);
}

bool isOfficeTypeIncludingMSWord(const NSString &extension, Flag MSWord, Flag OpenOffice, Flag StarOffice,
                                 Flag PDF, Flag PostScript) {
  return isOfKinds(extension, officeKinds(MSWord, OpenOffice, StarOffice, PDF, PostScript));
}

bool isBinaryFileTypeIncludingRichText(const NSString &extension, Flag richText, Flag MSWord, Flag OpenOffice,
                                       Flag StarOffice, Flag PDF, Flag PostScript) {
  return isOfKinds(extension,
                   binaryKinds(richText, officeKinds(MSWord, OpenOffice, StarOffice, PDF, PostScript)));
}

bool isMultimediaType(const NSString &extension, Flag audio, Flag video, Flag embedded) {
  const FileKinds kinds = kindsIf(audio, FileKinds::audio) | kindsIf(video, FileKinds::video) |
                          kindsIf(embedded, FileKinds::embedded);
  return isExtensionOfKinds(extension, kinds, initLowerCharsTable());
}

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
