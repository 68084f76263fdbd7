// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/Foundation/NSRange.hpp"

/// The names of tags that handlers may ask for, each with a capital first letter: calls X for each of them.
// clang-format off
#define NIMBO_TAG_NAMES(X) \
  X(A) X(Abbr) X(Acronym) X(Address) X(Annotation) X(Applet) X(Area) X(Article) X(Aside) X(Audio) X(B) X(Base) X(Basefont) \
  X(Bdi) X(Bdo) X(Bgsound) X(Big) X(Blink) X(Blockquote) X(Body) X(Br) X(Button) X(Canvas) X(Caption) \
  X(Center) X(Cite) X(Code) X(Col) X(Colgroup) X(Data) X(Datalist) X(Dd) X(Del) X(Details) X(Dfn) X(Dialog) \
  X(Dir) X(Div) X(Dl) X(Dt) X(Em) X(Embed) X(Fieldset) X(Figcaption) X(Figure) X(Font) X(Footer) X(Form) \
  X(Frame) X(Frameset) X(H1) X(H2) X(H3) X(H4) X(H5) X(H6) X(H7) X(H8) X(H9) X(Head) X(Header) X(Hgroup) \
  X(Hr) X(Html) X(I) X(Iframe) X(Image) X(Img) X(Input) X(Ins) X(Isindex) X(Kbd) X(Keygen) X(Label) \
  X(Legend) X(Li) X(Link) X(Listing) X(Main) X(Map) X(Mark) X(Marquee) X(Math) X(Menu) X(Meta) X(Meter) \
  X(Nav) X(Nobr) X(Noembed) X(Noframes) X(Noscript) X(Object) X(Ol) X(Optgroup) X(Option) X(Output) X(P) \
  X(Param) X(Picture) X(Plaintext) X(Pre) X(Progress) X(Q) X(Rb) X(Rp) X(Rt) X(Rtc) X(Ruby) X(S) X(Samp) \
  X(Script) X(Search) X(Section) X(Select) X(Slot) X(Small) X(Source) X(Span) X(Strike) X(Strong) X(Style) \
  X(Sub) X(Summary) X(Sup) X(Svg) X(Table) X(Tbody) X(Td) X(Template) X(Text) X(Textarea) X(Tfoot) X(Th) \
  X(Thead) X(Time) X(Title) X(Tr) X(Track) X(Tt) X(U) X(Ul) X(Var) X(Video) X(Wbr) X(Xml) X(Xmp)
// clang-format on

namespace NIMBO_PUBLIC nimbo {

/// The names of HTML's elements, old ones included, and "xml": "kA", "kAbbr" ... "kXmp". Any thread may look
/// names up.
///
///     switch (tag.tagName()) {
///       case TagName::kImg: return addImage(tag);
///       case TagName::kBody: return true;
enum class TagName : std::uint8_t {
  kUnknown,
/// The value for a name.
#define NIMBO_TAG_NAME(name) k##name,
  NIMBO_TAG_NAMES(NIMBO_TAG_NAME)
#undef NIMBO_TAG_NAME
};

/// How many values a `TagName` has, so that tables can be indexed by it.
inline constexpr std::size_t kTagNames = static_cast<std::size_t>(TagName::kXmp) + 1;

/// A name as one number, which is the same whatever the case of its ASCII letters: six bits for each unit, and
/// the length in front of them. 0 for an empty name, one of more than ten units, and one that has other units
/// than those from "0" to "z".
constexpr std::uint64_t packedTagName(std::u16string_view name) {
  constexpr std::size_t kMaximumLength = 10;
  if (name.size() > kMaximumLength) return 0;
  std::uint64_t packed = name.size();
  for (const unichar c : name) {
    if (c < u'0' || c > u'z') return 0;
    packed = packed << 6 | ((c & 0x1fu) | (c & 0x40u) >> 1);
  }
  return packed;
}

/// The name that is packed so; `kUnknown` when it is none of the enumeration.
TagName tagNamed(std::uint64_t packedName);

/// The name in any case of its ASCII letters; `kUnknown` when it is none of the enumeration.
inline TagName tagNamed(std::u16string_view name) {
  return tagNamed(packedTagName(name));
}

}  // namespace nimbo
