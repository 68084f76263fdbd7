// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextTags.hpp"

namespace nimbo::detail {

namespace {

struct Row {
  TagName name;
  TagBreak tagBreak = TagBreak::kNone;
  TagElement element = TagElement::kOther;
};

constexpr Row kRows[] = {
    {TagName::kP, TagBreak::kEmptyLine, TagElement::kParagraph},
    {TagName::kH1, TagBreak::kEmptyLine, TagElement::kHeading},
    {TagName::kH2, TagBreak::kEmptyLine, TagElement::kHeading},
    {TagName::kH3, TagBreak::kEmptyLine, TagElement::kHeading},
    {TagName::kH4, TagBreak::kEmptyLine, TagElement::kHeading},
    {TagName::kH5, TagBreak::kEmptyLine, TagElement::kHeading},
    {TagName::kH6, TagBreak::kEmptyLine, TagElement::kHeading},
    {TagName::kH7, TagBreak::kEmptyLine, TagElement::kHeading},
    {TagName::kH8, TagBreak::kEmptyLine, TagElement::kHeading},
    {TagName::kH9, TagBreak::kEmptyLine, TagElement::kHeading},
    {TagName::kHr, TagBreak::kEmptyLine, TagElement::kVoid},
    {TagName::kDiv, TagBreak::kEmptyLine},
    {TagName::kTable, TagBreak::kEmptyLine, TagElement::kList},
    {TagName::kBlockquote, TagBreak::kEmptyLine},

    {TagName::kBr, TagBreak::kLineFeed, TagElement::kVoid},
    {TagName::kDd, TagBreak::kLineFeed, TagElement::kListItem},
    {TagName::kDl, TagBreak::kLineFeed, TagElement::kList},
    {TagName::kDt, TagBreak::kLineFeed, TagElement::kListItem},
    {TagName::kLi, TagBreak::kLineFeed, TagElement::kListItem},
    {TagName::kOl, TagBreak::kLineFeed, TagElement::kList},
    {TagName::kUl, TagBreak::kLineFeed, TagElement::kList},
    {TagName::kTr, TagBreak::kLineFeed, TagElement::kListItem},

    {TagName::kTd, TagBreak::kCell, TagElement::kListItem},
    {TagName::kTh, TagBreak::kCell, TagElement::kListItem},

    {TagName::kBody, TagBreak::kNone, TagElement::kBody},
    {TagName::kHead, TagBreak::kNone, TagElement::kHead},
    {TagName::kNoframes, TagBreak::kSpace, TagElement::kNoframes},
    {TagName::kNoscript, TagBreak::kSpace, TagElement::kNoscript},
    {TagName::kTitle, TagBreak::kNone, TagElement::kTitle},
    {TagName::kA, TagBreak::kNone, TagElement::kLink},
    {TagName::kScript, TagBreak::kNone, TagElement::kRawText},
    {TagName::kStyle, TagBreak::kNone, TagElement::kRawText},
    {TagName::kPre, TagBreak::kLine, TagElement::kPre},
    {TagName::kListing, TagBreak::kLine, TagElement::kPre},
    {TagName::kTextarea, TagBreak::kLine, TagElement::kTextarea},
    {TagName::kXmp, TagBreak::kLine, TagElement::kXmp},
    {TagName::kPlaintext, TagBreak::kLine, TagElement::kPlaintext},
    {TagName::kImg, TagBreak::kSpace, TagElement::kImage},
    {TagName::kImage, TagBreak::kSpace, TagElement::kImage},
    {TagName::kInput, TagBreak::kSpace, TagElement::kInput},
    {TagName::kSelect, TagBreak::kSpace, TagElement::kSelect},
    {TagName::kOption, TagBreak::kSpace, TagElement::kOption},
    {TagName::kOptgroup, TagBreak::kSpace, TagElement::kOptgroup},

    {TagName::kAddress, TagBreak::kLine},
    {TagName::kArticle, TagBreak::kLine},
    {TagName::kAside, TagBreak::kLine},
    {TagName::kCaption, TagBreak::kLine},
    {TagName::kCenter, TagBreak::kLine},
    {TagName::kDetails, TagBreak::kLine},
    {TagName::kDialog, TagBreak::kLine, TagElement::kUnshown},
    {TagName::kDir, TagBreak::kLine, TagElement::kList},
    {TagName::kFieldset, TagBreak::kLine},
    {TagName::kFigcaption, TagBreak::kLine},
    {TagName::kFigure, TagBreak::kLine},
    {TagName::kFooter, TagBreak::kLine},
    {TagName::kForm, TagBreak::kLine},
    {TagName::kHeader, TagBreak::kLine},
    {TagName::kHgroup, TagBreak::kLine},
    {TagName::kLegend, TagBreak::kLine},
    {TagName::kMain, TagBreak::kLine},
    {TagName::kMarquee, TagBreak::kLine},
    {TagName::kMenu, TagBreak::kLine, TagElement::kList},
    {TagName::kNav, TagBreak::kLine},
    {TagName::kSearch, TagBreak::kLine},
    {TagName::kSection, TagBreak::kLine},
    {TagName::kSummary, TagBreak::kLine},
    {TagName::kTbody, TagBreak::kLine},
    {TagName::kTfoot, TagBreak::kLine},
    {TagName::kThead, TagBreak::kLine},

    {TagName::kApplet, TagBreak::kSpace},
    {TagName::kAudio, TagBreak::kSpace, TagElement::kUnshown},
    {TagName::kButton, TagBreak::kSpace},
    {TagName::kCanvas, TagBreak::kSpace, TagElement::kUnshown},
    {TagName::kDatalist, TagBreak::kSpace, TagElement::kUnshown},
    {TagName::kIframe, TagBreak::kSpace, TagElement::kUnshown},
    {TagName::kMeter, TagBreak::kSpace},
    {TagName::kObject, TagBreak::kSpace, TagElement::kUnshown},
    {TagName::kProgress, TagBreak::kSpace},
    {TagName::kSvg, TagBreak::kSpace},
    {TagName::kText, TagBreak::kSpace},
    {TagName::kVideo, TagBreak::kSpace, TagElement::kUnshown},

    {TagName::kAnnotation, TagBreak::kNone, TagElement::kUnshown},
    {TagName::kNoembed, TagBreak::kNone, TagElement::kUnshown},
    {TagName::kTemplate, TagBreak::kNone, TagElement::kUnshown},

    {TagName::kArea, TagBreak::kNone, TagElement::kVoid},
    {TagName::kBase, TagBreak::kNone, TagElement::kVoid},
    {TagName::kCol, TagBreak::kNone, TagElement::kVoid},
    {TagName::kEmbed, TagBreak::kSpace, TagElement::kVoid},
    {TagName::kFrame, TagBreak::kNone, TagElement::kVoid},
    {TagName::kLink, TagBreak::kNone, TagElement::kVoid},
    {TagName::kMeta, TagBreak::kNone, TagElement::kVoid},
    {TagName::kParam, TagBreak::kNone, TagElement::kVoid},
    {TagName::kSource, TagBreak::kNone, TagElement::kVoid},
    {TagName::kTrack, TagBreak::kNone, TagElement::kVoid},
    {TagName::kWbr, TagBreak::kNone, TagElement::kVoid},
};

}  // namespace

constinit const std::array<TagRule, kTagNames> kTagRules = [] {
  std::array<TagRule, kTagNames> rules{};
  for (const Row &row : kRows) rules[static_cast<std::size_t>(row.name)] = {row.tagBreak, row.element};
  return rules;
}();

std::uint64_t packedNameOfOddTag(const TagShape &tag) {
  return tag.isNamed("annotation-xml") ? packedTagName(u"annotation") : 0;
}

}  // namespace nimbo::detail
