// SPDX-License-Identifier: Apache-2.0
//
// What control words do.
#include <algorithm>

#include "platform/AppKit/RTF/RTFFields.hpp"
#include "platform/AppKit/RTF/RTFReader.hpp"
#include "platform/AppKit/RTF/RTFUnits.hpp"

namespace nimbo {

namespace {

/// The alpha of a colour is counted in so many parts.
constexpr std::int32_t kAlphaParts = 100'000;
constexpr std::int32_t kSymbolCharacterSet = 2;
constexpr std::int32_t kWesternCharacterSet = 0;
/// The paper of a document that names one side of it only.
constexpr NSSize kStandardPaper = {612, 792};

/// The character that a word stands for; 0 when it stands for none.
char16_t characterOf(RTFWord word) {
  switch (word) {
    case RTFWord::line_:
    case RTFWord::lbr_:
      return u'\u2028';
    case RTFWord::tab_:
      return u'\t';
    case RTFWord::page_:
    case RTFWord::column_:
      return u'\f';
    case RTFWord::emdash_:
      return u'\u2014';
    case RTFWord::endash_:
      return u'\u2013';
    case RTFWord::emspace_:
      return u'\u2003';
    case RTFWord::enspace_:
      return u'\u2002';
    case RTFWord::qmspace_:
      return u'\u2005';
    case RTFWord::bullet_:
      return u'\u2022';
    case RTFWord::lquote_:
      return u'\u2018';
    case RTFWord::rquote_:
      return u'\u2019';
    case RTFWord::ldblquote_:
      return u'\u201c';
    case RTFWord::rdblquote_:
      return u'\u201d';
    case RTFWord::zwj_:
      return u'\u200d';
    case RTFWord::zwnj_:
      return u'\u200c';
    case RTFWord::zwbo_:
      return u'\u200b';
    case RTFWord::zwnbo_:
      return u'\u2060';
    case RTFWord::ltrmark_:
      return u'\u200e';
    case RTFWord::rtlmark_:
      return u'\u200f';
    default:
      return 0;
  }
}

NSString trimmed(std::u16string_view text) {
  while (!text.empty() && text.front() <= u' ') text.remove_prefix(1);
  while (!text.empty() && text.back() <= u' ') text.remove_suffix(1);
  return text.empty() ? NSString() : NSString::stringWithCharacters(text);
}

}  // namespace

void RTFReader::takeWord(RTFWord word, Parameter parameter, bool isStarred) {
  const std::int32_t number = parameter.value_or(0);
  if (word == RTFWord::u_) {
    appendUnit(static_cast<char16_t>(number));
    charactersToSkip_ = group_.skippedByUnicode;
    return;
  }
  if (const char16_t character = characterOf(word)) {
    if (charactersToSkip_ > 0)
      --charactersToSkip_;
    else
      appendUnit(character);
    return;
  }
  endPendingBytes();
  charactersToSkip_ = 0;
  if (word == RTFWord::uc_) {
    group_.skippedByUnicode = std::clamp(number, 0, 255);
    return;
  }
  if (takeDestination(word)) return;
  if (isStarred) return skipGroup();
  switch (group_.destination) {
    case Destination::fontTable:
      return takeFontWord(word, parameter);
    case Destination::colorTable:
    case Destination::expandedColors:
      return takeColorWord(word, number);
    case Destination::lists:
    case Destination::oldList:
    case Destination::levelText:
      lists_.take(word, number);
      return;
    case Destination::date:
      return takeDateWord(word, number);
    case Destination::picture:
      picture_.take(word, number);
      return;
    case Destination::graphic:
      if (word == RTFWord::width_) graphicSize_ = NSSize{pointsOfTwips(number), 0};
      if (word == RTFWord::height_ && graphicSize_) graphicSize_->height = pointsOfTwips(number);
      return;
    case Destination::body:
    case Destination::listText:
    case Destination::ignored:
      break;
    default:
      return;
  }
  if (word == RTFWord::f_) {
    group_.characters.font = fontWithNumber(number).value_or(-1);
    return;
  }
  if (word == RTFWord::plain_) {
    const std::int32_t link = group_.characters.link;
    group_.characters = RTFCharacterState();
    group_.characters.link = link;
    return;
  }
  if (group_.characters.take(word, parameter) || group_.paragraph.take(word, parameter)) return;
  if (takeTableWord(word) || takeDocumentWord(word, parameter)) return;
  const std::size_t depth = group_.isInnerRow ? std::max<std::size_t>(flow().tables().depth(), 2) : 1;
  if (rowDefinitions_.size() < depth) rowDefinitions_.resize(depth);
  rowDefinitions_[depth - 1].take(word, parameter);
}

bool RTFReader::takeTableWord(RTFWord word) {
  if (group_.destination == Destination::ignored) return false;
  RTFCharacterState state = group_.characters;
  // Neither a link nor raised text reaches over the end of a paragraph.
  state.link = -1;
  state.superscript = 0;
  const auto definition = [this](std::size_t depth) -> RTFRowDefinition & {
    if (rowDefinitions_.size() < depth) rowDefinitions_.resize(depth);
    return rowDefinitions_[depth - 1];
  };
  RTFTables &tables = flow().tables();
  switch (word) {
    case RTFWord::par_:
      if (isGraphicPending_) appendAttachment(pendingGraphic_);
      flow().endParagraph(state, group_.paragraph, true);
      return true;
    case RTFWord::sect_:
      if (flow().hasOpenParagraph()) flow().endParagraph(state, group_.paragraph, true);
      return true;
    case RTFWord::cell_:
      if (isGraphicPending_) appendAttachment(pendingGraphic_);
      flow().endCell(1, state, group_.paragraph);
      return true;
    case RTFWord::nestcell_:
      if (isGraphicPending_) appendAttachment(pendingGraphic_);
      flow().endCell(std::max(group_.paragraph.depth(), 2u), state, group_.paragraph);
      return true;
    case RTFWord::cellpar_:
      tables.noteContent();
      return true;
    case RTFWord::trowd_:
      definition(group_.isInnerRow ? std::max<std::size_t>(tables.depth(), 2) : 1) = RTFRowDefinition();
      return true;
    case RTFWord::row_:
      if (tables.depth() > 1) (void)tables.cellAtDepth(1);
      tables.endRow(definition(1));
      return true;
    case RTFWord::nestrow_:
      if (tables.depth() > 1) tables.endRow(definition(tables.depth()));
      return true;
    default:
      return false;
  }
}

bool RTFReader::takeDestination(RTFWord word) {
  const auto begin = [this](Destination destination) {
    // A group without a state of its own cannot have a destination of its own.
    if (groupsBeyond_ > 0)
      skipGroup();
    else
      beginDestination(destination);
    return true;
  };
  const auto skip = [this] {
    skipGroup();
    return true;
  };
  const Destination now = group_.destination;
  switch (word) {
    case RTFWord::fonttbl_:
      return begin(Destination::fontTable);
    case RTFWord::colortbl_:
      names_.colors.clear();
      return begin(Destination::colorTable);
    case RTFWord::expandedcolortbl_:
      expandedColor_ = 0;
      return begin(Destination::expandedColors);
    case RTFWord::listtable_:
    case RTFWord::listoverridetable_:
      lists_.take(word, 0);
      return begin(Destination::lists);
    case RTFWord::leveltext_:
      return now == Destination::lists ? begin(Destination::levelText) : skip();
    case RTFWord::levelmarker_:
      return now == Destination::lists ? begin(Destination::levelMarker) : skip();
    case RTFWord::pn_:
      lists_.take(word, 0);
      return begin(Destination::oldList);
    case RTFWord::listtext_:
    case RTFWord::pntext_:
      if (now != Destination::body) return skip();
      hasListText_ = false;
      return begin(Destination::listText);
    case RTFWord::info_:
      return begin(Destination::info);
    case RTFWord::title_:
    case RTFWord::author_:
    case RTFWord::subject_:
    case RTFWord::keywords_:
    case RTFWord::company_:
    case RTFWord::copyright_:
    case RTFWord::doccomm_:
      if (now != Destination::info) return skip();
      infoField_ = word;
      return begin(Destination::infoText);
    case RTFWord::creatim_:
    case RTFWord::revtim_:
      if (now != Destination::info) return skip();
      infoField_ = word;
      date_ = {1, 1, 1, 0, 0, 0};
      return begin(Destination::date);
    case RTFWord::field_:
      if (fieldLinks_.size() < kMaximumNames) {
        group_.field = static_cast<std::int32_t>(fieldLinks_.size());
        fieldLinks_.push_back(-1);
      } else {
        group_.field = -1;
      }
      return true;
    case RTFWord::fldinst_:
      return now == Destination::instruction ? skip() : begin(Destination::instruction);
    case RTFWord::fldrslt_:
      if (group_.field >= 0 && fieldLinks_[static_cast<std::size_t>(group_.field)] >= 0)
        group_.characters.link = fieldLinks_[static_cast<std::size_t>(group_.field)];
      return true;
    case RTFWord::pict_:
      picture_ = RTFPicture();
      return begin(Destination::picture);
    case RTFWord::picprop_:
      return begin(Destination::pictureProperty);
    case RTFWord::sn_:
    case RTFWord::sv_:
      if (now != Destination::pictureProperty) return word == RTFWord::sn_ ? skip() : true;
      return begin(word == RTFWord::sn_ ? Destination::propertyName : Destination::propertyValue);
    case RTFWord::shp_:
    case RTFWord::shpinst_:
    case RTFWord::object_:
    case RTFWord::do_:
      return begin(Destination::ignored);
    case RTFWord::shptxt_:
    case RTFWord::result_:
      return begin(Destination::body);
    case RTFWord::NeXTGraphic_:
      graphicName_.clear();
      alternativeText_.clear();
      graphicSize_.reset();
      return begin(Destination::graphic);
    case RTFWord::alttext_:
      return now == Destination::graphic ? begin(Destination::alternativeText) : skip();
    case RTFWord::footnote_:
      if (groupsBeyond_ > 0) return skip();
      group_.isInNotes = true;
      group_.paragraph = RTFParagraphState();
      return true;
    case RTFWord::nesttableprops_:
      group_.isInnerRow = true;
      return true;
    case RTFWord::shppict_:
      return true;
    case RTFWord::upr_:
      return now == Destination::body ? begin(Destination::plainTwin) : true;
    case RTFWord::ud_:
      if (now == Destination::plainTwin) return begin(Destination::body);
      return now == Destination::info || skip();
    case RTFWord::falt_:
    case RTFWord::panose_:
    case RTFWord::nonshppict_:
    case RTFWord::blipuid_:
    case RTFWord::shprslt_:
    case RTFWord::objdata_:
    case RTFWord::stylesheet_:
    case RTFWord::filetbl_:
    case RTFWord::header_:
    case RTFWord::headerl_:
    case RTFWord::headerr_:
    case RTFWord::headerf_:
    case RTFWord::footer_:
    case RTFWord::footerl_:
    case RTFWord::footerr_:
    case RTFWord::footerf_:
    case RTFWord::ftnsep_:
    case RTFWord::ftnsepc_:
    case RTFWord::ftncn_:
    case RTFWord::aftnsep_:
    case RTFWord::aftnsepc_:
    case RTFWord::aftncn_:
    case RTFWord::nonesttables_:
    case RTFWord::xe_:
    case RTFWord::tc_:
    case RTFWord::private1_:
    case RTFWord::docvar_:
      return skip();
    default:
      return false;
  }
}

bool RTFReader::takeDocumentWord(RTFWord word, Parameter parameter) {
  const std::int32_t number = parameter.value_or(0);
  const double points = pointsOfTwips(std::clamp(number, -kMaximumTwips, kMaximumTwips));
  switch (word) {
    case RTFWord::ansi_:
      documentEncoding_ = kCFStringEncodingWindowsLatin1;
      return true;
    case RTFWord::mac_:
      documentEncoding_ = kCFStringEncodingMacRoman;
      return true;
    case RTFWord::pc_:
      documentEncoding_ = kCFStringEncodingDOSLatinUS;
      return true;
    case RTFWord::pca_:
      documentEncoding_ = kCFStringEncodingDOSLatin1;
      return true;
    case RTFWord::ansicpg_:
      if (const CFStringEncoding encoding = encodingOfCodePage(number); encoding != kCFStringEncodingInvalidId)
        documentEncoding_ = encoding;
      decoder_ = nullptr;
      return true;
    case RTFWord::deff_:
      defaultFontNumber_ = number;
      return true;
    case RTFWord::paperw_:
      document_.paperSize = NSSize{points, document_.paperSize.value_or(kStandardPaper).height};
      return true;
    case RTFWord::paperh_:
      document_.paperSize = NSSize{document_.paperSize.value_or(kStandardPaper).width, points};
      return true;
    case RTFWord::margl_:
      document_.leftMargin = points;
      return true;
    case RTFWord::margr_:
      document_.rightMargin = points;
      return true;
    case RTFWord::margt_:
      document_.topMargin = points;
      return true;
    case RTFWord::margb_:
      document_.bottomMargin = points;
      return true;
    default:
      return false;
  }
}

std::optional<std::int32_t> RTFReader::fontWithNumber(std::int32_t number) const {
  const auto found = fontsByNumber_.find(number);
  return found == fontsByNumber_.end() ? std::nullopt : std::optional(found->second);
}

void RTFReader::takeFontWord(RTFWord word, Parameter parameter) {
  const std::int32_t number = parameter.value_or(0);
  switch (word) {
    case RTFWord::f_:
      newFontNumber_ = number;
      newFont_ = Font();
      newFontName_.clear();
      return;
    case RTFWord::fcharset_:
      newFont_.isSymbol = number == kSymbolCharacterSet;
      if (newFont_.encoding == kCFStringEncodingInvalidId) newFont_.encoding = encodingOfCharacterSet(number);
      // Where the document's characters may have several bytes, those of its Western fonts may, too.
      if (number == kWesternCharacterSet && decoders_.decoder(documentEncoding_)->singleBytes())
        newFont_.encoding = kCFStringEncodingWindowsLatin1;
      return;
    case RTFWord::cpg_:
      if (const CFStringEncoding encoding = encodingOfCodePage(number); encoding != kCFStringEncodingInvalidId)
        newFont_.encoding = encoding;
      return;
    default:
      return;
  }
}

void RTFReader::endFont() {
  if (fonts_.size() == kMaximumNames) return;
  newFont_.name = trimmed(newFontName_);
  newFontName_.clear();
  if (!fontsByNumber_.emplace(newFontNumber_, static_cast<std::int32_t>(fonts_.size())).second) return;
  names_.fonts.push_back(newFont_.name);
  fonts_.push_back(newFont_);
}

void RTFReader::takeColorWord(RTFWord word, std::int32_t number) {
  const auto component = static_cast<std::uint8_t>(std::clamp(number, 0, 255));
  if (group_.destination == Destination::expandedColors) {
    if (word != RTFWord::alpha_ || expandedColor_ >= names_.colors.size() || !names_.colors[expandedColor_])
      return;
    const std::int64_t alpha =
        (std::int64_t{std::clamp(number, 0, kAlphaParts)} * 255 + kAlphaParts / 2) / kAlphaParts;
    names_.colors[expandedColor_]->alpha = static_cast<std::uint8_t>(alpha);
    return;
  }
  hasNewColor_ = true;
  if (word == RTFWord::red_) newColor_.red = component;
  if (word == RTFWord::green_) newColor_.green = component;
  if (word == RTFWord::blue_) newColor_.blue = component;
}

void RTFReader::endColor() {
  if (names_.colors.size() < kMaximumNames)
    names_.colors.push_back(hasNewColor_ ? std::optional(newColor_) : std::nullopt);
  newColor_ = NSColor();
  hasNewColor_ = false;
}

void RTFReader::takeDateWord(RTFWord word, std::int32_t number) {
  constexpr RTFWord kParts[] = {RTFWord::yr_, RTFWord::mo_,  RTFWord::dy_,
                                RTFWord::hr_, RTFWord::min_, RTFWord::sec_};
  const auto *const part = std::find(std::begin(kParts), std::end(kParts), word);
  if (part != std::end(kParts)) date_[static_cast<std::size_t>(part - kParts)] = std::clamp(number, 0, 9999);
}

void RTFReader::beginDestination(Destination destination) {
  group_.destination = destination;
  group_.isFirst = true;
  if (destination != Destination::body && destination != Destination::listText) capture_.clear();
}

void RTFReader::endDestination(Destination destination) {
  switch (destination) {
    case Destination::fontTable:
      if (!trimmed(newFontName_)) return;
      return endFont();
    case Destination::levelText:
      return lists_.setLevelText(capture_);
    case Destination::levelMarker:
      return lists_.setLevelMarker(capture_);
    case Destination::oldList:
      group_.paragraph.list = lists_.endOldList();
      return;
    case Destination::infoText:
      return endInfoText(trimmed(capture_));
    case Destination::date: {
      const auto [year, month, day, hour, minute, second] = date_;
      // So writers say that they know none.
      if (year == 0 || month == 0 || day == 0) return;
      const NSDate date = NSDate::dateWithUTC(year, month, day, hour, minute, second);
      (infoField_ == RTFWord::creatim_ ? document_.creationTime : document_.modificationTime) = date;
      return;
    }
    case Destination::instruction:
      if (group_.field < 0) return;
      if (const NSString link = linkOfInstruction(capture_)) {
        fieldLinks_[static_cast<std::size_t>(group_.field)] = static_cast<std::int32_t>(names_.links.size());
        names_.links.push_back(link);
      }
      return;
    case Destination::propertyName:
      propertyName_ = capture_;
      return;
    case Destination::propertyValue:
      return picture_.setProperty(propertyName_, capture_);
    case Destination::picture:
      return endPicture();
    case Destination::graphic:
      return endGraphic();
    default:
      return;
  }
}

void RTFReader::endInfoText(const NSString &text) {
  switch (infoField_) {
    case RTFWord::title_:
      document_.title = text;
      return;
    case RTFWord::author_:
      document_.author = text;
      return;
    case RTFWord::subject_:
      document_.subject = text;
      return;
    case RTFWord::company_:
      document_.company = text;
      return;
    case RTFWord::copyright_:
      document_.copyright = text;
      return;
    case RTFWord::doccomm_:
      document_.comment = text;
      return;
    default: {
      document_.keywords.clear();
      std::u16string_view rest = text.view();
      while (!rest.empty()) {
        const std::size_t end = std::min(rest.find_first_of(u",;"), rest.size());
        if (NSString keyword = trimmed(rest.substr(0, end))) document_.keywords.push_back(std::move(keyword));
        rest.remove_prefix(std::min(end + 1, rest.size()));
      }
    }
  }
}

void RTFReader::endGraphic() {
  const NSString name = trimmed(graphicName_);
  const auto found = attachmentsByName_.find(name ? name : NSString::string());
  isGraphicPending_ = true;
  pendingGraphic_ = NSTextAttachment();
  // A link would lead to whatever the reader of the document may read.
  if (found == attachmentsByName_.end() || found->second.isSymbolicLink()) return;
  pendingGraphic_ = NSTextAttachment(
      found->second, graphicSize_,
      alternativeText_.empty() ? NSString() : NSString::stringWithCharacters(alternativeText_));
}

void RTFReader::endPicture() {
  const NSTextAttachment attachment =
      group_.characters.isHidden ? NSTextAttachment() : picture_.attachment(pictures_ + 1);
  const std::size_t length = picture_.length();
  picture_ = RTFPicture();
  if (!attachment) return;
  ++pictures_;
  pictureBytesLeft_ -= std::min(pictureBytesLeft_, length);
  appendAttachment(attachment);
}

}  // namespace nimbo
