// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/RetrieveFeedHandlers.hpp"

#include "Classes/Feeds/FeedElements.hpp"
#include "Classes/Markup/TagHandlers.hpp"

namespace nimbo {

namespace {

using detail::FeedElement;

FeedElement elementOf(const TagShape &tag) {
  return tag.isOrdinary() ? detail::feedElementNamed(tag.name()) : FeedElement::kOther;
}

bool isRoot(FeedElement element) {
  return element == FeedElement::kRSS || element == FeedElement::kAtom || element == FeedElement::kRDF;
}

bool retrieveFeed(const TagShape &tag, bool &isFeed) {
  const FeedElement element = elementOf(tag);
  if (isRoot(element)) isFeed = true;
  return isFeed || element == FeedElement::kPage;
}

bool retrieveCompleteFeed(const TagShape &tag, CompleteFeedContext &context) {
  const FeedElement element = elementOf(tag);
  if (isRoot(element)) {
    context.isFeed = true;
    context.isComplete = tag.isEndTag() || tag.isEmptyElementTag();
  }
  return context.isComplete || element == FeedElement::kPage;
}

}  // namespace

const TagHandler RetrieveFeedHandler = tagHandler<retrieveFeed>;
const TagHandler RetrieveCompleteFeedHandler = tagHandler<retrieveCompleteFeed>;

}  // namespace nimbo
