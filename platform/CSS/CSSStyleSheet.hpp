// SPDX-License-Identifier: Apache-2.0
//
// A style sheet as rules for one medium: what "@media" and "@supports" guard is there only when they hold, and
// nested rules stand beside those that they are nested in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "platform/CSS/CSSArena.hpp"
#include "platform/CSS/CSSDeclaration.hpp"
#include "platform/CSS/CSSMedium.hpp"
#include "platform/CSS/CSSSelector.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A layer of a sheet, by its place among the sheet's layers.
using CSSLayerIndex = std::uint32_t;
/// What stands in no layer.
inline constexpr CSSLayerIndex kNoCSSLayer = 0xffffffff;

/// A layer of a sheet; they stand in the order in which they are named first, each behind the one around it.
struct CSSLayer {
  /// One part of its name; empty for a layer without a name, which is equal to no other.
  std::u16string_view name;
  /// The layer around it, or `kNoCSSLayer`.
  CSSLayerIndex parent = kNoCSSLayer;
};

/// A rule: the declarations that the elements of some selectors have.
struct CSSStyleRule {
  /// The place of its selectors, which `selectors` gives.
  std::uint32_t firstSelector = 0;
  /// At least 1.
  std::uint32_t selectorCount = 0;
  /// The place of its declarations, which `declarations` gives.
  std::uint32_t firstDeclaration = 0;
  /// At least 1.
  std::uint32_t declarationCount = 0;
  /// The layer that it stands in, or `kNoCSSLayer`.
  CSSLayerIndex layer = kNoCSSLayer;
};

/// An "@import" whose media and conditions hold.
struct CSSImport {
  /// As it stands in the sheet, without escapes.
  std::u16string_view url;
  /// The layer that the other sheet's rules come into.
  CSSLayerIndex layer = kNoCSSLayer;
  /// How many layers this sheet names in front of it.
  std::uint32_t precedingLayers = 0;
};

/// How a sheet is read.
struct CSSSheetReading {
  /// For its selectors; the mode is for the values, too.
  CSSSelectorReading selectors;
  /// The medium that "@media" and "@import" ask about.
  CSSMedium medium;
};

/// A style sheet. It borrows its text from the string that it holds. Any thread may read it.
class CSSStyleSheet {
 public:
  /// Sheets with more units are cut off there.
  static constexpr std::uint32_t kMaximumLengthInCodeUnits = 1 << 26;
  /// Rules that are nested deeper are left out.
  static constexpr std::uint32_t kMaximumNesting = 32;

  CSSStyleSheet() = default;
  /// Reads a sheet; nothing is ever an error. The table of names must outlive it. Raises `std::bad_alloc`.
  CSSStyleSheet(NSString source, const CSSSheetReading &reading);

  /// The rules in their order; those without declarations, or whose selectors match nothing, are left out.
  std::span<const CSSStyleRule> rules() const NIMBO_LIFETIMEBOUND { return rules_; }
  /// The selectors of a rule.
  std::span<const CSSSelector> selectors(const CSSStyleRule &rule) const NIMBO_LIFETIMEBOUND {
    return std::span(selectors_).subspan(rule.firstSelector, rule.selectorCount);
  }
  /// The declarations of a rule.
  std::span<const CSSDeclaration> declarations(const CSSStyleRule &rule) const NIMBO_LIFETIMEBOUND {
    return std::span(declarations_).subspan(rule.firstDeclaration, rule.declarationCount);
  }
  /// What the sheet imports, in order; their rules come before its own.
  std::span<const CSSImport> imports() const NIMBO_LIFETIMEBOUND { return imports_; }
  /// Its layers.
  std::span<const CSSLayer> layers() const NIMBO_LIFETIMEBOUND { return layers_; }

 private:
  friend class CSSSheetReader;

  NSString source_;
  CSSArena arena_;
  std::vector<CSSStyleRule> rules_;
  std::vector<CSSSelector> selectors_;
  std::vector<CSSDeclaration> declarations_;
  std::vector<CSSImport> imports_;
  std::vector<CSSLayer> layers_;
};

}  // namespace nimbo
