// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pages/NSString+HtmlLinkThumbsAndTitles.hpp"

#include <string_view>
#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Markup/NSString+XmlExtensions.hpp"
#include "Classes/Pages/IconsHandler.hpp"
#include "Classes/Pages/TagTests.hpp"

namespace nimbo {
inline namespace HtmlLinkThumbsAndTitles {

void getLinkThumbs(const NSString &page, NSDictionary *thumbs, NSDictionary *titles, const NSURL &baseURL,
                   Flag googleTags) {
  if (!thumbs && !titles) return;
  IconsContext context;
  if (thumbs) context.thumbs = NSDictionary::dictionary();
  if (titles) context.titles = NSDictionary::dictionary();
  context.baseURL = baseURL;
  context.page = baseURL.absoluteString();
  context.googleTags = googleTags;
  answerOr(false, [&] { return parseXmlWithHandler(page, IconsHandler, &context, false); });
  if (thumbs) *thumbs = std::move(context.thumbs);
  if (titles) *titles = std::move(context.titles);
}

NSString stringByExtractingJavaScriptURL(const NSString &string) {
  for (const std::string_view prefix : {"javascript:imageViewall('", "javascript:open('"}) {
    if (!detail::equalsNoCase(string.view().substr(0, prefix.size()), prefix)) continue;
    const std::u16string_view link = string.view().substr(prefix.size());
    const std::size_t end = link.find(u'\'');
    return end == link.npos ? NSString() : NSString::stringWithCharacters(link.substr(0, end));
  }
  return {};
}

}  // namespace HtmlLinkThumbsAndTitles
}  // namespace nimbo
