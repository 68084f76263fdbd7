// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pasteboard/NSAttributedString+NimboPasteboardSupport.hpp"

#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/Foundation/NSException.hpp"

namespace nimbo {
inline namespace NimboPasteboardSupport {

bool copyToPasteboard(const NSAttributedString &text, const NSPasteboard &pasteboard, NSError *error) {
  const bool hasAttachments = text.containsAttachments();
  const NSRange all = {0, text.length()};
  const NSData data = hasAttachments ? RTFDFromRange(text, all) : RTFFromRange(text, all);
  if (!data) {
    setError(error, text ? ErrorCode::tooLarge : ErrorCode::incomplete, "no rich text can be made of it");
    return false;
  }
  const NSString &type = hasAttachments ? NSRTFDPboardType : NSRTFPboardType;
  return pasteboard.declareTypes({type}, error) && pasteboard.setData(data, type, error);
}

NSAttributedString attributedStringFromPasteboard(const NSPasteboard &pasteboard, NSError *error) {
  try {
    const NSString wanted[] = {NSRTFDPboardType, NSRTFPboardType};
    const NSString type = pasteboard.availableTypeFromArray(wanted, error);
    const NSData data = type ? pasteboard.dataForType(type, error) : NSData();
    if (!data) return {};
    return type == NSRTFDPboardType ? initWithRTFD(data, nullptr, error) : initWithRTF(data, nullptr, error);
  } catch (const NSException &exception) {
    logException("attributedStringFromPasteboard:", "NSAttributedString", exception);
    if (error) *error = NSError::errorWithException(exception);
    return {};
  }
}

}  // namespace NimboPasteboardSupport
}  // namespace nimbo
