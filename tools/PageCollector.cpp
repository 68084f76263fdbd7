// SPDX-License-Identifier: Apache-2.0
#include "tools/PageCollector.hpp"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "Classes/Encodings/MarkupDecoding.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Relative.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/Foundation/System/RegularFile.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

/// What files are by their extensions. A page may name any file of this machine; only what it could show comes
/// into the archive, so that nobody gives away what he did not mean to.
struct FileType {
  std::string_view extension;
  ReferenceKind kind;
  NSString MIMEType;
};

const FileType *typeOfPath(std::u16string_view path, ReferenceKind kind) {
  using enum ReferenceKind;
  static const FileType types[] = {
      {"png", image, u"image/png"_ns},
      {"apng", image, u"image/apng"_ns},
      {"jpg", image, u"image/jpeg"_ns},
      {"jpeg", image, u"image/jpeg"_ns},
      {"gif", image, u"image/gif"_ns},
      {"webp", image, u"image/webp"_ns},
      {"avif", image, u"image/avif"_ns},
      {"svg", image, u"image/svg+xml"_ns},
      {"bmp", image, u"image/bmp"_ns},
      {"ico", image, u"image/vnd.microsoft.icon"_ns},
      {"tif", image, u"image/tiff"_ns},
      {"tiff", image, u"image/tiff"_ns},
      {"heic", image, u"image/heic"_ns},
      {"woff", image, u"font/woff"_ns},
      {"woff2", image, u"font/woff2"_ns},
      {"ttf", image, u"font/ttf"_ns},
      {"otf", image, u"font/otf"_ns},
      {"css", sheet, u"text/css"_ns},
      {"html", frame, u"text/html"_ns},
      {"htm", frame, u"text/html"_ns},
      {"xht", frame, u"application/xhtml+xml"_ns},
      {"xhtml", frame, u"application/xhtml+xml"_ns},
  };
  const std::u16string_view name = path.substr(path.rfind(u'/') + 1);
  const auto hasExtension = [](std::u16string_view file, std::string_view extension) {
    return equalsASCIINoCase(file.substr(file.rfind(u'.') + 1), extension);
  };
  // Saved pages keep the query of a URL in the names of files: "a.css?v=2".
  const auto found = std::ranges::find_if(types, [&](const FileType &type) {
    return type.kind == kind && (hasExtension(name, type.extension) ||
                                 hasExtension(name.substr(0, name.find(u'?')), type.extension));
  });
  return found == std::end(types) ? nullptr : found;
}

/// Whether the URL is none of a file, but means something in the page itself.
bool isInside(std::u16string_view url) {
  const std::u16string_view scheme = url.substr(0, url.find(u':'));
  return url.starts_with(u'#') ||
         equalsOneOfASCIINoCase(scheme, {"data", "about", "javascript", "blob", "cid"});
}

NSString nameOfEncoding(NSStringEncoding encoding) {
  if (encoding == kCFStringEncodingInvalidId) return NSString();
  return CFStringConvertEncodingToIANACharSetName(CFStringConvertNSStringEncodingToEncoding(encoding));
}

}  // namespace

/// A page while its parts are collected.
struct PageCollector::Page {
  NSURL URL;
  /// The page of which this is a frame; null for the outermost.
  const Page *parent;
  std::uint32_t depth;
  std::vector<WebResource> resources = {};
  std::vector<WebArchive> frames = {};
  /// The URLs of all that is collected, or missing.
  std::set<std::string> seen = {};

  bool isFrameOfItself(const NSURL &frame) const {
    return URL == frame || (parent && parent->isFrameOfItself(frame));
  }
};

WebArchive PageCollector::archiveOfPage(const NSString &path, NSError *error) {
  const NSURL url = NSURL::fileURLWithPath(path, false);
  const WebResource page = resourceAt(url, ReferenceKind::frame, NSString(), error);
  return page ? archiveOfPage(page, nullptr) : WebArchive();
}

WebArchive PageCollector::archiveOfPage(const WebResource &resource, const Page *parent) {
  const DecodedMarkup decoded = decodeMarkup(resource.data(), 0);
  const WebResource main =
      WebResource::resourceWithData(resource.data(), resource.URL(), resource.MIMEType(),
                                    nameOfEncoding(decoded.encoding), resource.frameName());
  Page page{resource.URL(), parent, parent ? parent->depth + 1 : 1};
  const PageReferences found = referencesOfPage(decoded.string);
  NSURL base = URLRelativeTo(found.base, page.URL, true);
  if (!base) base = page.URL;
  for (const PageReference &reference : found.references) collect(reference, base, page);
  // Sheets are read as they come; what they refer to lies behind them in the list.
  for (std::size_t i = 0; i < page.resources.size(); ++i) {
    const WebResource sheet = page.resources[i];
    if (!(sheet.MIMEType() == u"text/css"_ns)) continue;
    std::vector<PageReference> references;
    appendReferencesOfSheet(decodeMarkup(sheet.data(), 0).string.view(), references);
    for (const PageReference &reference : references) collect(reference, sheet.URL(), page);
  }
  return WebArchive::archiveWithMainResource(main, std::move(page.resources), std::move(page.frames));
}

void PageCollector::collect(const PageReference &reference, const NSURL &base, Page &page) {
  if (isInside(reference.URL.view())) return;
  const std::string name = reference.URL.UTF8String();
  const NSURL url = URLRelativeTo(reference.URL, base, true).absoluteURL();
  const bool isFrame = reference.kind == ReferenceKind::frame;
  if (!url) return missing_(name, "is no URL");
  // The same image is there once; a frame is shown as often as it stands in the page.
  if (!isFrame && !page.seen.insert(url.absoluteString().UTF8String()).second) return;
  if (isFrame && page.isFrameOfItself(url)) return missing_(name, "is a frame of itself");
  if (isFrame && page.depth == WebArchive::kMaximumDepth) return missing_(name, "is nested too deeply");
  NSError error;
  const WebResource resource = resourceAt(url, reference.kind, reference.frameName, &error);
  if (!resource) return missing_(name, error.localizedFailureReason.UTF8String());
  if (isFrame)
    page.frames.push_back(archiveOfPage(resource, &page));
  else
    page.resources.push_back(resource);
}

WebResource PageCollector::resourceAt(const NSURL &URL, ReferenceKind kind, const NSString &frameName,
                                      NSError *error) {
  const NSString path = URL.isFileURL() && !URL.host() ? URL.pathWithParameters() : NSString();
  const FileType *const type = typeOfPath(path.view(), kind);
  // Nobody has to call the page itself so.
  const bool isOuterPage = parts_ == WebArchive::kMaximumParts;
  if (!path) {
    setError(error, ErrorCode::unsupportedType, "the file is not on this machine");
  } else if (!type && !isOuterPage) {
    setError(error, ErrorCode::unsupportedType, "the file has not the name of what the page wants");
  } else if (parts_ == 0) {
    setError(error, ErrorCode::tooLarge, "the page has too many parts");
  } else {
    std::uint64_t size = 0;
    const FileDescriptor file = openRegularFile(path, &size, error);
    if (!file) return WebResource();
    const auto limit = static_cast<std::uint32_t>(bytes_);
    const NSData data = size <= limit ? readData(file.get(), size, limit, error) : NSData();
    if (size > limit) setError(error, ErrorCode::tooLarge, "the page and its parts are too large");
    bytes_ -= data.length();
    --parts_;
    return WebResource::resourceWithData(data, URL, type ? type->MIMEType : u"text/html"_ns, NSString(),
                                         frameName);
  }
  return WebResource();
}

}  // namespace nimbo
