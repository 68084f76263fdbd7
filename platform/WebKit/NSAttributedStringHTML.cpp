// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/NSAttributedStringHTML.hpp"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/Loading/PageSheets.hpp"
#include "platform/WebKit/Loading/References.hpp"
#include "platform/WebKit/Loading/WebResourceLoader.hpp"
#include "platform/WebKit/RichText/PageText.hpp"
#include "platform/WebKit/Style/StyleResolver.hpp"

namespace nimbo {
namespace {

using namespace detail;

SharedPointer<WebResourceLoadDelegate> delegateOf(const NSDictionary &options) {
  SharedPointer<NSObject> object = options.objectForKey(NSWebResourceLoadDelegateDocumentOption).object();
  if (!dynamic_cast<WebResourceLoadDelegate *>(object.get())) return {};
  return SharedPointer<WebResourceLoadDelegate>::adopt(static_cast<WebResourceLoadDelegate *>(object.detach()));
}

/// The page's own base, else the given one.
NSURL baseOfPage(const HTMLDocument &document, const NSURL &given) {
  if (document.base() == kNoHTMLNode) return given;
  const std::u16string_view reference =
      document.attribute(document.node(document.base()), "href"_atom).value_or(u"");
  const NSURL base = URLOfReference(reference, given);
  return base.scheme() ? base : given;
}

/// As much of a URL as tells it from others, for people; a page may have some that are megabytes long.
std::string shortened(const NSURL &url) {
  constexpr std::uint32_t kShown = 200;
  if (!url) return "a reference";
  const NSString string = url.absoluteString();
  if (string.length() <= kShown) return string.UTF8String();
  return NSString::stringWithCharacters(string.characters(), kShown).UTF8String() + "...";
}

/// One line about what was not loaded; of many parts it names the first.
void tellFailures(const std::vector<WebResourceLoader::Failure> &failures, NSError *error) {
  constexpr std::size_t kNamed = 10;
  if (failures.empty()) return;
  std::string reason = failures.size() == 1
                           ? "1 part of the page was not loaded"
                           : std::to_string(failures.size()) + " parts of the page were not loaded";
  for (std::size_t index = 0; index < std::min(failures.size(), kNamed); ++index)
    reason += (index == 0 ? ": " : "; ") + shortened(failures[index].URL) + " (" + failures[index].reason + ")";
  setError(error, ErrorCode::incomplete, reason);
}

std::vector<WebResource> loadImages(const PageText &page, const NSURL &base, WebResourceLoader &loader) {
  std::vector<NSURL> urls;
  for (const PageImage &image : page.images) urls.push_back(URLOfReference(image.URL.view(), base));
  return loader.load(urls);
}

}  // namespace

NSAttributedString initWithHTML(const NSString &html, const NSDictionary &options,
                                DocumentAttributes *documentAttributes, NSError *error) {
  return initWithHTML(html, WebArchive(), options, documentAttributes, error);
}

NSAttributedString initWithHTML(const NSString &html, const WebArchive &archive, const NSDictionary &options,
                                DocumentAttributes *documentAttributes, NSError *error) {
  if (!html) return NSAttributedString();
  const double timeout =
      options.objectForKey(NSTimeoutDocumentOption).real().value_or(kDefaultPageTimeoutSeconds);
  const WebView webView{Deadline::after(timeout)};
  HTMLDocument document = HTMLDocument::documentWithText(html.view());
  const NSURL base =
      baseOfPage(document, NSURL::URLWithString(options.objectForKey(NSBaseURLDocumentOption).string()));
  WebResourceLoader loader(delegateOf(options), webView, {base});
  loader.provide(archive.subresources());
  const CSSMedium medium;
  const std::vector<AuthorSheet> sheets = loadPageSheets(document, base, medium, loader);
  StyleResolver resolver(document, sheets, medium);
  const PageTextOptions textOptions{.absoluteURL = [&base](const NSString &reference) {
    return URLOfReference(reference.view(), base).absoluteString();
  }};
  const PageText page = textOfPage(document, resolver, textOptions);
  if (documentAttributes) *documentAttributes = documentAttributesOfPage(document);
  const std::vector<WebResource> images = loadImages(page, base, loader);
  NSAttributedString text = textWithImages(page, images);
  tellFailures(loader.failures(), error);
  return text;
}

}  // namespace nimbo
