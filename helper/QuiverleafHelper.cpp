// SPDX-License-Identifier: Apache-2.0
#include "helper/QuiverleafHelper.hpp"

#include <algorithm>
#include <utility>

#include "Classes/Encodings/NSString+XmlExtensions+Encoding.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Making.hpp"
#include "Classes/WebKit/WebArchive+SearchableText.hpp"
#include "helper/HTMLImportOptions.hpp"
#include "helper/LocalRequestFilter.hpp"
#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/Documents/NSAttributedStringPath.hpp"
#include "platform/Foundation/ExceptionGuard.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/System/ForeignCall.hpp"
#include "platform/WebKit/NSAttributedStringHTML.hpp"

namespace nimbo {
namespace {

/// The encoding of pages that say nothing of theirs, as most such pages are written.
constexpr NSStringEncoding kPageEncoding = NSWindowsCP1252StringEncoding;

NSString textOfPage(const NSData &data, const NSString &textEncodingName, const NSURL &url) {
  return stringWithMarkupData(data, textEncodingName, kPageEncoding, url.absoluteString());
}

/// Whether a package may take the place of what is at the path: nothing, an empty folder, or a package.
bool isReplaceable(const NSString &path) {
  bool isFolder = false;
  if (!NSFileManager::fileExistsAtPath(path, &isFolder)) return true;
  if (!isFolder) return false;
  const auto names = NSFileManager::contentsOfDirectoryAtPath(path);
  return names && (names->empty() || std::ranges::find(*names, u"TXT.rtf"_ns) != names->end());
}

/// A URL, which may also be written with blanks and letters that are not ASCII.
NSURL URLOfCaller(const NSString &string) {
  if (NSURL url = NSURL::URLWithString(string)) return url;
  NSURL url = URLWithNormalizedStringURL(string);
  return url && hasPrefixNoCase(string, url.scheme()) ? url : NSURL();
}

}  // namespace

NSDictionary QuiverleafHelper::metaDataForFile(const NSString &path, NSError *error) {
  const ForeignCall call;
  NSDictionary metaData = _mdimporter.metaDataOfFileAtPath(path, error);
  for (const NSString &key : metaData.allKeys())
    if (metaData.objectForKey(key).isNull()) metaData.removeObjectForKey(key);
  return metaData;
}

NSDictionary QuiverleafHelper::searchableTextOfWebArchive(const NSString &path, NSError *error) {
  return guarded(error, [&] {
    NSURL baseURL;
    NSString source;
    const NSString text = searchableTextOfFile(path, &baseURL, &source, error);
    NSDictionary result = NSDictionary::dictionary();
    result.setObject(text, u"String"_ns);
    result.setObject(source, u"Source"_ns);
    result.setObject(baseURL.absoluteString(), u"URL"_ns);
    return result;
  });
}

NSDictionary QuiverleafHelper::attributedStringWithContentsOfFile(const NSString &path, NSError *error) {
  return guarded(error, [&] {
    const NSDictionary options = HTMLImportOptions(makeShared<LocalRequestFilter>(), NSURL(), kDocumentSeconds);
    const DocumentReading reading{
        .decodeMarkup = textOfPage, .pageOptions = options, .deadline = Deadline::after(kDocumentSeconds)};
    DocumentAttributes attributes;
    const NSAttributedString text = initWithPath(path, reading, &attributes, error);
    const NSData rtfd = RTFDFromRange(text, {0, text.length()}, attributes);
    if (!rtfd) return NSDictionary();
    return NSDictionary{{u"Rtfd"_ns, rtfd}, {u"DocumentAttributes"_ns, attributes.dictionary()}};
  });
}

id QuiverleafHelper::writeRTFDData(const NSData &rtfd, const NSString &toFile, NSError *error) {
  const bool isWritten = guarded(error, [&] {
    DocumentAttributes attributes;
    const NSAttributedString text = initWithRTFD(rtfd, &attributes, error);
    const NSFileWrapper package = RTFDFileWrapperFromRange(text, {0, text.length()}, attributes);
    if (package && !isReplaceable(toFile)) {
      setError(error, ErrorCode::other, "what is there is no RTFD folder, and stays");
      return false;
    }
    return package && package.writeToFile(toFile, true, error);
  });
  return isWritten;
}

NSData QuiverleafHelper::RTFDWithHTML(const NSData &html, const NSString &baseURL, bool allowRemoteRequest,
                                      NSError *error) {
  if (!html) {
    setError(error, ErrorCode::incomplete, "there is no page");
    return NSData();
  }
  return guarded(error, [&] {
    SharedPointer<WebResourceLoadDelegate> filter;
    if (!allowRemoteRequest) filter = makeShared<LocalRequestFilter>();
    const NSURL base = URLOfCaller(baseURL);
    const NSString page = html.length() == 0 ? NSString::string() : textOfPage(html, NSString(), base);
    const NSAttributedString text = initWithHTML(page, HTMLImportOptions(filter, base), nullptr, error);
    return RTFDFromRange(text, {0, text.length()});
  });
}

}  // namespace nimbo
