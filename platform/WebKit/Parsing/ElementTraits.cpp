// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Parsing/ElementTraits.hpp"

#include <array>
#include <string_view>

namespace nimbo {
namespace {

struct Group {
  ElementTraits traits;
  /// Names with blanks between them.
  std::string_view names;
};

constexpr Group kHTMLGroups[] = {
    {kIsSpecial,
     "address applet area article aside base basefont bgsound blockquote body br button caption center col "
     "colgroup dd details dir div dl dt embed fieldset figcaption figure footer form frame frameset h1 h2 h3 "
     "h4 h5 h6 "
     "head header hgroup hr html iframe img input keygen li link listing main marquee menu meta nav noembed "
     "noframes "
     "noscript object ol p param plaintext pre script search section select source style summary table tbody "
     "td "
     "template textarea tfoot th thead title tr track ul wbr xmp"},
    {kHoldsListItems, "address div p"},
    {kBoundsScope, "applet caption html marquee object select table td template th"},
    {kEndsByItself, "dd dt li optgroup option p rb rp rt rtc"},
    {kHasMode, "body caption colgroup frameset head html table tbody td template tfoot th thead tr"},
    {kFostersParents, "table tbody tfoot thead tr"},
};

constexpr Group kMathMLGroups[] = {
    {kIsSpecial | kBoundsScope, "annotation-xml mi mn mo ms mtext"},
    {kIsMathText, "mi mn mo ms mtext"},
    {kIsAnnotation, "annotation-xml"},
};

constexpr Group kSVGGroups[] = {
    {kIsSpecial | kBoundsScope | kHoldsHTML, "desc foreignObject title"},
};

using Table = std::array<ElementTraits, kKnownHTMLAtoms>;

template <std::size_t N>
consteval Table tableOf(const Group (&groups)[N]) {
  Table table{};
  for (const Group &group : groups) {
    for (std::string_view rest = group.names; !rest.empty();) {
      const std::string_view name = rest.substr(0, rest.find(' '));
      table[static_cast<std::uint32_t>(operator""_atom(name.data(), name.size()))] |= group.traits;
      rest.remove_prefix(name.size() < rest.size() ? name.size() + 1 : name.size());
    }
  }
  return table;
}

constexpr Table kHTMLTraits = tableOf(kHTMLGroups);
constexpr Table kMathMLTraits = tableOf(kMathMLGroups);
constexpr Table kSVGTraits = tableOf(kSVGGroups);

}  // namespace

ElementTraits traitsOf(HTMLAtom name, HTMLNamespace nameSpace) {
  const auto number = static_cast<std::uint32_t>(name);
  if (number >= kKnownHTMLAtoms) return 0;
  if (nameSpace == HTMLNamespace::html) return kHTMLTraits[number];
  return nameSpace == HTMLNamespace::svg ? kSVGTraits[number] : kMathMLTraits[number];
}

}  // namespace nimbo
