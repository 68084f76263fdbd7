// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/URLs/URIReference.hpp"

#include <uriparser/Uri.h>

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/URLs/DotSegments.hpp"
#include "platform/Foundation/URLs/URLScheme.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

using View = std::u16string_view;

NSRange between(std::size_t begin, std::size_t end) {
  return {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end - begin)};
}

NSRange unlessEmpty(std::size_t begin, std::size_t end) {
  return begin == end ? URIParts::kAbsent : between(begin, end);
}

/// What may stand in a part besides escapes; each part has a bit.
enum Part : std::uint8_t { kInHost = 1, kInUserInfo = 2, kInPath = 4, kInQuery = 8 };

constexpr auto kPartsOfCharacters = [] {
  std::array<std::uint8_t, 128> parts{};
  const auto add = [&](std::string_view characters, unsigned where) {
    for (const char c : characters) parts[static_cast<unsigned char>(c)] |= static_cast<std::uint8_t>(where);
  };
  for (char c = 0; c >= 0 && c < 127; ++c)
    if (isASCIIAlphanumeric(c)) add({&c, 1}, kInHost | kInUserInfo | kInPath | kInQuery);
  add("-._~!$&'()*+,;=", kInHost | kInUserInfo | kInPath | kInQuery);
  add(":", kInUserInfo | kInPath | kInQuery);
  add("@/", kInPath | kInQuery);
  add("?", kInQuery);
  return parts;
}();

/// Where what may stand in the part ends, from `at` on.
std::size_t endOfPart(View reference, std::size_t at, Part part) {
  for (;;) {
    while (at < reference.size() && reference[at] < 128 && (kPartsOfCharacters[reference[at]] & part) != 0)
      ++at;
    const bool isEscape = reference.size() - at > 2 && reference[at] == u'%' &&
                          isASCIIHexDigit(reference[at + 1]) && isASCIIHexDigit(reference[at + 2]);
    if (!isEscape) return at;
    at += 3;
  }
}

/// Finds path, query and fragment from `at` on, each by its mark. False when something else is there.
bool findBehindAuthority(View reference, std::size_t at, URIParts &parts) {
  const auto isAt = [&](unichar c) { return at < reference.size() && reference[at] == c; };
  parts.path = between(at, endOfPart(reference, at, kInPath));
  at = parts.path.location + std::size_t{parts.path.length};
  if (isAt(u'?')) {
    parts.query = between(at + 1, endOfPart(reference, at + 1, kInQuery));
    at = parts.query.location + std::size_t{parts.query.length};
  }
  if (isAt(u'#')) {
    parts.fragment = between(at + 1, endOfPart(reference, at + 1, kInQuery));
    at = parts.fragment.location + std::size_t{parts.fragment.length};
  }
  return at == reference.size();
}

/// The parts of nearly every reference that is right, found in one pass: nothing for the others, and for a host
/// in brackets.
std::optional<URIParts> partsOfUsualReference(View reference) {
  URIParts parts;
  std::size_t at = 0;
  if (const View scheme = schemeOfStringURL(reference); !scheme.empty()) {
    parts.scheme = between(0, scheme.size());
    at = scheme.size() + 1;
  }
  parts.hasAuthority = reference.substr(at).starts_with(u"//");
  if (parts.hasAuthority) {
    at += 2;
    const std::size_t userEnd = endOfPart(reference, at, kInUserInfo);
    if (userEnd < reference.size() && reference[userEnd] == u'@') {
      parts.userInfo = unlessEmpty(at, userEnd);
      at = userEnd + 1;
    }
    const std::size_t hostEnd = endOfPart(reference, at, kInHost);
    parts.host = unlessEmpty(at, hostEnd);
    at = hostEnd;
    if (at < reference.size() && reference[at] == u':') {
      const auto digits = reference.substr(at + 1);
      const auto end = std::ranges::find_if_not(digits, isASCIIDigit<unichar>);
      parts.port = unlessEmpty(at + 1, at + 1 + static_cast<std::size_t>(end - digits.begin()));
      at += 1 + static_cast<std::size_t>(end - digits.begin());
    }
    if (at < reference.size() && View(u"/?#").find(reference[at]) == View::npos) return std::nullopt;
  }
  if (!findBehindAuthority(reference, at, parts)) return std::nullopt;
  if (at == 0) {
    const View path = reference.substr(0, parts.path.length);
    if (path.substr(0, path.find(u'/')).find(u':') != View::npos) return std::nullopt;
  }
  return parts;
}

