// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <vector>

#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSGeometry.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a document says about itself: a plain value. Strings are nil, and the others nothing, where it says
/// nothing.
///
///     DocumentAttributes attributes;
///     const NSAttributedString text = initWithRTF(data, &attributes);
///     attributes.title;
///     attributes.dictionary().objectForKey(u"Title"_ns);
struct DocumentAttributes {
  /// The kind of document, as "NSRTF", "NSRTFD", "NSPlainText", "NSHTML", "NSWebArchive"; key "DocumentType".
  NSString documentType;
  /// Key "Title".
  NSString title;
  /// Key "Author".
  NSString author;
  /// Key "Subject".
  NSString subject;
  /// Key "Keywords", an array of strings.
  std::vector<NSString> keywords;
  /// Key "Company".
  NSString company;
  /// Key "Copyright".
  NSString copyright;
  /// Key "Comment".
  NSString comment;
  /// Key "CreationTime".
  std::optional<NSDate> creationTime;
  /// Key "ModificationTime".
  std::optional<NSDate> modificationTime;
  /// In points; key "PaperSize", a string as `NSStringFromSize` makes them.
  std::optional<NSSize> paperSize;
  /// In points, as are the other margins; key "LeftMargin".
  std::optional<double> leftMargin;
  /// Key "RightMargin".
  std::optional<double> rightMargin;
  /// Key "TopMargin".
  std::optional<double> topMargin;
  /// Key "BottomMargin".
  std::optional<double> bottomMargin;

  /// What there is as property-list values, under the text system's keys; empty, never nil.
  NSDictionary dictionary() const;
  /// The attributes in a dictionary; what has another key or another type does not count.
  static DocumentAttributes withDictionary(const NSDictionary &dictionary);

  /// Whether all are equal.
  friend bool operator==(const DocumentAttributes &, const DocumentAttributes &) = default;
};

}  // namespace nimbo
