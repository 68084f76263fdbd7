// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/RTF/RTFLists.hpp"

#include <algorithm>

namespace nimbo {

namespace {

/// What the identifiers of lists that have none of their own begin with.
constexpr std::uint32_t kFirstIdentifier = 1;
/// What those of old lists begin with.
constexpr std::uint32_t kFirstOldIdentifier = 0x40000000;

std::u16string_view formatOfKind(std::int32_t kind) {
  switch (kind) {
    case 1:
      return u"{upper-roman}";
    case 2:
      return u"{lower-roman}";
    case 3:
      return u"{upper-alpha}";
    case 4:
      return u"{lower-alpha}";
    default:
      return u"{decimal}";
  }
}

/// The format of a level whose marker does not count.
std::u16string formatOfBullet(std::u16string_view bullet) {
  constexpr std::pair<char16_t, std::u16string_view> kFormats[] = {
      {u'\u2022', u"{disc}"},   {u'\u00b7', u"{disc}"},   {u'\u25cf', u"{disc}"},   {u'\uf0b7', u"{disc}"},
      {u'\u25e6', u"{circle}"}, {u'\u25cb', u"{circle}"}, {u'o', u"{circle}"},      {u'\u25aa', u"{square}"},
      {u'\u25a0', u"{square}"}, {u'\uf0a7', u"{square}"}, {u'\u2043', u"{hyphen}"}, {u'-', u"{hyphen}"},
      {u'\u2013', u"{hyphen}"}, {u'\u2713', u"{check}"},  {u'\uf0fc', u"{check}"},  {u'\u25c6', u"{diamond}"},
      {u'\u25a1', u"{box}"},
  };
  if (bullet.size() == 1)
    for (const auto &[unit, format] : kFormats)
      if (unit == bullet[0]) return std::u16string(format);
  return std::u16string(bullet);
}

}  // namespace

void RTFLists::take(RTFWord word, std::int32_t parameter) {
  Level *const level = lists_.empty() || lists_.back().levels.empty() ? nullptr : &lists_.back().levels.back();
  switch (word) {
    case RTFWord::listtable_:
      isInOverride_ = false;
      return;
    case RTFWord::list_:
      if (lists_.size() < kMaximumLists) lists_.emplace_back();
      return;
    case RTFWord::listlevel_:
      if (!isInOverride_ && !lists_.empty() && lists_.back().levels.size() < kMaximumLevels)
        lists_.back().levels.emplace_back();
      return;
    case RTFWord::levelnfc_:
    case RTFWord::levelnfcn_:
      if (level && !isInOverride_) level->kind = parameter;
      return;
    case RTFWord::levelstartat_:
      if (isInOverride_) {
        if (!override_.starts.empty()) override_.starts.back() = parameter;
      } else if (level) {
        level->start = parameter;
      }
      return;
    case RTFWord::leveltemplateid_:
      if (level && !isInOverride_) level->templateNumber = parameter;
      return;
    case RTFWord::listid_:
      if (isInOverride_)
        override_.list = parameter;
      else if (!lists_.empty())
        listsByNumber_.emplace(lists_.back().number = parameter, lists_.size() - 1);
      return;
    case RTFWord::listoverridetable_:
    case RTFWord::listoverride_:
      isInOverride_ = true;
      override_ = Override();
      return;
    case RTFWord::lfolevel_:
      if (override_.starts.size() < kMaximumLevels) override_.starts.emplace_back();
      return;
    case RTFWord::ls_:
      if (overrides_.size() == kMaximumLists) return;
      override_.order = static_cast<std::uint32_t>(overrides_.size() + 1);
      overrides_.emplace(parameter, override_);
      return;
    case RTFWord::pn_:
      oldList_ = {u"{decimal}", 1};
      return;
    case RTFWord::pnlvlblt_:
      oldList_.format = u"{disc}";
      return;
    case RTFWord::pnlvlbody_:
    case RTFWord::pnlvl_:
    case RTFWord::pndec_:
      oldList_.format = u"{decimal}";
      return;
    case RTFWord::pnlcltr_:
      oldList_.format = u"{lower-alpha}";
      return;
    case RTFWord::pnucltr_:
      oldList_.format = u"{upper-alpha}";
      return;
    case RTFWord::pnlcrm_:
      oldList_.format = u"{lower-roman}";
      return;
    case RTFWord::pnucrm_:
      oldList_.format = u"{upper-roman}";
      return;
    case RTFWord::pnstart_:
      oldList_.start = parameter;
      return;
    default:
      return;
  }
}

void RTFLists::setLevelText(std::u16string_view text) {
  if (isInOverride_ || lists_.empty() || lists_.back().levels.empty() || text.empty()) return;
  lists_.back().levels.back().text = text.substr(1, text[0]);
}

void RTFLists::setLevelMarker(std::u16string_view marker) {
  if (!isInOverride_ && !lists_.empty() && !lists_.back().levels.empty())
    lists_.back().levels.back().marker = std::u16string(marker);
}

std::int32_t RTFLists::endOldList() {
  if (oldLists_.empty() || (oldLists_.back() != oldList_ && oldLists_.size() < kMaximumLists))
    oldLists_.push_back(oldList_);
  return -static_cast<std::int32_t>(oldLists_.size());
}

std::u16string RTFLists::formatOf(const Level &level, std::size_t index) {
  if (level.marker) return *level.marker;
  constexpr std::int32_t kBullet = 23, kNothing = 255;
  if (level.kind == kBullet) return formatOfBullet(level.text);
  if (level.kind == kNothing) return level.text;
  // Of the numbers of outer levels in front, as in "2.1.", nothing is left.
  const std::size_t place = level.text.find(static_cast<char16_t>(index));
  std::u16string format(formatOfKind(level.kind));
  if (place == level.text.npos) return format + u'.';
  std::size_t prefix = place;
  while (prefix > 0 && level.text[prefix - 1] >= u' ') --prefix;
  const std::u16string_view before = prefix == 0 ? std::u16string_view(level.text).substr(0, place) : u"";
  std::u16string_view behind = std::u16string_view(level.text).substr(place + 1);
  behind = behind.substr(0, std::find_if(behind.begin(), behind.end(), [](char16_t unit) {
                              return unit < u' ';
                            }) - behind.begin());
  return std::u16string(before) + format + std::u16string(behind);
}

std::vector<NSTextList> RTFLists::lists(std::int32_t number, std::int32_t level) const {
  if (number < 0) {
    const std::size_t index = -static_cast<std::int64_t>(number) - 1;
    if (index >= oldLists_.size()) return {};
    const OldList &list = oldLists_[index];
    return {{NSString::stringWithCharacters(list.format), list.start,
             kFirstOldIdentifier + static_cast<std::uint32_t>(index)}};
  }
  const auto found = overrides_.find(number);
  if (found == overrides_.end()) return {};
  const Override &override = found->second;
  const auto place = listsByNumber_.find(override.list);
  if (place == listsByNumber_.end()) return {};
  const List &list = lists_[place->second];
  // A start of its own makes it another list.
  const bool isOwn =
      std::any_of(override.starts.begin(), override.starts.end(), [](const auto &s) { return s.has_value(); });
  const std::size_t order = isOwn ? lists_.size() + override.order : place->second;
  std::vector<NSTextList> chain;
  const auto count = static_cast<std::size_t>(std::clamp<std::int32_t>(level, 0, kMaximumLevels - 1)) + 1;
  for (std::size_t i = 0; i < count; ++i) {
    const Level &described = i < list.levels.size() ? list.levels[i] : Level();
    const auto start = i < override.starts.size() && override.starts[i] ? *override.starts[i] : described.start;
    const auto identifier = described.marker
                                ? static_cast<std::uint32_t>(described.templateNumber)
                                : kFirstIdentifier + static_cast<std::uint32_t>(order * kMaximumLevels + i);
    chain.push_back({NSString::stringWithCharacters(formatOf(described, i)), start, identifier});
  }
  return chain;
}

}  // namespace nimbo
