// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/URLs/URIReference.hpp"

#include <uriparser/Uri.h>

#include <algorithm>
#include <functional>

namespace nimbo {
namespace {

/// What the library found; it borrows the bytes.
class ParsedURI {
 public:
  explicit ParsedURI(std::string_view bytes) {
    if (bytes.size() > kMaximumURIBytes) return;
    if (std::ranges::count(bytes, '/') > static_cast<std::ptrdiff_t>(kMaximumURIPathSegments)) return;
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

NSRange between(std::size_t begin, std::size_t end) {
  return {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end - begin)};
}

std::string_view pathOf(std::string_view reference, const URIParts &parts) {
  return reference.substr(parts.path.location, parts.path.length);
}

/// Section 5.2.4. Each segment goes with the "/" in front of it, which only those at the beginning may lack.
std::string withoutDotSegments(std::string_view path) {
  std::string result;
  result.reserve(path.size());
  while (!path.empty()) {
    const std::size_t slash = path.starts_with('/') ? 1 : 0;
    const std::size_t end = std::min(path.find('/', slash), path.size());
    const std::string_view segment = path.substr(slash, end - slash);
    const bool isDots = segment == "." || segment == "..";
    if (!isDots) {
      result += path.substr(0, end);
    } else if (slash > 0) {
      const std::size_t last = result.rfind('/');
      if (segment == "..") result.resize(last == result.npos ? 0 : last);
      if (end == path.size()) result += '/';
    }
    path.remove_prefix(isDots && slash == 0 ? std::min(end + 1, path.size()) : end);
  }
  return result;
}

}  // namespace

std::optional<URIParts> partsOfURIReference(std::string_view reference) {
  const ParsedURI parsed(reference);
  if (!parsed) return std::nullopt;
  URIParts parts;
  parts.scheme = rangeOf(parsed->scheme, reference);
  parts.userInfo = rangeOf(parsed->userInfo, reference);
  parts.host = rangeOf(parsed->hostText, reference);
  parts.port = rangeOf(parsed->portText, reference);

  // The library keeps the path as a list of segments. As the grammar holds, the rest is found by its marks.
  std::size_t position = parts.scheme.location == NSNotFound ? 0 : parts.scheme.length + 1;
  parts.hasAuthority = reference.substr(position).starts_with("//");
  if (parts.hasAuthority) position = std::min(reference.find_first_of("/?#", position + 2), reference.size());
  const std::size_t anchor = std::min(reference.find('#', position), reference.size());
  const std::size_t question = std::min(reference.find('?', position), anchor);
  parts.path = between(position, question);
  if (question < anchor) parts.query = between(question + 1, anchor);
  if (anchor < reference.size()) parts.fragment = between(anchor + 1, reference.size());
  return parts;
}

std::string resolvedURIReference(std::string_view reference, const URIParts &parts, std::string_view base,
                                 const URIParts &baseParts) {
  const std::string_view path = pathOf(reference, parts);
  const std::string_view behindPath = reference.substr(parts.path.location + parts.path.length);
  const bool hasScheme = parts.scheme.location != NSNotFound;
  const bool isSelfContained = hasScheme || parts.hasAuthority;

  // What stands before the path, which is the base's up to the first thing that the reference has of its own.
  std::string result;
  if (!hasScheme)
    result = base.substr(0, isSelfContained ? baseParts.scheme.length + 1 : baseParts.path.location);
  if (isSelfContained) result += reference.substr(0, parts.path.location);

  if (path.empty() && !isSelfContained) {
    const std::size_t end = parts.query.location == NSNotFound ? base.find('#') : base.find_first_of("?#");
    return result.append(base.substr(baseParts.path.location, end - baseParts.path.location))
        .append(behindPath);
  }
  const std::string_view basePath = pathOf(base, baseParts);
  std::string whole;
  if (!isSelfContained && !path.starts_with('/')) {
    if (basePath.empty() && baseParts.hasAuthority) whole = '/';
    whole += basePath.substr(0, basePath.rfind('/') + 1);
  }
  whole += path;
  const std::string target = withoutDotSegments(whole);
  // It would be taken for a host.
  const bool hasAuthority = parts.hasAuthority || (!hasScheme && baseParts.hasAuthority);
  if (!hasAuthority && target.starts_with("//")) result += "/.";
  return result.append(target).append(behindPath);
}

}  // namespace nimbo
