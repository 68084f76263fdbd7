// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/CSS/CSSSelectorMatcher.hpp"
#include "platform/CSS/CSSStyleSheet.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A rule that holds for an element.
struct CSSMatch {
  /// The rule's, borrowed from the sheet.
  std::span<const CSSDeclaration> declarations;
  /// That of the most specific selector that matches.
  CSSSpecificity specificity = 0;
  /// The place of its layer among the origin's; what is in no layer comes last. For important declarations the
  /// order of layers is the reverse.
  std::uint32_t layerRank = 0;
  /// The place of the rule among all of the origin.
  std::uint32_t order = 0;
  /// The box of the element that it is for.
  CSSPseudoElement pseudoElement = CSSPseudoElement::kNone;
};

/// The rules of one origin, found by what they ask of an element. Sheets are added in order, the imported ones
/// in front of those that import them, and must outlive it.
///
///     CSSRuleIndex index;
///     for (const CSSImport &import : sheet.imports()) {
///       index.addLayers(sheet, import.precedingLayers, around);
///       addWithImports(imported, index.addedLayer(sheet, import.layer, around));
///     }
///     index.add(sheet, around);
///     index.finish();
class CSSRuleIndex {
 public:
  /// A layer of the origin.
  using Layer = std::uint32_t;
  /// The place of what is in no layer.
  static constexpr Layer kNoLayer = 0;

  /// Adds the first layers of a sheet, inside the layer `around`.
  void addLayers(const CSSStyleSheet &sheet, std::size_t count, Layer around = kNoLayer);
  /// The layer of the origin that a sheet's layer has become; all layers up to it are added.
  Layer addedLayer(const CSSStyleSheet &sheet, CSSLayerIndex layer, Layer around = kNoLayer);
  /// Adds the layers and the rules of a sheet. Raises `std::bad_alloc`.
  void add(const CSSStyleSheet &sheet, Layer around = kNoLayer);
  /// Makes the index, when all sheets have been added and before the first match.
  void finish();

  /// Appends the rules that hold for the element and its pseudo-elements, a rule at most once for each of them,
  /// by layer, specificity and order; later ones win.
  void match(CSSSelectorMatcher &matcher, CSSElementIndex element, std::vector<CSSMatch> &matches) const;

 private:
  struct Entry {
    const CSSSelector *selector;
    std::span<const CSSDeclaration> declarations;
    std::uint32_t order;
    /// The layer; when the index is made, its rank.
    std::uint32_t layer;
  };
  /// The entries of each name one behind the other: those of name n from starts[n] to starts[n + 1].
  struct Bucket {
    std::vector<std::uint32_t> starts;
    std::vector<Entry> entries;

    void fill(std::span<const Entry> added, CSSSelector::Key key);
    std::span<const Entry> of(CSSName name) const;
  };
  using LayersOfSheet = std::vector<Layer>;

  void matchEntries(std::span<const Entry> entries, CSSSelectorMatcher &matcher, CSSElementIndex element,
                    std::vector<CSSMatch> &matches) const;
  std::vector<std::uint32_t> rankedLayers() const;

  std::vector<Entry> added_;
  Bucket byId_, byClass_, byType_, others_;
  /// Of each layer the one around it.
  std::vector<Layer> layersAround_ = {kNoLayer};
  std::map<std::pair<Layer, std::u16string_view>, Layer> namedLayers_;
  std::map<std::pair<const CSSStyleSheet *, Layer>, LayersOfSheet> layersOfSheets_;
  std::uint32_t order_ = 0;
};

}  // namespace nimbo
