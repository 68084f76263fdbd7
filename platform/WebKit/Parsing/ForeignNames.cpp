// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Parsing/ForeignNames.hpp"

#include <array>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kSVGElements =
    "altGlyph altGlyphDef altGlyphItem animateColor animateMotion animateTransform clipPath feBlend "
    "feColorMatrix "
    "feComponentTransfer feComposite feConvolveMatrix feDiffuseLighting feDisplacementMap feDistantLight "
    "feDropShadow "
    "feFlood feFuncA feFuncB feFuncG feFuncR feGaussianBlur feImage feMerge feMergeNode feMorphology feOffset "
    "fePointLight feSpecularLighting feSpotLight feTile feTurbulence foreignObject glyphRef linearGradient "
    "radialGradient textPath";

constexpr std::string_view kSVGAttributes =
    "attributeName attributeType baseFrequency baseProfile calcMode clipPathUnits diffuseConstant edgeMode "
    "filterUnits "
    "glyphRef gradientTransform gradientUnits kernelMatrix kernelUnitLength keyPoints keySplines keyTimes "
    "lengthAdjust "
    "limitingConeAngle markerHeight markerUnits markerWidth maskContentUnits maskUnits numOctaves pathLength "
    "patternContentUnits patternTransform patternUnits pointsAtX pointsAtY pointsAtZ preserveAlpha "
    "preserveAspectRatio "
    "primitiveUnits refX refY repeatCount repeatDur requiredExtensions requiredFeatures specularConstant "
    "specularExponent spreadMethod startOffset stdDeviation stitchTiles surfaceScale systemLanguage "
    "tableValues targetX "
    "targetY textLength viewBox viewTarget xChannelSelector yChannelSelector zoomAndPan";

constexpr std::string_view kEndsForeignContent =
    "b big blockquote body br center code dd div dl dt em embed h1 h2 h3 h4 h5 h6 head hr i img li listing "
    "menu meta "
    "nobr ol p pre ruby s small span strong strike sub sup table tt u ul var";

/// By an atom: the name that it stands for, 0 where that is its own.
using Names = std::array<std::uint16_t, kKnownHTMLAtoms>;

/// Of names with blanks between them: each by what it is in small letters.
consteval Names namesByLowercase(std::string_view names) {
  Names table{};
  while (!names.empty()) {
    const std::string_view name = names.substr(0, names.find(' '));
    std::array<char, 32> lower{};
    for (std::size_t i = 0; i < name.size(); ++i) lower[i] = toASCIILower(name[i]);
    table[static_cast<std::uint32_t>(operator""_atom(lower.data(), name.size()))] =
        static_cast<std::uint16_t>(operator""_atom(name.data(), name.size()));
    names.remove_prefix(std::min(name.size() + 1, names.size()));
  }
  return table;
}

constexpr Names kElementsInSVG = namesByLowercase(kSVGElements),
                kAttributesInSVG = namesByLowercase(kSVGAttributes),
                kHTMLInForeign = namesByLowercase(kEndsForeignContent);

std::uint16_t lookUp(const Names &names, HTMLAtom name) {
  const auto number = static_cast<std::uint32_t>(name);
  return number < names.size() ? names[number] : std::uint16_t{0};
}

HTMLAtom adjusted(const Names &names, HTMLAtom name) {
  const std::uint16_t found = lookUp(names, name);
  return found != 0 ? static_cast<HTMLAtom>(found) : name;
}

}  // namespace

HTMLAtom elementNameInSVG(HTMLAtom name) {
  return adjusted(kElementsInSVG, name);
}

HTMLAtom attributeNameInSVG(HTMLAtom name) {
  return adjusted(kAttributesInSVG, name);
}

HTMLAtom attributeNameInMathML(HTMLAtom name) {
  return name == "definitionurl"_atom ? "definitionURL"_atom : name;
}

bool endsForeignContent(HTMLAtom name) {
  return lookUp(kHTMLInForeign, name) != 0;
}

}  // namespace nimbo
