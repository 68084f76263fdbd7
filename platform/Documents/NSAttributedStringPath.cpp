// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/NSAttributedStringPath.hpp"

#include <algorithm>
#include <string_view>

#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/CoreServices/ContentTypes.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/Documents/WordProcessorDocuments.hpp"
#include "platform/Foundation/System/RegularFile.hpp"
#include "platform/WebKit/NSAttributedStringHTML.hpp"

namespace nimbo {
namespace {

/// The beginnings of the types that are LibreOffice's; text formats of which it knows more than their text are
/// among them.
constexpr std::u16string_view kOfficeTypes[] = {
    u"com.abisource.",
    u"com.apple.appleworks.",
    u"com.apple.iwork.pages.sffpages",
    u"com.corel.wordperfect.",
    u"com.haansoft.",
    u"com.lotus.wordpro",
    u"com.microsoft.excel.",
    u"com.microsoft.powerpoint.",
    u"com.microsoft.word.",
    u"com.microsoft.works",
    u"org.oasis-open.opendocument.",
    u"org.openoffice.",
    u"org.openxmlformats.",
};

bool isOfficeType(const NSString &type) {
  return std::ranges::any_of(kOfficeTypes,
                             [&](std::u16string_view start) { return type.view().starts_with(start); });
}

/// Whether the bytes are a zip archive without its directory, which stands at the end.
bool isCutArchive(std::string_view bytes) {
  return bytes.starts_with("PK\3\4") && bytes.rfind("PK\5\6") == std::string_view::npos;
}

NSAttributedString fail(NSError *error, ErrorCode code, std::string_view reason) {
  setError(error, code, reason);
  return NSAttributedString();
}

/// One document as it is read.
struct Document {
  const NSString &path;
  const DocumentReading &reading;
  DocumentAttributes *attributes;
  NSError *error;

  NSAttributedString textOfFolder() const {
    const NSFileWrapper folder = NSFileWrapper::initWithPath(path, error);
    return folder ? initWithRTFDFileWrapper(folder, attributes, error) : NSAttributedString();
  }

  NSString decoded(const NSData &data, const NSString &textEncodingName, const NSURL &url) const {
    return reading.decodeMarkup ? reading.decodeMarkup(data, textEncodingName, url)
                                : stringWithDetectedEncoding(data.view()).string;
  }

  NSAttributedString textOfPage(const NSData &data, const NSString &textEncodingName, const NSURL &url,
                                const WebArchive &archive) const {
    NSDictionary options = reading.pageOptions;
    options.setObject(url.absoluteString(), NSBaseURLDocumentOption);
    const NSString page = data.length() == 0 ? NSString::string() : decoded(data, textEncodingName, url);
    if (!page) return fail(error, ErrorCode::damaged, "the page holds no text");
    return initWithHTML(page, archive, options, attributes, error);
  }

  NSAttributedString textOfArchive(const NSData &data) const {
    const WebArchive archive = WebArchive::archiveWithData(data, error);
    if (!archive) return NSAttributedString();
    const WebResource page = archive.mainResource();
    if (!page) return fail(error, ErrorCode::damaged, "the web archive has no page");
    NSAttributedString text = textOfPage(page.data(), page.textEncodingName(), page.URL(), archive);
    if (attributes) attributes->documentType = u"NSWebArchive"_ns;
    return text;
  }

  NSAttributedString textOfOfficeDocument(const NSData &data) const {
    NSAttributedString text =
        attributedStringWithWordProcessorDocument(path, reading.deadline, attributes, error);
    // LibreOffice takes what it finds in such an archive for the whole document.
    if (!text || !isCutArchive(data.view())) return text;
    if (text.length() == 0) return fail(error, ErrorCode::damaged, "the document is cut short");
    setError(error, ErrorCode::incomplete, "the document is cut short, and some of it is missing");
    return text;
  }

  NSAttributedString failWithType() const {
    return fail(error, ErrorCode::unsupportedType, "nothing reads documents of this kind");
  }

  NSAttributedString textOfPlainText(const NSData &data) const {
    const NSString text = stringWithDetectedEncoding(data.view()).string;
    if (!text) return failWithType();
    if (attributes) attributes->documentType = u"NSPlainText"_ns;
    return NSAttributedString(text);
  }

  NSData bytes() const {
    std::uint64_t size = 0;
    const FileDescriptor file = openRegularFile(path, &size, error);
    if (!file) return NSData();
    if (size <= kMaximumDocumentBytes)
      return readData(file.get(), size, static_cast<std::uint32_t>(kMaximumDocumentBytes), error);
    setError(error, ErrorCode::tooLarge, "the file is too large");
    return NSData();
  }

  NSAttributedString text() const {
    const NSString type = LSCopyItemContentType(path, error);
    if (!type) return NSAttributedString();
    if (type == u"com.apple.rtfd"_ns) return textOfFolder();
    const NSData data = bytes();
    if (!data) return NSAttributedString();
    if (isRTF(data)) return initWithRTF(data, attributes, error);
    if (isOfficeType(type)) return textOfOfficeDocument(data);
    if (type == u"public.rtf"_ns) return fail(error, ErrorCode::damaged, "the file is no RTF");
    if (type == u"com.apple.webarchive"_ns) return textOfArchive(data);
    if (type.view().ends_with(u"-archive") || beginsLikeNoText(data.view())) return failWithType();
    if (type == u"public.html"_ns || type == u"public.xhtml"_ns)
      return textOfPage(data, NSString(), NSURL::fileURLWithPath(path), WebArchive());
    return textOfPlainText(data);
  }
};

}  // namespace

NSAttributedString initWithPath(const NSString &path, const DocumentReading &reading,
                                DocumentAttributes *documentAttributes, NSError *error) {
  return Document{path, reading, documentAttributes, error}.text();
}

}  // namespace nimbo
