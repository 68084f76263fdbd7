// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/TypedURLs.hpp"

#include <algorithm>
#include <string_view>

#include "Classes/URLs/NSURL+NSURLNimboExtensions/Making.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Types.hpp"
#include "Classes/URLs/URLNormalizing.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

using View = std::u16string_view;

/// Extensions of two letters are those of countries, too.
bool isFileExtension(View label) {
  if (equalsOneOfASCIINoCase(label, {"asp", "aspx", "css", "csv", "gz", "htm", "html", "js", "json", "jsp",
                                     "php", "txt", "xhtml"}))
    return true;
  const NSString extension = NSString::stringWithCharacters(label);
  return label.size() > 2 && (isBinaryFileType(extension) || isMarkupType(extension));
}

bool isHostLabel(View label) {
  return !label.empty() && std::ranges::all_of(label, [](unichar c) {
    return c >= 0x80 || isASCIIAlphanumeric(c) || c == u'-' || c == u'_';
  });
}

bool isTopLevelLabel(View label) {
  const auto isLetter = [](unichar c) { return c >= 0x80 || isASCIILetter(c); };
  return startsWithASCIINoCase(label, "xn--") || (label.size() > 1 && std::ranges::all_of(label, isLetter));
}

/// Whether the text in front of the path is the name or address of a host, with a port or not.
bool beginsWithHost(View url) {
  View host = url.substr(0, url.find_first_of(u"/?#"));
  const std::size_t colon = std::min(host.find(u':'), host.size());
  const View port = host.substr(std::min(colon + 1, host.size()));
  if (colon < host.size() && (port.empty() || !std::ranges::all_of(port, isASCIIDigit<unichar>))) return false;
  host = host.substr(0, colon);
  if (host.ends_with(u'.')) host.remove_suffix(1);
  if (equalsASCIINoCase(host, "localhost")) return true;
  std::size_t labels = 0, numbers = 0;
  for (;;) {
    const View label = host.substr(0, host.find(u'.'));
    if (!isHostLabel(label)) return false;
    ++labels;
    if (label.size() <= 3 && std::ranges::all_of(label, isASCIIDigit<unichar>)) ++numbers;
    if (label.size() == host.size()) {
      return (labels > 1 && isTopLevelLabel(label) && !isFileExtension(label)) || (labels == 4 && numbers == 4);
    }
    host.remove_prefix(label.size() + 1);
  }
}

}  // namespace

NSURL URLWithTypedString(const NSString &string) {
  const NSString clean = stringURLWrittenBy(cleanURLUnits, string);
  const bool isWebHost = beginsWithHost(clean.view()) && !startsWithASCIINoCase(clean.view(), "ftp.");
  return URLWithNormalizedStringURL(isWebHost ? stringByConcatenating(u"http://", clean) : clean);
}

}  // namespace nimbo
