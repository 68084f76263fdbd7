// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/RTF/RTFState.hpp"

#include <algorithm>
#include <tuple>

#include "platform/AppKit/RTF/RTFUnits.hpp"
#include "platform/AppKit/RecordHash.hpp"

namespace nimbo {

namespace {

constexpr std::int32_t kMillisOfHalfPoint = 500;
constexpr std::int32_t kMillisOfQuarterPoint = 250;
constexpr std::int32_t kMillisOfTwip = 50;
constexpr std::int32_t kDefaultSize = 12'000;
/// How far characters may stand above or below the line, or apart, and how large they may be.
constexpr std::int32_t kMaximumMillis = 10'000'000;
/// What "\up" and "\dn" mean without a number, in half points.
constexpr std::int32_t kDefaultShift = 6;
/// What stands for the natural height of a line in "\sl".
constexpr std::int32_t kSingleLine = 240;
constexpr std::int32_t kMaximumHeaderLevel = 6;

std::int32_t scaled(std::int32_t number, std::int32_t scale) {
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(std::int64_t{number} * scale, -kMaximumMillis, kMaximumMillis));
}

/// The style of an underlining word; nothing for others.
std::optional<NSUnderlineStyle> underlineOf(RTFWord word) {
  switch (word) {
    case RTFWord::ul_:
      return NSUnderlineStyle::single;
    case RTFWord::ulnone_:
      return NSUnderlineStyle::none;
    case RTFWord::uldb_:
      return NSUnderlineStyle::doubled;
    case RTFWord::ulth_:
      return NSUnderlineStyle::thick;
    case RTFWord::ulw_:
      return NSUnderlineStyle::byWord;
    case RTFWord::uld_:
    case RTFWord::ulthd_:
      return NSUnderlineStyle::dotted;
    case RTFWord::uldash_:
    case RTFWord::ulldash_:
    case RTFWord::ulthdash_:
    case RTFWord::ulthldash_:
      return NSUnderlineStyle::dashed;
    case RTFWord::uldashd_:
    case RTFWord::ulthdashd_:
      return NSUnderlineStyle::dashDot;
    case RTFWord::uldashdd_:
    case RTFWord::ulthdashdd_:
      return NSUnderlineStyle::dashDotDot;
    case RTFWord::ulwave_:
    case RTFWord::ulhwave_:
    case RTFWord::ululdbwave_:
      return NSUnderlineStyle::wavy;
    default:
      return {};
  }
}

}  // namespace

bool RTFCharacterState::take(RTFWord word, std::optional<std::int32_t> parameter) {
  const bool isOn = parameter.value_or(1) != 0;
  const std::int32_t number = parameter.value_or(0);
  const auto level = [&] { return std::clamp(parameter.value_or(1), 0, 127); };
  switch (word) {
    case RTFWord::fs_:
      size = parameter ? std::max(scaled(number, kMillisOfHalfPoint), 0) : kDefaultSize;
      return true;
    case RTFWord::fsmilli_:
      size = std::clamp(number, 0, kMaximumMillis);
      return true;
    case RTFWord::fweight_:
      weight = static_cast<std::uint16_t>(std::clamp(number, 1, 1000));
      return true;
    case RTFWord::b_:
      weight = isOn ? kBoldFontWeight : kRegularFontWeight;
      return true;
    case RTFWord::i_:
      isItalic = isOn;
      return true;
    case RTFWord::scaps_:
      isSmallCaps = isOn;
      return true;
    case RTFWord::v_:
    case RTFWord::deleted_:
      isHidden = isOn;
      return true;
    case RTFWord::cf_:
      foreground = number;
      return true;
    case RTFWord::cb_:
    case RTFWord::chcbpat_:
    case RTFWord::highlight_:
      background = number;
      return true;
    case RTFWord::ulc_:
      underlineColor = number;
      return true;
    case RTFWord::strike_:
      strikethrough = isOn ? NSStrikethroughStyle::single : NSStrikethroughStyle::none;
      return true;
    case RTFWord::striked_:
      strikethrough = isOn ? NSStrikethroughStyle::doubled : NSStrikethroughStyle::none;
      return true;
    case RTFWord::super_:
      superscript = static_cast<std::int8_t>(level());
      return true;
    case RTFWord::sub_:
      superscript = static_cast<std::int8_t>(-level());
      return true;
    case RTFWord::nosupersub_:
      superscript = 0;
      return true;
    case RTFWord::up_:
      baselineOffset = scaled(parameter.value_or(kDefaultShift), kMillisOfHalfPoint);
      return true;
    case RTFWord::dn_:
      baselineOffset = -scaled(parameter.value_or(kDefaultShift), kMillisOfHalfPoint);
      return true;
    case RTFWord::expnd_:
      kern = scaled(number, kMillisOfQuarterPoint);
      return true;
    case RTFWord::expndtw_:
      kern = scaled(number, kMillisOfTwip);
      return true;
    default:
      const auto style = underlineOf(word);
      if (!style) return false;
      underline = isOn ? *style : NSUnderlineStyle::none;
      return true;
  }
}

