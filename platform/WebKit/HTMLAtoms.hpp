// SPDX-License-Identifier: Apache-2.0
//
// The names of a document as small numbers, so that they are compared at once. Names of HTML that the code
// speaks of have the same atom in all documents.
//
//     HTMLAtoms atoms;
//     atoms.atomOfFolded(u"DIV") == "div"_atom;  // true
//     atoms.text(atoms.atomOf(u"My-Class"));  // "My-Class"
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo {

/// The number of a text: a name of an element or attribute, an id or a class. Equal texts of one document have
/// equal numbers.
enum class HTMLAtom : std::uint32_t {};

/// The atom of the empty text, and of a text that a document does not have.
inline constexpr HTMLAtom kNoHTMLAtom{0};

namespace detail {

/// The known names, sorted, with blanks between them.
inline constexpr std::string_view kHTMLNameList =
    "a abbr acronym action address align alink alt altGlyph altGlyphDef altGlyphItem altglyph altglyphdef "
    "altglyphitem animateColor animateMotion animateTransform animatecolor animatemotion animatetransform "
    "annotation-xml applet area article aside attributeName attributeType attributename attributetype audio "
    "b background base baseFrequency baseProfile basefont basefrequency baseprofile bdi bdo bgcolor bgsound "
    "big blink blockquote body border br button calcMode calcmode canvas caption cellpadding cellspacing "
    "center charset checked circle cite class clear clipPath clipPathUnits clippath clippathunits code col "
    "colgroup color cols colspan compact content coords d data datalist dd definitionURL definitionurl defs "
    "del desc details dfn dialog diffuseConstant diffuseconstant dir disabled div dl dt edgeMode edgemode "
    "em embed encoding face feBlend feColorMatrix feComponentTransfer feComposite feConvolveMatrix "
    "feDiffuseLighting feDisplacementMap feDistantLight feDropShadow feFlood feFuncA feFuncB feFuncG "
    "feFuncR feGaussianBlur feImage feMerge feMergeNode feMorphology feOffset fePointLight "
    "feSpecularLighting feSpotLight feTile feTurbulence feblend fecolormatrix fecomponenttransfer "
    "fecomposite feconvolvematrix fediffuselighting fedisplacementmap fedistantlight fedropshadow feflood "
    "fefunca fefuncb fefuncg fefuncr fegaussianblur feimage femerge femergenode femorphology feoffset "
    "fepointlight fespecularlighting fespotlight fetile feturbulence fieldset figcaption figure fill "
    "filterUnits filterunits font footer for foreignObject foreignobject form frame frameset g glyphRef "
    "glyphref gradientTransform gradientUnits gradienttransform gradientunits h1 h2 h3 h4 h5 h6 head header "
    "headers height hgroup hidden hr href hspace html http-equiv i id iframe image img input ins isindex "
    "itemprop kbd kernelMatrix kernelUnitLength kernelmatrix kernelunitlength keyPoints keySplines keyTimes "
    "keygen keypoints keysplines keytimes label lang legend lengthAdjust lengthadjust li limitingConeAngle "
    "limitingconeangle line linearGradient lineargradient link listing main malignmark map mark "
    "markerHeight markerUnits markerWidth markerheight markerunits markerwidth marquee maskContentUnits "
    "maskUnits maskcontentunits maskunits math media menu menuitem meta meter method mglyph mi mn mo ms "
    "mtext name nav nobr noembed noframes noscript noshade nowrap numOctaves numoctaves object ol onclick "
    "open optgroup option output p param path pathLength pathlength patternContentUnits patternTransform "
    "patternUnits patterncontentunits patterntransform patternunits picture plaintext points pointsAtX "
    "pointsAtY pointsAtZ pointsatx pointsaty pointsatz polygon pre preserveAlpha preserveAspectRatio "
    "preservealpha preserveaspectratio primitiveUnits primitiveunits progress property q radialGradient "
    "radialgradient rb rect refX refY refx refy rel repeatCount repeatDur repeatcount repeatdur "
    "requiredExtensions requiredFeatures requiredextensions requiredfeatures rev reversed role rows rowspan "
    "rp rt rtc ruby rules s samp script search section select selected selectedcontent shape size sizes "
    "slot small source span specularConstant specularExponent specularconstant specularexponent "
    "spreadMethod spreadmethod src srcset start startOffset startoffset stdDeviation stddeviation "
    "stitchTiles stitchtiles strike stroke strong style sub summary sup surfaceScale surfacescale svg "
    "systemLanguage systemlanguage tabindex table tableValues tablevalues target targetX targetY targetx "
    "targety tbody td template text textLength textPath textarea textlength textpath tfoot th thead time "
    "title tr track tspan tt type u ul use usemap valign value var video viewBox viewTarget viewbox "
    "viewtarget vlink vspace wbr width xChannelSelector xchannelselector xlink:href xml:lang xmlns xmp "
    "yChannelSelector ychannelselector zoomAndPan zoomandpan";

/// The known names in the order of their atoms; the first one is empty.
inline constexpr auto kHTMLNames = [] {
  std::array<std::string_view, std::ranges::count(kHTMLNameList, ' ') + 2> names;
  std::string_view rest = kHTMLNameList;
  for (std::size_t i = 1; i < names.size(); ++i) {
    names[i] = rest.substr(0, rest.find(' '));
    rest.remove_prefix(std::min(names[i].size() + 1, rest.size()));
  }
  return names;
}();
static_assert(std::ranges::adjacent_find(kHTMLNames, std::ranges::greater_equal()) == kHTMLNames.end());

}  // namespace detail

/// How many atoms are the same in all documents; they are the smallest.
inline constexpr std::uint32_t kKnownHTMLAtoms = std::size(detail::kHTMLNames);

/// The atom of a known name. Another one does not compile.
consteval HTMLAtom operator""_atom(const char *name, std::size_t length) {
  const auto *const found = std::ranges::lower_bound(detail::kHTMLNames, std::string_view(name, length));
  if (found == std::end(detail::kHTMLNames) || *found != std::string_view(name, length)) throw "no known name";
  return static_cast<HTMLAtom>(found - std::begin(detail::kHTMLNames));
}

/// The unit of a name as the parser takes it: capital letters of ASCII become small, U+0000 becomes U+FFFD.
constexpr unichar foldedNameUnit(unichar c) {
  if (c >= u'A' && c <= u'Z') return static_cast<unichar>(c + (u'a' - u'A'));
  return c != 0 ? c : u'\uFFFD';
}

/// The atoms of one document. Texts are copied.
class HTMLAtoms {
 public:
  /// The atom of the text, which is made when there is none yet.
  HTMLAtom atomOf(std::u16string_view text) { return insert<false>(text); }
  /// The atom of the text after `foldedNameUnit`.
  HTMLAtom atomOfFolded(std::u16string_view text) { return insert<true>(text); }
  /// The atom of the text; `kNoHTMLAtom` when there is none.
  HTMLAtom existingAtomOf(std::u16string_view text) const;
  /// The text of an atom; borrowed until the next one is made.
  std::u16string_view text(HTMLAtom atom) const NIMBO_LIFETIMEBOUND;
  /// One more than the greatest atom.
  std::uint32_t count() const { return kKnownHTMLAtoms + static_cast<std::uint32_t>(own_.size()); }

 private:
  /// A text that is no known name; it begins at `start` of `units_`.
  struct Own {
    std::uint64_t hash;
    std::uint32_t start;
    std::uint32_t length;
  };

  template <bool IsFolded>
  HTMLAtom insert(std::u16string_view text);
  /// Where the text is in `slots_`, or the empty slot where it belongs.
  template <bool IsFolded>
  std::size_t slotOf(std::u16string_view text, std::uint64_t hash) const;
  void grow();

  std::vector<Own> own_;
  std::u16string units_;
  /// Open addressing: numbers of `own_` plus one, 0 for an empty slot. Half of them at most are in use.
  std::vector<std::uint32_t> slots_;
};

}  // namespace nimbo
