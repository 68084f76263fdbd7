// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextRuns.hpp"

#include <algorithm>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Entities/EntityConversion.hpp"
#include "Classes/PlainText/PlainTextJunk.hpp"
#include "platform/Foundation/Unicode/CharacterReferences.hpp"

namespace nimbo::detail {

namespace {

/// Shorter texts keep their character references, unless they are for reading: "&lt".
constexpr std::size_t kShortestDecoded = 4, kShortestDecodedForReading = 3;

/// Decodes what browsers decode. No reference is shorter than what it stands for.
std::uint32_t decodeAllReferences(std::u16string_view text, unichar *units, bool nonUmlauted) {
  unichar *out = units;
  while (!text.empty()) {
    const std::size_t plain = std::min(text.find(u'&'), text.size());
    out = std::copy_n(text.data(), plain, out);
    text.remove_prefix(plain);
    if (text.empty()) break;
    const CharacterReference reference = readCharacterReference(text, false);
    const std::u16string_view decoded = reference.length > 0 ? reference.view() : text.substr(0, 1);
    out = std::ranges::copy(decoded, out).out;
    text.remove_prefix(std::max<std::size_t>(reference.length, 1));
  }
  if (nonUmlauted) std::transform(units, out, units, EntryOf{initUmlautsCharsTable()});
  return static_cast<std::uint32_t>(out - units);
}

std::u16string_view decoded(PlainTextConversion &conversion, std::u16string_view text) {
  const auto length = static_cast<std::uint32_t>(text.size());
  if (conversion.decoded.size() < length) conversion.decoded.resize(length);
  unichar *const units = conversion.decoded.data();
  const PlainTextOptions &options = conversion.options;
  if (options.forReading && options.entities && options.stdEntities)
    return {units, decodeAllReferences(text, units, options.nonUmlauted)};
  const std::uint32_t count = options.entities
                                  ? convertEntities2Characters(text.data(), units, 0, length,
                                                               options.stdEntities, false, options.nonUmlauted)
                                  : convertStandardEntities2Characters(text.data(), units, length);
  return {units, count};
}

void writeUnits(PlainTextConversion &conversion, const TextRun &run) {
  const PlainTextOptions &options = conversion.options;
  PlainTextWriter &writer = conversion.writer;
  const std::size_t shortest = options.forReading ? kShortestDecodedForReading : kShortestDecoded;
  const bool isEncoded =
      run.isEncoded && run.units.size() >= shortest && (options.entities || options.stdEntities);
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
