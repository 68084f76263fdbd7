// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Classes/Feeds/FeedReading.hpp"
#include "Classes/Feeds/NSArray+FeedExtensions.hpp"
#include "Classes/Feeds/NSDictionary+FeedExtensions.hpp"
#include "Classes/Feeds/NSString+FeedExtensions.hpp"
#include "Classes/Feeds/SafeMarkup.hpp"
#include "fuzz/FuzzedText.hpp"
#include "platform/Foundation/id.hpp"
#include "tests/support/StringSamples.hpp"

namespace {

void require(bool good) {
  if (!good) std::abort();
}

/// Whether the markup has no start of a tag that may run something.
bool isHarmless(std::u16string_view markup) {
  for (const std::u16string_view start : {u"<script", u"<style", u"<iframe", u"<svg", u"<object", u"<!--",
                                          u"href=\"javascript:", u"src=\"javascript:"})
    if (markup.find(start) != markup.npos) return false;
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace nimbo;
  const NSString text = exactString(fuzzedText(data, size));
  const NSURL url = NSURL::URLWithString(u"http://example.org/a/feed"_ns);

  bool isComplete = false;
  const bool isOne = isFeed(text);
  require(isFeedComplete(text, &isComplete) == isOne && (isOne || !isComplete));
  const NSArray items = getItemsOfFeed(text, url);
  require(isOne || items.count() == 0);
  require(isOne != stringByConvertingFeed(text, url, false).identicalTo(text) || text.length() == 0);
  for (const id &item : items) static_cast<void>(isEmptyFeedItem(item.dictionary()));
  static_cast<void>(stringByReplacingLinkedStyleSheet(stringByConvertingItemsToDisplayHTML(items)));

  const NSString safe = safeMarkup(text, url);
  require(isHarmless(safe.view()) && safeText(text).view().find(u'<') == std::u16string_view::npos);
  // What is safe stays as it is, so that nothing hides behind a second reading.
  require(safeMarkup(safe) == safeMarkup(safeMarkup(safe)));

  if (const auto feed = readFeed(text, url)) {
    // Which text is the description that drops an item is for namespaces to say.
    const bool mayDrop = text.view().find(u"Array") != std::u16string_view::npos;
    require(!isOne || mayDrop || feed->items.size() >= items.count());
    require(isHarmless(stringByConvertingFeedToHTML(*feed, {.baseURL = url}).view()));
    const auto again = feedOfJSONFeed(JSONFeedOfFeed(*feed));
    require(again && again->items.size() == feed->items.size());
    require(OPMLOfFeed(*feed, url).length() > 0);
  }
  return 0;
}
