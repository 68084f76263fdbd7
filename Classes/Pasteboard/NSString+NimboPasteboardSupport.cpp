// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pasteboard/NSString+NimboPasteboardSupport.hpp"

#include <algorithm>

#include "Classes/Pasteboard/MorePasteboardTypes.hpp"
#include "platform/Foundation/NSException.hpp"

namespace nimbo {
inline namespace NimboPasteboardSupport {

bool copyToPasteboard(const NSString &string, const NSPasteboard &pasteboard, NSError *error) {
  if (!string) {
    setError(error, ErrorCode::incomplete, "there is no string to copy");
    return false;
  }
  return pasteboard.declareTypes({NSStringPboardType}, error) &&
         pasteboard.setString(string, NSStringPboardType, error);
}

NSString stringFromPasteboard(const NSPasteboard &pasteboard, NSError *error) {
  try {
    const NSString wanted[] = {NSStringPboardType, NSTabularTextPboardType, NSHTMLPboardType};
    const NSString type = pasteboard.availableTypeFromArray(wanted, error);
    return type ? pasteboard.stringForType(type, error) : NSString();
  } catch (const NSException &exception) {
    logException("stringFromPasteboard:", "NSString", exception);
    if (error) *error = NSError::errorWithException(exception);
    return {};
  }
}

NSString fileTypeForPboardType(const NSString &type) {
  struct FileType {
    NSString type, extension;
  };
  static const FileType kFileTypes[] = {
      {NSTIFFPboardType, u"tiff"_ns},     {PNGPboardType, u"png"_ns},
      {NSPICTPboardType, u"pict"_ns},     {NSPDFPboardType, u"pdf"_ns},
      {NSPostScriptPboardType, u"ps"_ns}, {NSHTMLPboardType, u"html"_ns},
      {NSRTFPboardType, u"rtf"_ns},       {NSRTFDPboardType, u"rtfd"_ns},
      {NSStringPboardType, u"txt"_ns},    {NSTabularTextPboardType, u"csv"_ns},
      {NSVCardPboardType, u"vcf"_ns},     {NSURLPboardType, u"url"_ns},
      {URLFlavorPboardType, u"url"_ns},   {AppleURLPboardType, u"url"_ns},
      {PublicURLPboardType, u"url"_ns},   {WebArchivePboardType, u"webarchive"_ns},
  };
  const auto *const found = std::ranges::find(kFileTypes, type, &FileType::type);
  return found == std::end(kFileTypes) ? NSString() : found->extension;
}

}  // namespace NimboPasteboardSupport
}  // namespace nimbo
