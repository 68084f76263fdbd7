// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pages/PageLinkHandlers.hpp"

#include <utility>

#include "Classes/Markup/TagHandlers.hpp"
#include "Classes/Pages/NSString+HtmlExtensions+PageLinks.hpp"
#include "Classes/Pages/PageFactHandlers.hpp"
#include "Classes/Pages/PageFactTags.hpp"
#include "Classes/Pages/PageLinkTags.hpp"
#include "Classes/Pages/TagTests.hpp"
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"

namespace nimbo {

namespace {

using detail::equalsNoCase;
using detail::isOpeningTag;
using detail::stringUnlessEmpty;

constexpr std::size_t kTextOfAnchor = 128;

void addLink(const NSString &link, LinksContext &context) {
  if (context.isFiltered && filterLink(link)) return;
  context.links.add(normalizedStringURL(link));
}

/// The link of an opening tag; nil when it has none or is not to be followed.
NSString linkToFollow(const TagShape &tag, const LinksContext &context) {
  if (context.usesRelNoFollow && detail::isNoFollowTag(tag)) return {};
  return stringUnlessEmpty(tag.attribute("HREF"));
}

void beginAnchor(const TagShape &tag, LinksContext &context) {
  context.anchorText.reset();
  context.pendingLink = linkToFollow(tag, context);
  if (context.pendingLink) context.anchorText.emplace().reserve(kTextOfAnchor);
}

void endAnchor(LinksContext &context) {
  if (context.anchorText &&
      fastContainsUnichars(context.anchorText->characters(), context.anchorText->length(),
                           context.containing.characters(), context.containing.length())) {
    addLink(context.pendingLink, context);
  }
  context.anchorText.reset();
  context.pendingLink = NSString();
}

void retrieveLinks(const TagShape &tag, LinksContext &context) {
  if (context.anchorText) context.anchorText->append(tag.text());
  const TagName name = tag.tagName();
  const bool isOpening = isOpeningTag(tag);
  if (name == TagName::kBase) {
    if (const auto link = detail::linkOfBaseTag(tag); !link.empty())
      context.baseURL = baseURL(NSString::stringWithCharacters(link));
  } else if (context.containing.length() == 0) {
    if (isOpening && (name == TagName::kA || name == TagName::kArea))
      addLink(linkToFollow(tag, context), context);
  } else if (name == TagName::kA) {
    if (isOpening)
      beginAnchor(tag, context);
    else if (tag.isEndTag())
      endAnchor(context);
  }
}

void retrieveImages(const TagShape &tag, StringSet &images) {
  if (isOpeningTag(tag)) images.add(detail::imageOfTag(tag, tag.tagName(), false));
}

void retrieveSheetsAndScripts(const TagShape &tag, StringSet &links) {
  if (isOpeningTag(tag)) links.add(detail::sheetOrScriptOfTag(tag, tag.tagName(), false));
}

void retrieveObjects(const TagShape &tag, StringSet &objects) {
  const TagName name = tag.tagName();
  if ((name == TagName::kEmbed || name == TagName::kObject) && isOpeningTag(tag))
    objects.add(detail::URLOfTag(tag, "HREF", false));
}

void retrieveMeta(const TagShape &tag, FramesContext &context) {
  const std::u16string_view content = detail::readMetaContent(tag);
  if (content.empty()) return;
  if (context.refresh && equalsNoCase(tag.attribute("HTTP-EQUIV"), "refresh"))
    *context.refresh = NSString::stringWithCharacters(content);
  const std::u16string_view name = tag.attribute("NAME");
  if (context.robots && equalsNoCase(name, "robots")) {
    if (context.robots->length() > 0) context.robots->append(u",");
    context.robots->append(content);
  }
  if (context.revisit && equalsNoCase(name, "revisit-after"))
    *context.revisit = NSString::stringWithCharacters(content);
}

void retrieveLinksAndFrames(const TagShape &tag, FramesContext &context) {
  const TagName name = tag.tagName();
  if (name == TagName::kTitle && context.title && detail::endsElement(tag))
    *context.title = NSString::stringWithCharacters(tag.text());
  if (!isOpeningTag(tag)) return;
  switch (name) {
    case TagName::kHtml:
    case TagName::kHead:
    case TagName::kBody:
      context.markupSeen = true;
      break;
    case TagName::kFrame:
    case TagName::kIframe:
      context.links.add(detail::URLOfTag(tag, "SRC", false));
      break;
    case TagName::kA:
    case TagName::kArea:
      if (context.withLinks) context.links.add(detail::URLOfTag(tag, "HREF", false));
      break;
    case TagName::kBase:
      if (const auto link = detail::linkOfBaseTag(tag); !link.empty())
        context.baseURL = baseURL(NSString::stringWithCharacters(link));
      break;
    case TagName::kLink:
      if (!context.favIcon) break;
      if (NSString icon = detail::favIconOfLinkTag(tag)) *context.favIcon = std::move(icon);
      break;
    case TagName::kMeta:
      retrieveMeta(tag, context);
      break;
    default:
      if (!context.markupSeen && detail::isFeedRoot(tag)) context.isFeed = true;
      break;
  }
}

}  // namespace

const TagHandler RetrieveLinksHandler = tagHandler<retrieveLinks>;
const TagHandler RetrieveImagesHandler = tagHandler<retrieveImages>;
const TagHandler RetrieveSheetsAndScriptsHandler = tagHandler<retrieveSheetsAndScripts>;
const TagHandler RetrieveObjectsHandler = tagHandler<retrieveObjects>;
const TagHandler RetrieveLinksAndFramesHandler = tagHandler<retrieveLinksAndFrames>;

}  // namespace nimbo
