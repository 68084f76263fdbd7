// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextRuns.hpp"

#include <algorithm>

#include "Classes/Characters/FastSearches.hpp"
#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Entities/EntityConversion.hpp"

namespace nimbo::detail {

namespace {

/// Shorter texts keep their character references.
constexpr std::size_t kShortestDecoded = 4;
/// Shorter comments hide nothing from search engines.
constexpr std::size_t kLongestPlainComment = 18;

struct Marker {
  const char *word;
  std::uint32_t length;
  unsigned bits;
};

constexpr Marker kMarkers[] = {{"index", 5, 1}, {"snippet", 7, 2}, {"anchor", 6, 4}};
constexpr unsigned kIndexMarker = 1;

std::u16string_view withoutFirstFeed(std::u16string_view text) {
  if (text.front() != u'\n' && text.front() != u'\r') return text;
  return text.substr(lengthOfLineBreak(text, 0));
}

std::u16string_view decoded(PlainTextRecord &record, std::u16string_view text) {
  const auto length = static_cast<std::uint32_t>(text.size());
  if (record.decoded.size() < length) record.decoded.resize(length);
  unichar *const units = record.decoded.data();
  const PlainTextOptions &options = record.options;
  const std::uint32_t count = options.entities
                                  ? convertEntities2Characters(text.data(), units, 0, length,
                                                               options.stdEntities, false, options.nonUmlauted)
                                  : convertStandardEntities2Characters(text.data(), units, length);
  return {units, count};
}

void writeUnits(PlainTextRecord &record, const TextRun &run) {
  const PlainTextOptions &options = record.options;
  PlainTextWriter &writer = record.writer;
  const bool isEncoded =
      run.isEncoded && run.units.size() >= kShortestDecoded && (options.entities || options.stdEntities);
  const bool isFolded = isEncoded && options.entities && options.nonUmlauted;
  if (!run.isPreformatted && !options.reformat && !isFolded) {
    const std::uint32_t taken = writer.writeCollapsed(run.units, run.readable, isEncoded);
    if (taken == run.units.size()) return;
    const std::u16string_view rest = decoded(record, run.units.substr(taken));
    writer.writeCollapsed(rest, rest.size(), false);
    return;
  }
  const bool hasReferences = isEncoded && run.units.find(u'&') != run.units.npos;
  const std::u16string_view text = isFolded || hasReferences ? decoded(record, run.units) : run.units;
  if (run.isPreformatted)
    writer.writePreformatted(text);
  else if (options.reformat)
    writer.writeReformatted(text);
  else
    writer.writeCollapsed(text, text.size(), false);
}

void removeJunk(PlainTextRecord &record, const PlainTextWriter::Mark &begin, bool isPreformatted) {
  PlainTextWriter &writer = record.writer;
  if (!isPreformatted && writer.length() > begin.position &&
      isJunkText(writer.textSince(begin.position), record.linkAndHeadingDepth > 0)) {
    writer.goBackTo(begin);
    record.isJunkFound = true;
  }
  if (writer.length() - writer.lineMark() >= kOverlongLine) {
    writer.goBackTo({writer.lineMark()});
    record.isJunkFound = true;
  }
}

}  // namespace

bool isPlaceOfText(const PlainTextRecord &record) {
  const PlainTextRecord::Elements &elements = record.elements;
  return record.bodyCounter >= 1 && !elements.isInNoframes && !elements.isInNoscript && elements.rawText == 0;
}

bool isTextShown(const PlainTextRecord &record) {
  return isPlaceOfText(record) && (!record.options.googleTags || (record.markerMask & kIndexMarker)) &&
         !(record.elements.isInTitle && record.hasTitle) && !record.elements.isInUnselectedOption;
}

void writeTextRun(PlainTextRecord &record, TextRun run) {
  if (run.units.empty()) return;
  if (run.isPreformatted && record.elements.isFirstFeedDropped) {
    const std::size_t length = run.units.size();
    run.units = withoutFirstFeed(run.units);
    run.readable -= length - run.units.size();
    record.elements.isFirstFeedDropped = false;
    if (run.units.empty()) return;
  }
  if (!isTextShown(record)) return;
  if (record.elements.hidden) {
    if (record.elements.hidden.reason() != HiddenReason::kFeedDate &&
        !std::all_of(run.units.begin(), run.units.end(), isWhite()))
      record.isJunkFound = true;
    return;
  }
  const PlainTextWriter::Mark begin = record.writer.mark();
  writeUnits(record, run);
  if (record.options.removeJunk) removeJunk(record, begin, run.isPreformatted);
}

unsigned markerMaskBehind(std::u16string_view comment, unsigned mask) {
  if (comment.size() <= kLongestPlainComment) return mask;
  const auto contains = [&](const char *word, std::uint32_t length) {
    return fastCaseInsensitiveUnicharsContainChars(comment.data(), static_cast<std::uint32_t>(comment.size()),
                                                   word, length) != nullptr;
  };
  const bool isOff = contains("googleoff:", 10);
  const bool isOn = contains("googleon:", 9);
  if (!isOff && !isOn) return mask;
  const bool isAll = contains("all", 3);
  for (const Marker &marker : kMarkers) {
    if (!isAll && !contains(marker.word, marker.length)) continue;
    if (isOff) mask &= ~marker.bits;
    if (isOn) mask |= marker.bits;
  }
  return mask;
}

}  // namespace nimbo::detail
