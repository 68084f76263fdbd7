// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/FormulaHints.hpp"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

/// How many elements around one are looked at; scripts of scripts are much nearer.
constexpr int kMaximumElementsAround = 64;

/// What the elements around a part of a formula make of it.
struct FormulaPlace {
  /// How often it is a script, or what is written as small as one.
  int depth = 0;
  /// Whether the formula stands in a line of text, so that fractions are small.
  bool isCompact = true;
};

class FormulaReader {
 public:
  explicit FormulaReader(const HTMLDocument &document) : document_(document) {}

  FormulaPlace placeOf(HTMLNodeIndex index) const;
  /// The place of what stands around an element in its own formula.
  FormulaPlace placeAround(HTMLNodeIndex index) const;

 private:
  bool is(const HTMLNode &node, std::u16string_view name) const {
    return document_.atoms().text(node.name) == name;
  }
  std::u16string_view attribute(const HTMLNode &node, std::u16string_view name) const {
    return document_.attribute(node, document_.atoms().existingAtomOf(name)).value_or(u"");
  }
  bool isTrue(const HTMLNode &node, std::u16string_view name) const {
    return equalsASCIINoCase(attribute(node, name), "true");
  }
  int placeAmongElements(HTMLNodeIndex index) const;
  void enter(HTMLNodeIndex index, FormulaPlace &place) const;

  const HTMLDocument &document_;
};

/// 0 for the first, 1 for the second, and 2 for all others.
int FormulaReader::placeAmongElements(HTMLNodeIndex index) const {
  int place = 0;
  HTMLNodeIndex i = document_.node(document_.node(index).parent).firstChild;
  for (; i != index && place < 2; i = document_.node(i).nextSibling)
    if (document_.node(i).isElement()) ++place;
  return place;
}

void FormulaReader::enter(HTMLNodeIndex index, FormulaPlace &place) const {
  const HTMLNode &node = document_.node(index);
  const HTMLNode &parent = document_.node(node.parent);
  const int number = parent.isElement() ? placeAmongElements(index) : 0;
  const std::u16string_view around = parent.isElement() ? document_.atoms().text(parent.name) : u"";
  const bool isAboveOrBelow = around == u"munder" || around == u"mover" || around == u"munderover";
  const bool isScript = isAboveOrBelow || around == u"msub" || around == u"msup" || around == u"msubsup" ||
                        around == u"mmultiscripts";
  if (isScript && number > 0) {
    const bool isBelow = around != u"mover" && number == 1;
    const bool isAccent = isAboveOrBelow && isTrue(parent, isBelow ? u"accentunder" : u"accent");
    if (!isAccent) ++place.depth;
    place.isCompact = true;
  } else if (around == u"mroot" && number > 0) {
    place.depth += 2;
    place.isCompact = true;
  } else if (around == u"mfrac") {
    if (place.isCompact) ++place.depth;
    place.isCompact = true;
  }
  if (is(node, u"mtable")) place.isCompact = true;
  const std::u16string_view display = attribute(node, u"displaystyle");
  if (!display.empty()) place.isCompact = !equalsASCIINoCase(display, "true");
}

FormulaPlace FormulaReader::placeAround(HTMLNodeIndex index) const {
  std::vector<HTMLNodeIndex> around;
  HTMLNodeIndex i = document_.node(index).parent;
  for (int left = kMaximumElementsAround;
       left > 0 && document_.node(i).nameSpace == HTMLNamespace::mathML && document_.node(i).isElement();
       --left, i = document_.node(i).parent)
    around.push_back(i);
  FormulaPlace place;
  if (around.empty()) return place;
  place.isCompact = !equalsASCIINoCase(attribute(document_.node(around.back()), u"display"), "block");
  std::ranges::for_each(around.rbegin(), around.rend(), [&](HTMLNodeIndex each) { enter(each, place); });
  return place;
}

FormulaPlace FormulaReader::placeOf(HTMLNodeIndex index) const {
  FormulaPlace place = placeAround(index);
  enter(index, place);
  return place;
}

/// The size at a depth, of that at none, as fonts for formulas have it.
double scaleOf(int depth) {
  constexpr double kScript = 0.8, kScriptOfScript = 0.6, kFurther = 0.71;
  if (depth <= 1) return depth == 1 ? kScript : 1;
  double scale = kScriptOfScript;
  while (depth-- > 2) scale *= kFurther;
  return scale;
}

}  // namespace

void appendFormulaHints(const HTMLDocument &document, HTMLNodeIndex index, DeclarationTexts &texts,
                        HintList &hints) {
  const HTMLNode &element = document.node(index);
  if (element.name != document.atoms().existingAtomOf(u"math")) {
    const FormulaReader reader(document);
    const int outer = reader.placeAround(index).depth, own = reader.placeOf(index).depth;
    if (own > outer)
      hints.set(CSSProperty::kFontSize,
                CSSValue::number(100 * scaleOf(own) / scaleOf(outer), CSSUnit::kPercent));
  }
  for (const auto &[name, property] :
       {std::pair{u"mathsize", CSSProperty::kFontSize}, std::pair{u"mathcolor", CSSProperty::kColor}}) {
    const auto value = document.attribute(element, document.atoms().existingAtomOf(name));
    if (!value) continue;
    const auto declared = texts.ofValue(property, *value, CSSMode::kStandard);
    hints.declarations.insert(hints.declarations.end(), declared.begin(), declared.end());
  }
}

}  // namespace nimbo::detail
