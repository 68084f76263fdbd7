// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a conversion of HTML to plain text does beside leaving the markup out: a plain value.
///
///     const PlainTextOptions options{.reformat = true, .removeJunk = true};
///     bool junkFound;
///     const NSString text = _convertHtml2PlainTextUsingHandler(page, PlainTextHandler, options, &junkFound);
struct PlainTextOptions {
  /// Decodes character references in text and in texts of attributes, but for those to "<", ">", "&" and the
  /// double quote.
  bool entities = true;
  /// Decodes the references to "<", ">", "&" and the double quote; without `entities` only "&lt;", "&gt;",
  /// "&amp;" and "&quot;".
  bool stdEntities = true;
  /// Takes the diacritics from letters; only with `entities`.
  bool nonUmlauted = false;
  /// Keeps the lines that the text of the source is laid out in, as far as they mean something.
  bool reformat = false;
  /// Writes only what stands in the body, unless there is no text in one.
  bool onlyBody = false;
  /// Leaves out hidden and overlong texts.
  bool removeJunk = false;
  /// Obeys the comments by which a page hides a part of itself from search engines.
  bool googleTags = false;
  /// Lays the text out for people: one empty line between paragraphs, none between items and rows and in
  /// divisions, no blanks at the ends of lines; empty lines stay where white space is kept. With `entities` and
  /// `stdEntities`, all references that browsers know are decoded, in texts of any length.
  bool forReading = false;
};

}  // namespace nimbo
