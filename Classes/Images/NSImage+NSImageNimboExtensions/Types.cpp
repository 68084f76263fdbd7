// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Types.hpp"

#include <algorithm>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Kinds.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Listing.hpp"
#include "Classes/Images/TypeStrings.hpp"
#include "Classes/Paths/FileTypes.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Case.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Comparing.hpp"
#include "platform/AppKit/Images/NSImage.hpp"
#include "platform/Foundation/NSHFSFileTypes.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"

namespace nimbo {
inline namespace NSImageNimboExtensions {

namespace {

using List = std::vector<NSString>;

/// Adds the extensions, each in small letters and in capitals.
void addInBothCases(List &list, const List &extensions) {
  for (const NSString &extension : extensions) {
    list.push_back(extension);
    list.push_back(uppercaseAsciiString(extension));
  }
}

bool isOfKind(const NSString &extension, FileKinds kind) {
  return isExtensionOfKinds(extension, kind, initUpperCharsTable());
}

bool isPDFType(const NSString &type) {
  return type == u"'PDF '"_ns;
}

bool isFileOf(bool (*isOfType)(const NSString &, const NSString &), const NSString &path) {
  return isOfType(pathExtension(path), NSHFSTypeOfFile(path));
}

/// What a MIME type says of the kind of file: its subtype without what only tells who has named it. Nil when
/// that is too short to say anything.
NSString tellingSubtype(const NSString &MIMEType) {
  constexpr std::u16string_view kUnregistered = u"x-";
  constexpr std::size_t kShortest = 2;
  std::u16string_view subtype = MIMEType.view().substr(MIMEType.view().find(u'/') + 1);
  if (subtype.starts_with(kUnregistered)) subtype.remove_prefix(kUnregistered.size());
  if (subtype.size() < kShortest) return NSString();
  return NSString::stringWithCharacters(subtype.substr(subtype.rfind(u'.') + 1));
}

List typesOfImageFiles() {
  List types = NSImage::imageFileTypes();
  addInBothCases(types, {u"jpe"_ns, u"ps"_ns, u"eps"_ns, u"ai"_ns});
  return types;
}

List typesOfPDFFiles() {
  List types(1, u"'PDF '"_ns);
  addInBothCases(types, extensionsOfKinds(FileKinds::pdfForm));
  return types;
}

}  // namespace

const List &PDFBundleTypes() {
  static const List list = [] {
    List types;
    addInBothCases(types, extensionsOfKinds(FileKinds::pdfBundle));
    return types;
  }();
  return list;
}

const List &PDFFileTypes() {
  static const List list = typesOfPDFFiles();
  return list;
}

const List &ImageFileTypes() {
  static const List list = typesOfImageFiles();
  return list;
}

bool isPDFBundleExtension(const NSString &extension) {
  return isOfKind(extension, FileKinds::pdfBundle);
}

bool isRealPDFExtension(const NSString &extension, const NSString &type) {
  return isOfKind(extension, FileKinds::pdf) || isPDFType(type);
}

bool isPDFExtension(const NSString &extension, const NSString &type) {
  return isPDFType(type) || isOfKind(extension, FileKinds::pdfForm);
}

bool isImageExtension(const NSString &extension, const NSString &type) {
  const bool hasType = type.length() > 0;
  return std::ranges::any_of(ImageFileTypes(), [&](const NSString &entry) {
    return rangeIsEqualToNoCase(entry, {0, entry.length()}, extension) || (hasType && entry == type);
  });
}

bool isWebImageExtension(const NSString &extension) {
  return isOfKind(extension, FileKinds::webImage);
}

bool isPDFBundle(const NSString &path) {
  return isPDFBundleExtension(pathExtension(path));
}

bool isRealPDFFile(const NSString &path) {
  return isFileOf(isRealPDFExtension, path);
}

bool isPDFFile(const NSString &path) {
  return isFileOf(isPDFExtension, path);
}

bool isImageFile(const NSString &path) {
  return isFileOf(isImageExtension, path);
}

bool isUTIImageFile(const NSString &) {
  return false;
}

NSString pathToPDF(const NSString &path) {
  const NSString PDF = u"pdf"_ns;
  if (!isPDFBundle(path)) return path;
  const NSString name =
      stringByAppendingPathExtension(stringByDeletingPathExtension(lastPathComponent(path)), PDF);
  NSString namesake = stringByAppendingPathComponent(path, name);
  if (fileExistsAtPath(namesake, true)) return namesake;
  const List files = directoryContentsAtPath(path, PDF);
  return files.empty() ? path : stringByAppendingPathComponent(path, files.front());
}

NSString pathExtensionForType(const NSString &type) {
  constexpr std::size_t kCodeLength = 6;
  const std::u16string_view units = type.view();
  if (units.empty()) return NSString();
  if (units.size() == kCodeLength && units.front() == u'\'' && units.back() == u'\'')
    return pathExtensionForTypeCode(type);
  if (std::ranges::count(units, u'/') != 1) return type;
  const NSString subtype = tellingSubtype(type);
  const NSString known = pathExtensionForMIMESubtype(subtype);
  return known ? known : subtype;
}

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
