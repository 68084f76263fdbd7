// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <vector>

#include "Classes/PlainText/HiddenText.hpp"
#include "Classes/PlainText/LinksAndHeadings.hpp"
#include "Classes/PlainText/PlainTextOptions.hpp"
#include "Classes/PlainText/PlainTextWriter.hpp"
#include "Classes/PlainText/PreformattedElement.hpp"
#include "Classes/PlainText/SearchEngineMarkers.hpp"
#include "Classes/PlainText/SelectElement.hpp"
#include "Classes/PlainText/StyledBlocks.hpp"
#include "Classes/PlainText/TextPlace.hpp"
#include "Classes/PlainText/TitleElement.hpp"

namespace nimbo::detail {

/// What a conversion is made of, behind a `PlainTextRecord`: each part follows one kind of element.
struct PlainTextConversion {
  explicit PlainTextConversion(const PlainTextOptions &conversion)
      : options(conversion), place(conversion.onlyBody) {}

  /// Makes room for the text of the tag, and of all markup behind it.
  void makeRoom(const TagShape &tag) {
    writer.makeRoom(tag.markup().size() - std::min(tag.textLocation(), tag.tagRange().location));
  }
  /// Whether text is written here.
  bool showsText() const {
    return place.allowsText() && (!options.googleTags || markers.areIndexed()) && !title.hidesText() &&
           !select.hidesText();
  }
  /// Begins anew, and takes the whole page for its body.
  void restartEverywhere() {
    writer.restart();
    isJunkFound = false;
    place = TextPlace(false);
    markers = {};
    title = {};
    select = {};
    preformatted = {};
    styledBlocks = {};
    links = {};
    listDepth = 0;
    hidden = {};
  }
  /// A body or head tag ends all elements.
  void leaveElements() {
    place.leaveElements();
    title.leave();
    select = {};
    preformatted = {};
    styledBlocks.leave();
    links.leaveLink();
    listDepth = 0;
    hidden.leaveElements();
  }

  PlainTextOptions options;
  PlainTextWriter writer{options.forReading};
  bool isJunkFound = false;

  TextPlace place;
  SearchEngineMarkers markers;
  TitleElement title;
  SelectElement select;
  PreformattedElement preformatted;
  StyledBlocks styledBlocks;
  LinksAndHeadings links;
  /// How many lists are open; only for reading.
  std::uint32_t listDepth = 0;
  HiddenText hidden;
  /// Where character references are decoded.
  std::vector<unichar> decoded;
};

}  // namespace nimbo::detail
