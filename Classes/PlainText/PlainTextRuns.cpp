// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextRuns.hpp"

#include <algorithm>

#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Entities/EntityConversion.hpp"
#include "Classes/PlainText/PlainTextJunk.hpp"

namespace nimbo::detail {

namespace {

/// Shorter texts keep their character references.
constexpr std::size_t kShortestDecoded = 4;

std::u16string_view decoded(PlainTextConversion &conversion, std::u16string_view text) {
  const auto length = static_cast<std::uint32_t>(text.size());
  if (conversion.decoded.size() < length) conversion.decoded.resize(length);
  unichar *const units = conversion.decoded.data();
  const PlainTextOptions &options = conversion.options;
  const std::uint32_t count = options.entities
                                  ? convertEntities2Characters(text.data(), units, 0, length,
                                                               options.stdEntities, false, options.nonUmlauted)
                                  : convertStandardEntities2Characters(text.data(), units, length);
  return {units, count};
}

void writeUnits(PlainTextConversion &conversion, const TextRun &run) {
  const PlainTextOptions &options = conversion.options;
  PlainTextWriter &writer = conversion.writer;
  const bool isEncoded =
      run.isEncoded && run.units.size() >= kShortestDecoded && (options.entities || options.stdEntities);
  const bool isFolded = isEncoded && options.entities && options.nonUmlauted;
  if (!run.isPreformatted && !options.reformat && !isFolded) {
    const std::uint32_t taken = writer.writeCollapsed(run.units, run.readable, isEncoded);
    if (taken == run.units.size()) return;
    const std::u16string_view rest = decoded(conversion, run.units.substr(taken));
    writer.writeCollapsed(rest, rest.size(), false);
    return;
  }
  const bool hasReferences = isEncoded && run.units.find(u'&') != run.units.npos;
  const std::u16string_view text = isFolded || hasReferences ? decoded(conversion, run.units) : run.units;
  if (run.isPreformatted)
    writer.writePreformatted(text);
  else if (options.reformat)
    writer.writeReformatted(text);
  else
    writer.writeCollapsed(text, text.size(), false);
}

void removeJunk(PlainTextConversion &conversion, const PlainTextWriter::Mark &begin, bool isPreformatted) {
  PlainTextWriter &writer = conversion.writer;
  if (!isPreformatted && writer.length() > begin.position &&
      isJunkText(writer.textSince(begin.position), conversion.links.isInside())) {
    writer.goBackTo(begin);
    conversion.isJunkFound = true;
  }
  if (writer.length() - writer.lineMark() >= kOverlongLine) {
    writer.goBackTo({writer.lineMark()});
    conversion.isJunkFound = true;
  }
}

}  // namespace

void writeTextRun(PlainTextConversion &conversion, TextRun run) {
  if (run.units.empty()) return;
  if (run.isPreformatted) {
    const std::size_t length = run.units.size();
    run.units = conversion.preformatted.textBehindStartTag(run.units);
    run.readable -= length - run.units.size();
    if (run.units.empty()) return;
  }
  if (!conversion.showsText()) return;
  if (const HiddenReason reason = conversion.hidden.reason(); reason != HiddenReason::kNone) {
    if (reason != HiddenReason::kFeedDate && !std::ranges::all_of(run.units, isWhite()))
      conversion.isJunkFound = true;
    return;
  }
  const PlainTextWriter::Mark begin = conversion.writer.mark();
  writeUnits(conversion, run);
  if (conversion.options.removeJunk) removeJunk(conversion, begin, run.isPreformatted);
}

}  // namespace nimbo::detail
