// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/InternetLocationData.hpp"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo {

namespace {

using std::u16string_view;

u16string_view trimmedText(u16string_view text) {
  return trimmed(text, isASCIIWhiteSpace<unichar>);
}

/// Takes the first line off the text; lines end as on any system.
u16string_view takeLine(u16string_view &text) {
  const std::size_t end = std::min(text.find_first_of(u"\r\n"), text.size());
  const u16string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return trimmedText(line);
}

/// "a" of a line "[a]", white space left out; empty for any other line.
u16string_view sectionOfLine(u16string_view line) {
  if (!line.starts_with(u'[') || !line.ends_with(u']')) return {};
  return trimmedText(line.substr(1, line.size() - 2));
}

/// A line "key=value".
struct Setting {
  u16string_view key, value;
};

/// Both are empty for any other line.
Setting settingOfLine(u16string_view line) {
  const std::size_t equals = line.find(u'=');
  if (equals == line.npos) return {};
  return {trimmedText(line.substr(0, equals)), trimmedText(line.substr(equals + 1))};
}

/// Shortcuts keep a URL that the code page cannot hold a second time, in UTF-7.
NSString textFromUTF7(u16string_view text) {
  const NSData bytes = dataUsingEncoding(NSString::stringWithCharacters(text), NSASCIIStringEncoding);
  return initWithData(bytes, CFStringConvertEncodingToNSStringEncoding(kCFStringEncodingUTF7));
}

/// The "URL" of a shortcut: that of its own section, else the first one of all.
NSString URLOfShortcut(u16string_view text) {
  u16string_view own, first, section;
  while (!text.empty()) {
    const u16string_view line = takeLine(text);
    if (const u16string_view name = sectionOfLine(line); !name.empty()) section = name;
    const auto [key, value] = settingOfLine(line);
    if (value.empty() || !equalsASCIINoCase(key, "url")) continue;
    if (equalsASCIINoCase(section, "internetshortcut.w"))
      if (const NSString wide = textFromUTF7(value)) return URLOfLocationText(wide.view());
    if (own.empty() && equalsASCIINoCase(section, "internetshortcut")) own = value;
    if (first.empty()) first = value;
  }
  return URLOfLocationText(own.empty() ? first : own);
}

/// The value of a desktop entry without its escapes.
std::u16string unescapedValue(u16string_view value) {
  constexpr u16string_view kLetters = u"sntr", kMeanings = u" \n\t\r";
  std::u16string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == u'\\' && i + 1 < value.size()) {
      const std::size_t letter = kLetters.find(value[++i]);
      text += letter == kLetters.npos ? value[i] : kMeanings[letter];
    } else {
      text += value[i];
    }
  }
  return text;
}

/// The "URL" of a desktop entry, if that is one of type Link.
NSString URLOfDesktopEntry(u16string_view text) {
  bool isEntry = false, isLink = false;
  u16string_view url;
  while (!text.empty()) {
    const u16string_view line = takeLine(text);
    if (const u16string_view name = sectionOfLine(line); !name.empty()) {
      if (isEntry) break;
      isEntry = name == u"Desktop Entry";
    }
    const auto [key, value] = settingOfLine(line);
    if (isEntry && key == u"Type") isLink = value == u"Link";
    if (isEntry && key == u"URL") url = value;
  }
  return isLink ? URLOfLocationText(unescapedValue(url)) : NSString();
}

bool isDesktopEntry(u16string_view text) {
  while (!text.empty()) {
    const u16string_view line = takeLine(text);
    if (!line.empty() && line.front() != u'#') return sectionOfLine(line) == u"Desktop Entry";
  }
  return false;
}

/// Whether the bytes begin as a property list in any form that location files come in.
bool isPropertyList(const NSData &data, u16string_view text) {
  if (data.view().starts_with("bplist")) return true;
  const u16string_view start = trimmedText(text);
  return start.starts_with(u'<') || start.starts_with(u'{');
}

}  // namespace

NSString URLOfLocationText(u16string_view text) {
  const u16string_view url = trimmed(text, [](unichar c) { return isASCIIWhiteSpace(c) || c == 0; });
  const auto isControl = [](unichar c) { return c < 0x20 || c == 0x7f; };
  if (url.empty() || std::ranges::any_of(url, isControl)) return {};
  return NSString::stringWithCharacters(url);
}

NSString URLOfInternetLocationData(const NSData &data, NSError *error) {
  if (data.length() == 0) {
    setError(error, ErrorCode::incomplete, "the file is empty");
    return {};
  }
  const NSString text = stringWithDetectedEncoding(data.view()).string;
  NSString url;
  if (isPropertyList(data, text.view())) {
    const id list = NSPropertyListSerialization::propertyListFromData(data, nullptr, error);
    if (!list) return {};
    url = URLOfLocationText(list.dictionary().objectForKey(u"URL"_ns).string().view());
  } else {
    url = isDesktopEntry(text.view()) ? URLOfDesktopEntry(text.view()) : URLOfShortcut(text.view());
  }
  if (!url) setError(error, ErrorCode::damaged, "the file has no URL");
  return url;
}

}  // namespace nimbo
