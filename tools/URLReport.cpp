// SPDX-License-Identifier: Apache-2.0
#include "tools/URLReport.hpp"

#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"
#include "Classes/URLs/NSString+URLUtilities.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions.hpp"
#include "Classes/URLs/TypedURLs.hpp"
#include "Classes/URLs/URLNormalizing.hpp"

namespace nimbo {

namespace {

NSDictionary componentsOf(const NSURL &url) {
  NSDictionary parts = {
      {u"Scheme"_ns, url.scheme()},
      {u"ResourceSpecifier"_ns, url.resourceSpecifier()},
      {u"User"_ns, url.user()},
      {u"Password"_ns, url.password()},
      {u"Host"_ns, url.host()},
      {u"Path"_ns, url.path()},
      {u"ParameterString"_ns, url.parameterString()},
      {u"Query"_ns, url.query()},
      {u"Fragment"_ns, url.fragment()},
      {u"LastPathComponent"_ns, lastPathComponent(url)},
      {u"PathExtension"_ns, pathExtension(url)},
      {u"BaseDirectory"_ns, baseDirectory(url)},
      {u"InvertedHost"_ns, invertedHost(url)},
  };
  if (url.port()) parts.setObject(*url.port(), u"Port"_ns);
  if (url.host()) {
    NSArray labels = NSArray::array();
    for (const NSString &label : hostComponents(url)) labels.addObject(label);
    parts.setObject(labels, u"HostComponents"_ns);
  }
  return parts;
}

NSDictionary kindsOf(const NSURL &url) {
  return {
      {u"File"_ns, url.isFileURL()},
      {u"HTTP"_ns, isHTTPURL(url)},
      {u"FTP"_ns, isFTPURL(url)},
      {u"Feed"_ns, isFeedURL(url)},
      {u"Mail"_ns, isMailURL(url)},
      {u"News"_ns, isNewsURL(url)},
      {u"JavaScript"_ns, isJavaScriptURL(url)},
      {u"AppleScript"_ns, isAppleScriptURL(url)},
      {u"Downloadable"_ns, isDownloadableURL(url)},
      {u"Loadable"_ns, isLoadableURL(url)},
      {u"WebKit"_ns, isWebKitURL(url)},
      {u"RemoteWebKit"_ns, isRemoteWebKitURL(url)},
      {u"SearchEngine"_ns, isSearchEngine(url)},
  };
}

NSDictionary typesOf(const NSString &extension) {
  return {
      {u"Image"_ns, isImageType(extension)},
      {u"Markup"_ns, isMarkupType(extension)},
      {u"RichText"_ns, isRichTextType(extension)},
      {u"Executable"_ns, isExecutableType(extension)},
      {u"Archive"_ns, isArchiveType(extension)},
      {u"Multimedia"_ns, isMultimediaType(extension)},
      {u"Audio"_ns, isMultimediaType(extension, true, false, false)},
      {u"Video"_ns, isMultimediaType(extension, false, true, false)},
      {u"Embedded"_ns, isMultimediaType(extension, false, false, true)},
      {u"Office"_ns, isOfficeType(extension)},
      {u"Binary"_ns, isBinaryFileType(extension)},
  };
}

}  // namespace

NSDictionary reportOnURL(const NSString &string, const NSURL &base, Flag isMarkup) {
  const auto orNull = [&](const NSURL &url) { return url ? id(url.absoluteString()) : id(NSNull()); };
  NSDictionary report = {{u"String"_ns, string}};
  const NSURL url = NSURL::URLWithString(string);
  report.setObject(orNull(url), u"URL"_ns);
  const NSString normalized =
      isMarkup ? normalizedStringURL(string, false, true) : stringURLWrittenBy(cleanURLUnits, string);
  if (base) report.setObject(orNull(URLRelativeTo(isMarkup ? normalized : string, base)), u"Resolved"_ns);
  report.addEntriesFromDictionary({
      {u"Repaired"_ns, orNull(isMarkup ? URLWithNormalizedStringURL(normalized) : URLWithTypedString(string))},
      {u"Normalized"_ns, normalized},
      {u"Simplified"_ns, simplifiedStringURL(normalized)},
      {u"Escaped"_ns, NSDictionary{{u"Standard"_ns, stringByAddingStandardPercentEscapesToURL(string)},
                                   {u"ASCII"_ns, stringByAddingASCIIPercentEscapesToURL(string)}}},
      {u"Unescaped"_ns, NSDictionary{{u"Standard"_ns, stringByReplacingStandardPercentEscapesOfURL(string)},
                                     {u"ASCII"_ns, stringByReplacingASCIIPercentEscapesOfURL(string)}}},
  });
  if (!url) return report;
  report.addEntriesFromDictionary({
      {u"Standardized"_ns, standardizedStringURL(url)},
      {u"Components"_ns, componentsOf(url)},
      {u"Kinds"_ns, kindsOf(url)},
      {u"Types"_ns, typesOf(pathExtension(url))},
      {u"QueryParams"_ns, queryParams(url)},
      {u"NumberOfQueryParams"_ns, numberOfQueryParams(url)},
  });
  return report;
}

}  // namespace nimbo
