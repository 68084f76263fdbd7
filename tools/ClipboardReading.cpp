// SPDX-License-Identifier: Apache-2.0
#include "tools/ClipboardReading.hpp"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "Classes/Pasteboard/MorePasteboardTypes.hpp"
#include "Classes/Pasteboard/NSAttributedString+NimboPasteboardSupport.hpp"
#include "Classes/Pasteboard/NSPasteboard+NimboPasteboardSupport.hpp"
#include "Classes/Pasteboard/NSString+NimboPasteboardSupport.hpp"
#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "tools/Clipboard.hpp"
#include "tools/InputFile.hpp"
#include "tools/InputText.hpp"
#include "tools/Pictures.hpp"
#include "tools/ReadableText.hpp"
#include "tools/RichTextMarkup.hpp"

namespace nimbo {

namespace {

using Types = std::vector<NSString>;

const Types &textTypes() {
  static const Types types = {NSStringPboardType, NSTabularTextPboardType};
  return types;
}

const Types &richTypes() {
  static const Types types = {NSRTFDPboardType, NSRTFPboardType};
  return types;
}

const Types &URLTypes() {
  static const Types types = {NSURLPboardType, URLFlavorPboardType, AppleURLPboardType, PublicURLPboardType};
  return types;
}

const Types &pictureTypes() {
  static const Types types = {PNGPboardType, NSTIFFPboardType, NSPDFPboardType};
  return types;
}

bool isOneOf(const NSString &type, const Types &types) {
  return std::ranges::find(types, type) != types.end();
}

/// Whether it is a whole PNG file; what another program calls one need not be.
bool isPNG(const NSData &data) {
  return data.view().starts_with("\x89PNG\r\n\x1a\n") && data.view().ends_with("IEND\xae\x42\x60\x82");
}

/// What a reader answers. Raises `InputError` when that is nil.
template <class Value>
const Value &checked(const Value &value, const NSError &error) {
  if (!value) throw InputError(kClipboardName, error);
  return value;
}

/// The clipboard, and the best of its types for what is asked for.
class Clipboard {
 public:
  /// `wanted` are types in order of preference, `what` they are stands in the reason when there is none.
  Clipboard(std::initializer_list<Types> wanted, const char *what, double seconds)
      : clipboard_(clipboardWithin(seconds)), seconds_(seconds) {
    NSError error;
    const Types types = clipboard_.types(&error);
    for (const Types &some : wanted) {
      const auto found = std::ranges::find_first_of(some, types);
      if (!type_ && found != some.end()) type_ = *found;
    }
    if (!type_ && !error)
      error = NSError::errorWithCode(ErrorCode::incomplete, std::string("it holds no ") + what);
    checked(type_, error);
  }

  const NSString &type() const { return type_; }

  NSData data() const {
    NSError error;
    const NSData data = clipboard_.dataForType(type_, &error);
    return checked(data, error);
  }
  NSString string() const {
    NSError error;
    const NSString string = clipboard_.stringForType(type_, &error);
    return checked(string, error);
  }
  NSString readablePage() const {
    return checked(readableText(string()),
                   NSError::errorWithCode(ErrorCode::incomplete, "its page has no text"));
  }
  NSData picture() const {
    NSData picture = data();
    if (type_ == PNGPboardType && isPNG(picture)) return picture;
    return makePicture({.what = "picture", .type = u"public.png"_ns, .seconds = seconds_}, picture,
                       kClipboardName);
  }

  /// Rich text of rich text, of a URL, of a picture or, for any other type, of text.
  NSAttributedString richText() const {
    if (isOneOf(type_, pictureTypes())) return attachment(picture());
    if (isOneOf(type_, URLTypes())) return link();
    if (!isOneOf(type_, richTypes())) return NSAttributedString(string());
    NSError error;
    const NSAttributedString text = attributedStringFromPasteboard(clipboard_, &error);
    return checked(text, error);
  }

 private:
  NSAttributedString link() const {
    TextAttributes attributes;
    attributes.link = string();
    const NSString name = URLName(clipboard_);
    return NSAttributedString(name.length() > 0 ? name : attributes.link, Interned(attributes));
  }

  static NSAttributedString attachment(const NSData &png) {
    TextAttributes attributes;
    attributes.attachment = NSTextAttachment(NSFileWrapper::regularFileWithContents(png, u"picture.png"_ns));
    return NSAttributedString(NSString::stringWithCharacters(&NSAttachmentCharacter, 1), Interned(attributes));
  }

  const NSPasteboard clipboard_;
  const double seconds_;
  NSString type_;
};

}  // namespace

NSArray clipboardTypes(double seconds) {
  NSError error;
  NSArray names = NSArray::array();
  for (const NSString &type : clipboardWithin(seconds).types(&error)) names.addObject(type);
  if (error) throw InputError(kClipboardName, error);
  return names;
}

NSString clipboardText(double seconds) {
  const Clipboard clipboard({textTypes(), {NSHTMLPboardType}, richTypes(), URLTypes()}, "text", seconds);
  if (clipboard.type() == NSHTMLPboardType) return clipboard.readablePage();
  return isOneOf(clipboard.type(), richTypes()) ? readableText(clipboard.richText()) : clipboard.string();
}

NSString clipboardPage(double seconds) {
  const Clipboard clipboard({{NSHTMLPboardType}, richTypes(), URLTypes(), textTypes()}, "text", seconds);
  return clipboard.type() == NSHTMLPboardType ? clipboard.string() : markupOfRichText(clipboard.richText());
}

NSData clipboardPicture(double seconds) {
  return Clipboard({pictureTypes()}, "picture", seconds).picture();
}

HelperClient::Answer clipboardRichText(HelperClient &client, double seconds) {
  const Clipboard clipboard({richTypes(), {NSHTMLPboardType}, URLTypes(), textTypes(), pictureTypes()},
                            "text and no picture", seconds);
  if (clipboard.type() == NSHTMLPboardType) {
    const std::string page = pageDeclaringUTF8(clipboard.string()).UTF8String();
    return client.RTFDWithHTML(NSData::dataWithBytes(page.data(), page.size()), NSString(), false);
  }
  HelperClient::Answer answer;
  answer.status = HelperClient::Status::answered;
  const NSAttributedString text = clipboard.richText();
  answer.result = RTFDFromRange(text, {0, text.length()});
  return answer;
}

}  // namespace nimbo
