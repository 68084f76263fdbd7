// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/AuthorRules.hpp"

#include <algorithm>

#include "platform/CSS/CSSMedium.hpp"

namespace nimbo::detail {

AuthorRules::AuthorRules(std::span<const AuthorSheet> sheets, const CSSSheetReading &reading) {
  for (const AuthorSheet &sheet : sheets) add(sheet, reading, CSSRuleIndex::kNoLayer, 0);
  index_.finish();
}

void AuthorRules::add(const AuthorSheet &sheet, const CSSSheetReading &reading, CSSRuleIndex::Layer around,
                      std::uint32_t depth) {
  if (!sheet.text || !matchesMedium(sheet.media, reading.medium)) return;
  const CSSStyleSheet &read = sheets_.emplace_back(sheet.text, reading);
  if (depth < AuthorSheet::kMaximumImportDepth) {
    const std::size_t count = std::min(read.imports().size(), sheet.imports.size());
    for (std::size_t i = 0; i < count; ++i) {
      const CSSImport &import = read.imports()[i];
      index_.addLayers(read, import.precedingLayers, around);
      add(sheet.imports[i], reading,
          import.layer == kNoCSSLayer ? around : index_.addedLayer(read, import.layer, around), depth + 1);
    }
  }
  index_.add(read, around);
}

}  // namespace nimbo::detail
