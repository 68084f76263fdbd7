// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "Classes/Feeds/Feed.hpp"
#include "Classes/Feeds/FeedElements.hpp"
#include "Classes/Feeds/FeedEndTags.hpp"
#include "Classes/Feeds/FeedItemFields.hpp"
#include "Classes/Feeds/FeedNamespaces.hpp"
#include "Classes/Feeds/FeedTexts.hpp"
#include "Classes/Markup/TagShape.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace nimbo::detail {

/// How much is read of a feed.
enum class FeedRules : std::uint8_t {
  kByName,       ///< The elements of a fixed set of tag names.
  kByNamespace,  ///< What else feeds have, under whatever prefix; items that never end.
};

/// Is told what a scan of a feed finds.
class FeedSink {
 public:
  FeedSink() = default;
  FeedSink(const FeedSink &) = delete;
  FeedSink &operator=(const FeedSink &) = delete;
  virtual ~FeedSink() = default;
  /// The text of the feed's title element, with its references as they are. Once at most.
  virtual void takeTitle(const NSString & /*title*/) {}
  /// An item has an end tag in it, its own or another's.
  virtual void takeEndTagOfItem() {}
  /// An item has ended; it may be taken apart.
  virtual void takeItem(FeedItem &item) = 0;
};

/// Reads a feed tag by tag. It borrows the markup, and the sink.
class FeedContext {
 public:
  /// Links are made absolute against the URL, which may be nil.
  FeedContext(FeedRules rules, NSURL feedURL, FeedSink &sink)
      : rules_(rules), feedURL_(std::move(feedURL)), feedBase_(feedURL_), sink_(sink) {}
  FeedContext(const FeedContext &) = delete;
  FeedContext &operator=(const FeedContext &) = delete;

  /// Looks at a tag, or at the end of the text, which ends what never does where the rules say so; answers
  /// whether the text is no feed.
  bool readTag(const TagShape &tag);

  /// Whether the root has been seen.
  bool isFeed() const { return isFeed_; }
  /// What the feed tells of itself, when the scan is over; without items.
  Feed &feed() { return feed_; }

 private:
  /// An element whose text is being read.
  struct Field {
    FeedElement element = FeedElement::kOther;
    /// Of its start tag; empty when no field is open.
    std::u16string_view name;
    const unichar *text = nullptr;
    TextForm form = TextForm::kUnknown;
    /// How many elements of the same name it is in.
    std::uint32_t depth = 0;
    bool hasMarkup = false;
    /// What stands for a text that is empty.
    NSString textOfEmpty = {};
  };
  /// An element whose elements mean something else than those of an item: `kAuthor`, `kImage`, `kForeign`.
  struct Container {
    FeedElement element = FeedElement::kOther;
    std::u16string_view name;
    const unichar *text = nullptr;
  };

  bool isWide() const { return rules_ == FeedRules::kByNamespace; }
  FeedItemFields &fields() { return insideItem_ ? item_ : header_; }
  FeedElement elementOf(std::u16string_view name) const;
  bool isEndOfOuter(std::u16string_view name) const;
  bool hasEndTag(const unichar *text, std::u16string_view markup);
  bool findRoot(const TagShape &tag, FeedElement element);
  bool readTagInField(const TagShape &tag);
  bool readTagInContainer(const TagShape &tag, FeedElement element);
  void readStartTag(const TagShape &tag, FeedElement element);
  void beginItem(const TagShape &tag);
  void endItem();
  void readLink(const TagShape &tag);
  void readCategory(const TagShape &tag);
  void readEnclosure(const TagShape &tag);
  void openField(const TagShape &tag, FeedElement element);
  void closeField(const unichar *end);
  void closeContainer(const unichar *end);
  NSString textOfMarkupField(std::u16string_view units, bool *isPlain) const;
  NSString textOfField(std::u16string_view units, bool *isPlain) const;
  NSURL baseOf(const TagShape &tag, const NSURL &outer) const;
  NSString resolved(const NSString &link) const;
  void finish(const unichar *end);

  const FeedRules rules_;
  const NSURL feedURL_;
  NSURL feedBase_, itemBase_;
  FeedSink &sink_;
  FeedNamespaces namespaces_;
  Feed feed_;
  FeedItemFields item_, header_;
  Field field_;
  Container container_;
  /// Of the whole feed; read when the first end tag may be missing.
  std::optional<FeedEndTags> endTags_;
  std::u16string_view itemName_;
  bool isFeed_ = false;
  bool insideItem_ = false;
  bool hasTitle_ = false;
};

/// Looks at a tag for its context, a `FeedContext`; stops where the text turns out to be no feed. Sections of
/// feeds are those of XML.
extern const TagHandler Feed2HTMLHandler;

}  // namespace nimbo::detail
