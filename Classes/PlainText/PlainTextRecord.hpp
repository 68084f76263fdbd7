// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Classes/PlainText/PlainTextJunk.hpp"
#include "Classes/PlainText/PlainTextOptions.hpp"
#include "Classes/PlainText/PlainTextTags.hpp"
#include "Classes/PlainText/PlainTextWriter.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// What a page is converted with: the context of `PlainTextHandler` and `SimplePlainTextHandler`. The writer
/// must have been given room for the page.
struct PlainTextRecord {
  /// Where everything counts as part of the body.
  static constexpr std::int32_t kEverywhere = 0x3fffffff;

  explicit PlainTextRecord(const PlainTextOptions &conversion)
      : options(conversion), bodyCounter(conversion.onlyBody ? 0 : kEverywhere) {}

  /// Begins anew, and takes the whole page for its body.
  void restartEverywhere();

  PlainTextOptions options;
  PlainTextWriter writer;
  bool isJunkFound = false;
  std::int32_t bodyCounter;

  /// Parts of a page that search engines are to leave out of: bit 1 the index, 2 snippets, 4 link texts.
  unsigned markerMask = 7;
  std::uint32_t linkAndHeadingDepth = 0;

  /// The element that the text belongs to, as far as it matters; a body or head tag ends them all.
  struct Elements {
    bool isInNoframes = false;
    bool isInNoscript = false;
    /// The packed name of the script or style whose start tag alone the scanner told of; 0 where none is open.
    std::uint64_t rawText = 0;
    bool isInTitle = false;
    std::uint32_t titleStart = 0;
    bool isInSelect = false;
    bool isInUnselectedOption = false;
    bool showsAllOptions = false;
    bool hasOption = false;
    PlainTextWriter::Mark selectMark;
    /// Behind the last end tag of a link, and the comments and scripts that follow it.
    const unichar *lastLinkEnd = nullptr;
    std::uint32_t preDepth = 0;
    bool isFirstFeedDropped = false;
    /// Textarea, xmp or plaintext: tags are text in them.
    detail::TagElement literal = detail::TagElement::kOther;
    detail::HiddenElement hidden;
    /// Has a background of its own, so that the colour of the page says nothing in it.
    detail::FollowedElement background;
  };
  Elements elements;
  bool hasTitle = false;
  /// Of the body; nil when it has none.
  NSString pageColor;
  /// Where character references are decoded.
  std::vector<unichar> decoded;
};

}  // namespace nimbo
