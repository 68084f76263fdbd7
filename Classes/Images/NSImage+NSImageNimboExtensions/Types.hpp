// SPDX-License-Identifier: Apache-2.0
//
// Files that are pictures or have a form as PDF, by their path extensions and type codes. A code is a string of
// six units: four characters between apostrophes. Extensions are compared in either case, codes exactly; both
// may be nil. Any thread may ask.
//
//     isPDFExtension(u"EPS"_ns);  // true
//     isImageExtension(u""_ns, u"'PNGf'"_ns);  // true
//     pathExtensionForType(u"image/x-portable-pixmap"_ns);  // "ppm"
#pragma once

#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSImageNimboExtensions {

/// The extensions, in both cases, of folders that hold a PDF file. Made on first use, as the other lists.
const std::vector<NSString> &PDFBundleTypes();
/// The type code and the extensions, in both cases, of files that are PDF or have a form as PDF.
const std::vector<NSString> &PDFFileTypes();
/// What `NSImage::imageFileTypes` answers, and further extensions in both cases: "jpe", and those of PostScript
/// and Illustrator.
const std::vector<NSString> &ImageFileTypes();

/// Whether a folder with this extension holds a PDF file.
bool isPDFBundleExtension(const NSString &extension);
/// Whether the file is PDF.
bool isRealPDFExtension(const NSString &extension, const NSString &type = NSString());
/// Whether the file is PDF, PostScript or Illustrator's.
bool isPDFExtension(const NSString &extension, const NSString &type = NSString());
/// Whether the extension or the code is one of `ImageFileTypes`.
bool isImageExtension(const NSString &extension, const NSString &type = NSString());
/// Whether all browsers show the image.
bool isWebImageExtension(const NSString &extension);

/// `isPDFBundleExtension` of the path.
bool isPDFBundle(const NSString &path);
/// `isRealPDFExtension` of the path and of the file's type code.
bool isRealPDFFile(const NSString &path);
/// `isPDFExtension` of the path and of the file's type code.
bool isPDFFile(const NSString &path);
/// `isImageExtension` of the path and of the file's type code.
bool isImageFile(const NSString &path);
/// False: no file is asked for its uniform type identifier here.
bool isUTIImageFile(const NSString &path);

/// The PDF file inside a folder that `isPDFBundle` names: the one that is called as the folder, else the first
/// one that the file system lists. The path itself when there is none, or for any other path.
NSString pathToPDF(const NSString &path);

/// The path extension for a type code, nil when it is not known; or for a MIME type, which is the subtype
/// without "x-" and what precedes its last full stop when nothing better is known, nil when that has no two
/// units. Any other string is taken for an extension and answered itself; nil for the empty string.
NSString pathExtensionForType(const NSString &type);

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
