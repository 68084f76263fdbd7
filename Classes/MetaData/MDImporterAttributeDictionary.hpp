// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreServices/MDImporter.h"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The attributes that an importer fills, behind the C functions of MDImporter.h.
struct MDImporterAttributeDictionary : MDImporterAttributes {
  /// An array nested deeper is refused.
  static constexpr int kMaximumArrayDepth = 16;
  /// A longer reason is cut.
  static constexpr std::size_t kMaximumReasonBytes = 1000;

  MDImporterAttributeDictionary();

  NSDictionary dictionary = NSDictionary::dictionary();
  /// Why attributes are missing, as far as the importer says it.
  NSError error;
};

}  // namespace nimbo
