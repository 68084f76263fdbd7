// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreServices/MDImporter.h"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The attributes that an importer fills, behind the C functions of MDImporter.h.
struct MDImporterAttributeDictionary : MDImporterAttributes {
  /// An array nested deeper is refused.
  static constexpr int kMaximumArrayDepth = 16;

  MDImporterAttributeDictionary();

  NSDictionary dictionary = NSDictionary::dictionary();
};

}  // namespace nimbo
