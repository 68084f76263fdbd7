// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreServices/MDImporter.h"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The attributes that an importer fills, behind the C functions of MDImporter.h. One thread uses it at a time.
///
///     MDImporterAttributeDictionary attributes;
///     attributes.functions->setUTF8String(&attributes, "kMDItemTitle", "A page", 6);
///     attributes.dictionary.objectForKey(u"kMDItemTitle"_ns).string();  // "A page"
struct MDImporterAttributeDictionary : MDImporterAttributes {
  /// An array nested deeper is refused.
  static constexpr int kMaximumArrayDepth = 16;
  /// A longer reason is cut.
  static constexpr std::size_t kMaximumReasonBytes = 1000;

  MDImporterAttributeDictionary();

  /// What has been filled in, by the names of the attributes.
  NSDictionary dictionary = NSDictionary::dictionary();
  /// Why attributes are missing, as far as the importer says it.
  NSError error;
};

}  // namespace nimbo
