// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/NSAttributedString.hpp"

namespace nimbo {

/// Whether no run is empty, neighbours differ, and the last one ends where the text does.
inline bool hasSoundRuns(const NSAttributedString &text) {
  std::uint32_t start = 0;
  const Interned<TextAttributes> *last = nullptr;
  for (const AttributeRun &run : text.runs()) {
    if (run.end <= start || (last && *last == run.attributes)) return false;
    start = run.end;
    last = &run.attributes;
  }
  return start == text.length();
}

}  // namespace nimbo