bool RTFParagraphState::take(RTFWord word, std::optional<std::int32_t> parameter) {
  const std::int32_t number = std::clamp(parameter.value_or(0), -kMaximumTwips, kMaximumTwips);
  switch (word) {
    case RTFWord::pard_:
      *this = RTFParagraphState();
      return true;
    case RTFWord::ql_:
      alignment = NSTextAlignment::left;
      return true;
    case RTFWord::qr_:
      alignment = NSTextAlignment::right;
      return true;
    case RTFWord::qc_:
      alignment = NSTextAlignment::center;
      return true;
    case RTFWord::qj_:
      alignment = NSTextAlignment::justified;
      return true;
    case RTFWord::qnatural_:
      alignment = NSTextAlignment::natural;
      return true;
    case RTFWord::ltrpar_:
      direction = NSWritingDirection::leftToRight;
      return true;
    case RTFWord::rtlpar_:
      direction = NSWritingDirection::rightToLeft;
      return true;
    case RTFWord::pardirnatural_:
      direction = NSWritingDirection::natural;
      return true;
    case RTFWord::fi_:
      firstLine = number;
      return true;
    case RTFWord::li_:
    case RTFWord::lin_:
      left = number;
      return true;
    case RTFWord::ri_:
    case RTFWord::rin_:
      right = number;
      return true;
    case RTFWord::sb_:
      before = number;
      return true;
    case RTFWord::sa_:
      after = number;
      return true;
    case RTFWord::sl_:
      lineHeight = number;
      return true;
    case RTFWord::slmult_:
      lineHeightIsMultiple = number;
      return true;
    case RTFWord::slminimum_:
      minimumLineHeight = std::max(number, 0);
      return true;
    case RTFWord::slmaximum_:
      maximumLineHeight = std::max(number, 0);
      return true;
    case RTFWord::slleading_:
      leading = number;
      return true;
    case RTFWord::pardeftab_:
      tabInterval = std::max(number, 0);
      return true;
    case RTFWord::outlinelevel_:
      headerLevel = static_cast<std::uint8_t>(number >= 0 && number < kMaximumHeaderLevel ? number + 1 : 0);
      return true;
    case RTFWord::ls_:
      list = std::max(parameter.value_or(0), 0);
      return true;
    case RTFWord::ilvl_:
      level = number;
      return true;
    case RTFWord::intbl_:
      isInTable = true;
      return true;
    case RTFWord::itap_:
      tableDepth = static_cast<std::uint32_t>(std::max(number, 1));
      isInTable = number > 0;
      return true;
    case RTFWord::tqr_:
      nextTab = NSTextTabType::right;
      return true;
    case RTFWord::tqc_:
      nextTab = NSTextTabType::center;
      return true;
    case RTFWord::tqdec_:
      nextTab = NSTextTabType::decimal;
      return true;
    case RTFWord::tb_:
    case RTFWord::tx_:
      if (!tabs || !tabs.isUnique()) tabs = tabs ? makeShared<RTFTabStops>(*tabs) : makeShared<RTFTabStops>();
      if (tabs->stops.size() < RTFTabStops::kMaximum) tabs->stops.push_back({nextTab, pointsOfTwips(number)});
      nextTab = NSTextTabType::left;
      return true;
    default:
      return false;
  }
}

NSParagraphStyle RTFParagraphState::style() const {
  NSParagraphStyle style;
  style.alignment = alignment;
  style.baseWritingDirection = direction;
  style.headerLevel = headerLevel;
  style.firstLineHeadIndent = pointsOfTwips(left + firstLine);
  style.headIndent = pointsOfTwips(left);
  style.tailIndent = pointsOfTwips(right);
  style.paragraphSpacingBefore = pointsOfTwips(before);
  style.paragraphSpacing = pointsOfTwips(after);
  style.lineSpacing = pointsOfTwips(leading);
  style.defaultTabInterval = pointsOfTwips(tabInterval);
  if (lineHeightIsMultiple && lineHeight > 0)
    style.lineHeightMultiple = lineHeight == kSingleLine ? 0 : static_cast<double>(lineHeight) / kSingleLine;
  else if (lineHeight > 0)
    style.minimumLineHeight = pointsOfTwips(lineHeight);
  else if (lineHeight < 0)
    style.minimumLineHeight = style.maximumLineHeight = pointsOfTwips(-lineHeight);
  if (minimumLineHeight) style.minimumLineHeight = pointsOfTwips(minimumLineHeight);
  if (maximumLineHeight) style.maximumLineHeight = pointsOfTwips(maximumLineHeight);
  if (tabs) style.tabStops = tabs->stops;
  return style;
}

std::size_t RTFParagraphState::hash() const {
  return combinedRecordHash(firstLine, left, right, before, after, lineHeight, lineHeightIsMultiple,
                            tabInterval, list, level, alignment, direction, headerLevel,
                            tabs ? tabs->stops.size() : 0);
}

bool operator==(const RTFParagraphState &a, const RTFParagraphState &b) {
  const auto fields = [](const RTFParagraphState &s) {
    return std::tie(s.firstLine, s.left, s.right, s.before, s.after, s.lineHeight, s.lineHeightIsMultiple,
                    s.minimumLineHeight, s.maximumLineHeight, s.leading, s.tabInterval, s.list, s.level,
                    s.alignment, s.direction, s.headerLevel);
  };
  if (fields(a) != fields(b)) return false;
  return a.tabs == b.tabs || (a.tabs && b.tabs && a.tabs->stops == b.tabs->stops);
}

}  // namespace nimbo
