// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pasteboard/NSImage+NimboPasteboardSupport.hpp"

namespace nimbo {
inline namespace NimboPasteboardSupport {

bool copyToPasteboard(const NSImage &image, const NSPasteboard &pasteboard, NSError *error) {
  constexpr int kLZW = 5;
  const NSData tiff = image.TIFFRepresentationUsingCompression(kLZW, 1.0F, error);
  return tiff && pasteboard.declareTypes({NSTIFFPboardType}, error) &&
         pasteboard.setData(tiff, NSTIFFPboardType, error);
}

}  // namespace NimboPasteboardSupport
}  // namespace nimbo
