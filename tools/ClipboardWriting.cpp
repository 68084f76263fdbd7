// SPDX-License-Identifier: Apache-2.0
#include "tools/ClipboardWriting.hpp"

#include <vector>

#include "Classes/Pasteboard/MorePasteboardTypes.hpp"
#include "Classes/Pasteboard/NSString+NimboPasteboardSupport.hpp"
#include "Classes/Pasteboard/NSURL+NimboPasteboardSupport.hpp"
#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "tools/Clipboard.hpp"
#include "tools/InputFile.hpp"
#include "tools/InputText.hpp"
#include "tools/ReadableText.hpp"

namespace nimbo {

namespace {

/// The same thing in several types, the best one first.
class Offers {
 public:
  void add(const NSString &type, const NSData &data) {
    if (!data) return;
    types_.push_back(type);
    data_.push_back(data);
  }
  void add(const NSString &type, const NSString &string) {
    if (!string) return;
    const std::string bytes = string.UTF8String();
    add(type, NSData::dataWithBytes(bytes.data(), bytes.size()));
  }
  void addRichText(const NSAttributedString &text, const NSData &rtf) {
    const NSRange all = {0, text.length()};
    if (text.containsAttachments()) add(NSRTFDPboardType, RTFDFromRange(text, all));
    add(NSRTFPboardType, rtf ? rtf : RTFFromRange(text, all));
  }

  void copy(double seconds) const {
    if (types_.empty()) throw InputError(kClipboardName, "there is nothing to copy");
    NSError error;
    const NSPasteboard clipboard = clipboardWithin(seconds);
    bool isCopied = clipboard.declareTypes(types_, &error);
    for (std::size_t i = 0; isCopied && i < types_.size(); ++i)
      isCopied = clipboard.setData(data_[i], types_[i], &error);
    if (!isCopied) throw InputError(kClipboardName, error);
  }

 private:
  std::vector<NSString> types_;
  std::vector<NSData> data_;
};

}  // namespace

void copyText(const NSString &text, double seconds) {
  NSError error;
  if (!copyToPasteboard(text, clipboardWithin(seconds), &error)) throw InputError(kClipboardName, error);
}

void copyURL(const NSURL &url, const NSString &title, double seconds) {
  NSError error;
  const NSPasteboard clipboard = clipboardWithin(seconds);
  const bool isCopied = title ? copyToPasteboardWithTitle(url, clipboard, title, &error)
                              : copyToPasteboard(url, clipboard, &error);
  if (!isCopied) throw InputError(kClipboardName, error);
}

void copyPicture(const NSData &tiff, const NSData &png, double seconds) {
  Offers offers;
  offers.add(PNGPboardType, png);
  offers.add(NSTIFFPboardType, tiff);
  offers.copy(seconds);
}

void copyRichText(const NSAttributedString &text, const NSData &rtf, double seconds) {
  Offers offers;
  offers.addRichText(text, rtf);
  offers.add(NSStringPboardType, readableText(text));
  offers.copy(seconds);
}

void copyPage(const NSString &page, const NSAttributedString &text, double seconds) {
  Offers offers;
  offers.add(NSHTMLPboardType, pageDeclaringUTF8(page));
  offers.addRichText(text, NSData());
  offers.add(NSStringPboardType, readableText(page));
  offers.copy(seconds);
}

}  // namespace nimbo
