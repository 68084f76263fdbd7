// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>
#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// What a page or a style sheet shows or uses of other files.
enum class ReferenceKind {
  image,  ///< Also the fonts of style sheets.
  sheet,
  frame,
};

/// A file as it is referred to.
struct PageReference {
  ReferenceKind kind;
  /// As it is written, without character references.
  NSString URL;
  /// The name of a frame; nil when it has none.
  NSString frameName;
};

/// What a page refers to.
struct PageReferences {
  std::vector<PageReference> references;
  /// The URL that the others count from, if the page names one; else nil.
  NSString base;
};

/// The images, sheets and frames of a page, in order: those of elements, of their styles, and of sheets in the
/// page. What scripts would load is not known.
PageReferences referencesOfPage(const NSString &markup);

/// Appends the sheets that a style sheet imports, and the images and fonts that it uses.
void appendReferencesOfSheet(std::u16string_view sheet, std::vector<PageReference> &references);

}  // namespace nimbo
