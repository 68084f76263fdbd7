// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a conversion of HTML to plain text does beside leaving the markup out.
struct PlainTextOptions {
  /// Decode character references in text and in the texts of attributes; `stdEntities` those to "<", ">", "&"
  /// and the double quote. `stdEntities` alone decodes nothing but "&lt;", "&gt;", "&amp;" and "&quot;".
  bool entities = true;
  bool stdEntities = true;
  /// Letters lose their diacritics; only with `entities`.
  bool nonUmlauted = false;
  /// Keep the lines that the text of the source is laid out in, as far as they mean something.
  bool reformat = false;
  /// Only what stands in the body, unless there is no text in one.
  bool onlyBody = false;
  /// Leave out hidden and overlong texts.
  bool removeJunk = false;
  /// Obey the comments by which a page hides a part of itself from search engines.
  bool googleTags = false;
};

}  // namespace nimbo
