// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/URIReference.hpp"

#include <uriparser/Uri.h>

#include <algorithm>
#include <functional>

namespace nimbo {
namespace {

/// What the library found; it borrows the bytes.
class ParsedURI {
 public:
  ParsedURI() = default;
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

  bool resolve(const ParsedURI &reference, const ParsedURI &base) {
    valid_ = uriAddBaseUriA(&uri_, &reference.uri_, &base.uri_) == URI_SUCCESS;
    return valid_;
  }

  explicit operator bool() const { return valid_; }
  const UriUriA *operator->() const { return &uri_; }
  const UriUriA &operator*() const { return uri_; }

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

std::optional<std::string> resolvedURIReference(std::string_view reference, std::string_view base) {
  const ParsedURI parsedReference(reference), parsedBase(base);
  ParsedURI target;
  int length = 0;
  if (!parsedReference || !parsedBase || !target.resolve(parsedReference, parsedBase) ||
      uriToStringCharsRequiredA(&*target, &length) != URI_SUCCESS)
    return std::nullopt;
  std::string result(static_cast<std::size_t>(length) + 1, '\0');
  if (uriToStringA(result.data(), &*target, length + 1, nullptr) != URI_SUCCESS) return std::nullopt;
  result.pop_back();
  // A path that begins with an empty segment would be taken for a host.
  const std::size_t path = result.find(':') + 1;
  if (!target->hostText.first && std::string_view(result).substr(path).starts_with("//"))
    result.insert(path, "/.");
  if (target->hostData.ip6) {  // The library writes the address out; brackets stand nowhere else.
    const std::size_t begin = result.find('[') + 1;
    result.replace(begin, result.find(']', begin) - begin, target->hostText.first,
                   static_cast<std::size_t>(target->hostText.afterLast - target->hostText.first));
  }
  return result;
}

}  // namespace nimbo