/// What the library found; it borrows the bytes.
class ParsedURI {
 public:
  explicit ParsedURI(std::string_view bytes) {
    const char *errorPosition = nullptr;
    valid_ =
        uriParseSingleUriExA(&uri_, bytes.data(), bytes.data() + bytes.size(), &errorPosition) == URI_SUCCESS;
  }
  ParsedURI(const ParsedURI &) = delete;
  ParsedURI &operator=(const ParsedURI &) = delete;
  ~ParsedURI() {
    if (valid_) uriFreeUriMembersA(&uri_);
  }

  explicit operator bool() const { return valid_; }
  const UriUriA *operator->() const { return &uri_; }

 private:
  UriUriA uri_{};
  bool valid_ = false;
};

/// For parts that are not there, and for some empty ones, the library's range is not one of `whole`.
NSRange rangeOf(const UriTextRangeA &part, std::string_view whole) {
  const std::less<const char *> before;
  if (part.first == part.afterLast || before(part.first, whole.data()) ||
      !before(part.first, whole.data() + whole.size()))
    return URIParts::kAbsent;
  return {static_cast<std::uint32_t>(part.first - whole.data()),
          static_cast<std::uint32_t>(part.afterLast - part.first)};
}

/// The parts of any reference.
std::optional<URIParts> partsByLibrary(View units) {
  if (!std::ranges::all_of(units, [](unichar c) { return c < 0x80; })) return std::nullopt;
  const std::string reference(units.begin(), units.end());
  const ParsedURI parsed(reference);
  if (!parsed) return std::nullopt;
  URIParts parts;
  parts.scheme = rangeOf(parsed->scheme, reference);
  parts.userInfo = rangeOf(parsed->userInfo, reference);
  parts.host = rangeOf(parsed->hostText, reference);
  parts.port = rangeOf(parsed->portText, reference);

  // The library keeps the path as a list of segments. As the grammar holds, the rest is found by its marks.
  std::size_t position = parts.scheme.location == NSNotFound ? 0 : parts.scheme.length + 1;
  parts.hasAuthority = units.substr(position).starts_with(u"//");
  if (parts.hasAuthority) position = std::min(units.find_first_of(u"/?#", position + 2), units.size());
  return findBehindAuthority(units, position, parts) ? std::optional(parts) : std::nullopt;
}

View pathOf(View reference, const URIParts &parts) {
  return reference.substr(parts.path.location, parts.path.length);
}

}  // namespace

std::optional<URIParts> partsOfURIReference(View reference) {
  if (reference.size() > kMaximumURIUnits ||
      (reference.size() > kMaximumURIPathSegments &&
       std::ranges::count(reference, u'/') > static_cast<std::ptrdiff_t>(kMaximumURIPathSegments))) {
    return std::nullopt;
  }
  const std::optional<URIParts> parts = partsOfUsualReference(reference);
  return parts || reference.find(u'[') == View::npos ? parts : partsByLibrary(reference);
}

NSString resolvedURIReference(View reference, const URIParts &parts, View base, const URIParts &baseParts) {
  const View path = pathOf(reference, parts);
  const View behindPath = reference.substr(parts.path.location + parts.path.length);
  const bool hasScheme = parts.scheme.location != NSNotFound;
  const bool isSelfContained = hasScheme || parts.hasAuthority;

  // What stands before the path, which is the base's up to the first thing that the reference has of its own.
  NSMutableString result;
  result.reserve(base.size() + reference.size() + 2);
  if (!hasScheme)
    result.append(base.substr(0, isSelfContained ? baseParts.scheme.length + 1 : baseParts.path.location));
  if (isSelfContained) result.append(reference.substr(0, parts.path.location));

  if (path.empty() && !isSelfContained) {
    const std::size_t end = parts.query.location == NSNotFound ? base.find(u'#') : base.find_first_of(u"?#");
    result.append(base.substr(baseParts.path.location, end - baseParts.path.location));
    result.append(behindPath);
    return std::move(result).string();
  }
  const View basePath = pathOf(base, baseParts);
  View folder;
  if (!isSelfContained && !path.starts_with(u'/')) {
    folder = basePath.substr(0, basePath.rfind(u'/') + 1);
    if (basePath.empty() && baseParts.hasAuthority) folder = u"/";
  }
  std::u16string whole;
  View target = path;
  if (mayHoldDotSegments(folder) || mayHoldDotSegments(path)) {
    whole = pathWithoutDotSegments(whole.append(folder).append(path));
    folder = View();
    target = whole;
  }
  // It would be taken for a host.
  const bool hasAuthority = parts.hasAuthority || (!hasScheme && baseParts.hasAuthority);
  if (!hasAuthority && (folder.empty() ? target : folder).starts_with(u"//")) result.append(u"/.");
  result.append(folder);
  result.append(target);
  result.append(behindPath);
  return std::move(result).string();
}

}  // namespace nimbo
