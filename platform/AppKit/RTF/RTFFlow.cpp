// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/RTF/RTFFlow.hpp"

#include <algorithm>
#include <bit>
#include <stdexcept>

#include "platform/Foundation/id.hpp"

namespace nimbo {

namespace {

std::size_t hashOf(const RTFCharacterState &state) {
  const auto words = std::bit_cast<std::array<std::uint32_t, sizeof(RTFCharacterState) / 4>>(state);
  std::uint64_t hash = 0;
  for (const std::uint32_t word : words) hash = (hash ^ word) * 0x9e3779b97f4a7c15;
  return hash ^ (hash >> 32);
}

TextAttributes attributesOf(const RTFCharacterState &state, const RTFNames &names) {
  TextAttributes attributes;
  attributes.font.familyName =
      state.font >= 0 ? names.fonts[static_cast<std::size_t>(state.font)] : names.defaultFont;
  attributes.font.pointSize = state.size / 1000.0;
  attributes.font.weight = state.weight;
  attributes.font.isItalic = state.isItalic;
  attributes.font.isSmallCaps = state.isSmallCaps;
  attributes.foregroundColor = names.color(state.foreground);
  attributes.backgroundColor = names.color(state.background);
  attributes.underlineStyle = state.underline;
  attributes.underlineColor = names.color(state.underlineColor);
  attributes.strikethroughStyle = state.strikethrough;
  attributes.superscript = state.superscript;
  attributes.baselineOffset = state.baselineOffset / 1000.0;
  attributes.kern = state.kern / 1000.0;
  if (state.link >= 0) attributes.link = names.links[static_cast<std::size_t>(state.link)];
  if (state.attachment >= 0)
    attributes.attachment = names.attachments[static_cast<std::size_t>(state.attachment)];
  return attributes;
}

/// The attributes of states in paragraphs, those that were lately asked for.
class AttributeCache {
 public:
  template <class Make>
  const Interned<TextAttributes> &attributes(std::uint32_t state, const Interned<NSParagraphStyle> &paragraph,
                                             Make &&make) {
    const std::size_t hash = combinedHash(state, paragraph.hash() >> 4);
    Entry &entry = entries_[(hash ^ (hash >> 15)) % kEntries];
    if (!entry.isUsed || entry.state != state || entry.paragraph != paragraph)
      entry = {true, state, paragraph, make()};
    return entry.attributes;
  }

 private:
  static constexpr std::size_t kEntries = 1024;
  struct Entry {
    bool isUsed = false;
    std::uint32_t state = 0;
    Interned<NSParagraphStyle> paragraph;
    Interned<TextAttributes> attributes;
  };

  std::vector<Entry> entries_ = std::vector<Entry>(kEntries);
};

}  // namespace

void RTFFlow::reserve(std::size_t units) {
  constexpr std::size_t kMostReserved = 1 << 26;
  text_.reserve(std::min(units, kMostReserved));
}

void RTFFlow::append(std::u16string_view units, const RTFCharacterState &state) {
  if (units.empty()) return;
  text_.append(units);
  addRun(state);
}

void RTFFlow::append(std::string_view units, const RTFCharacterState &state) {
  if (units.empty()) return;
  const std::uint32_t start = text_.length();
  if (units.size() > NSNotFound - start) throw std::length_error("the text is too long");
  text_.setLength(start + static_cast<std::uint32_t>(units.size()));
  unichar *const to = text_.mutableCharacters() + start;
  for (std::size_t i = 0; i < units.size(); ++i) to[i] = static_cast<std::uint8_t>(units[i]);
  addRun(state);
}

void RTFFlow::addRun(const RTFCharacterState &state) {
  if (!runs_.empty() && (characterStates_[runs_.back().state] == state || runs_.size() == kMaximumRuns))
    runs_.back().end = text_.length();
  else
    runs_.push_back({text_.length(), characterStates_.numberOf(state, hashOf(state))});
}

void RTFFlow::addParagraph(const RTFParagraphState &state, std::uint32_t cell) {
  const bool isAsLast = !paragraphs_.empty() && paragraphStates_[paragraphs_.back().state] == state;
  const std::uint32_t number =
      isAsLast ? paragraphs_.back().state : paragraphStates_.numberOf(state, state.hash());
  paragraphs_.push_back({text_.length(), number, cell});
  tables_.noteContent();
}

void RTFFlow::endParagraph(const RTFCharacterState &characters, const RTFParagraphState &paragraph,
                           bool withLineFeed) {
  const std::uint32_t cell = tables_.cellAtDepth(paragraph.depth());
  if (withLineFeed) append(std::string_view("\n"), characters);
  addParagraph(paragraph, cell);
}

void RTFFlow::endCell(std::uint32_t depth, const RTFCharacterState &characters,
                      const RTFParagraphState &paragraph) {
  const bool isEmpty = !hasOpenParagraph();
  const std::uint32_t cell = tables_.cellAtDepth(depth);
  // A cell that ends right behind an inner table has no paragraph there.
  if (!isEmpty || !tables_.isBehindInnerTable()) {
    append(std::string_view("\n"), characters);
    addParagraph(paragraph, cell);
  }
  tables_.endCell();
}

void RTFFlow::finish(const RTFNames &names, const RTFLists &lists, NSMutableAttributedString *output) {
  (void)tables_.cellAtDepth(0);
  tables_.resolve([&](std::int32_t index) { return names.color(index); });
  output->reserve(output->length() + text_.length(), output->runs().size() + runs_.size());
  AttributeCache cache;
  std::uint32_t start = 0, lastState = 0, lastCell = 0;
  bool hasLast = false;
  Interned<NSParagraphStyle> style;
  auto run = runs_.begin();
  for (const Paragraph &paragraph : paragraphs_) {
    const bool isEmpty = paragraph.end == start + 1 && text_.view()[start] == u'\n';
    if (isEmpty && paragraph.cell && tables_.isFiller(paragraph.cell)) {
      start = paragraph.end;
      if (run->end == start) ++run;
      continue;
    }
    if (!hasLast || paragraph.state != lastState || paragraph.cell != lastCell) {
      const RTFParagraphState &state = paragraphStates_[paragraph.state];
      NSParagraphStyle record = state.style();
      if (state.list) record.textLists = lists.lists(state.list, state.level);
      if (paragraph.cell) record.textBlocks = tables_.blocks(paragraph.cell);
      style = Interned(std::move(record));
      lastState = paragraph.state;
      lastCell = paragraph.cell;
      hasLast = true;
    }
    while (start < paragraph.end) {
      const std::uint32_t end = std::min(run->end, paragraph.end);
      output->append(text_.view().substr(start, end - start), cache.attributes(run->state, style, [&] {
        TextAttributes attributes = attributesOf(characterStates_[run->state], names);
        attributes.paragraphStyle = style;
        return Interned(std::move(attributes));
      }));
      start = end;
      if (run->end == start) ++run;
    }
  }
}

}  // namespace nimbo
