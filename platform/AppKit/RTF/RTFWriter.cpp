// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/RTF/RTFWriter.hpp"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <optional>
#include <stdexcept>
#include <tuple>

#include "platform/AppKit/RTF/RTFFields.hpp"
#include "platform/AppKit/RTF/RTFPicture.hpp"
#include "platform/AppKit/RTF/RTFUnits.hpp"

namespace nimbo {

namespace {

/// The longest text between two tabs that is taken for a marker.
constexpr std::size_t kLongestMarker = 64;
/// How many hexadecimal digits stand in a line.
constexpr std::size_t kBytesOfLine = 64;
constexpr int kFiftiethsOfPercent = 50;

/// How much of a paragraph is its marker: a tab, the marker, a tab. 0 when it has none.
std::size_t lengthOfMarker(std::u16string_view paragraph) {
  if (!paragraph.starts_with(u'\t')) return 0;
  const std::size_t end = paragraph.substr(0, kLongestMarker).find_first_of(u"\t\n", 1);
  return end == paragraph.npos || paragraph[end] != u'\t' || end == 1 ? 0 : end + 1;
}

void appendInfo(std::string *output, std::string_view word, const NSString &text) {
  if (text.length() == 0) return;
  *output += '{';
  *output += word;
  *output += ' ';
  appendText(output, text.view());
  *output += '}';
}

void appendDate(std::string *output, std::string_view word, const std::optional<NSDate> &date) {
  if (!date) return;
  const auto seconds = static_cast<std::time_t>(std::floor(date->timeIntervalSince1970()));
  std::tm time{};
  if (!::gmtime_r(&seconds, &time) || time.tm_year < -1899 || time.tm_year > 8099) return;
  *output += '{';
  *output += word;
  appendWord(output, "\\yr", time.tm_year + 1900);
  appendWord(output, "\\mo", time.tm_mon + 1);
  appendWord(output, "\\dy", time.tm_mday);
  appendWord(output, "\\hr", time.tm_hour);
  appendWord(output, "\\min", time.tm_min);
  appendWord(output, "\\sec", time.tm_sec);
  *output += '}';
}

void appendLength(std::string *output, std::string_view word, const std::optional<double> &points) {
  if (points) appendWord(output, word, twipsOfPoints(*points));
}

void appendWidth(std::string *output, std::string_view prefix, const NSTextBlockWidth &width) {
  *output += prefix;
  switch (width.unit) {
    case NSTextBlockWidth::Unit::automatic:
      *output += "ftsWidth1";
      return;
    case NSTextBlockWidth::Unit::points:
      *output += "ftsWidth3";
      *output += prefix;
      return appendWord(output, "wWidth", twipsOfPoints(width.value));
    case NSTextBlockWidth::Unit::percent:
      *output += "ftsWidth2";
      *output += prefix;
      return appendWord(output, "wWidth", unitsOfPoints(width.value, kFiftiethsOfPercent));
  }
}

void appendCell(std::string *output, const RTFSlot &slot, const RTFTokens &tokens) {
  if (slot.isGap) *output += "\\clgap";
  if (slot.startsHorizontally) *output += "\\clmgf";
  if (slot.continuesHorizontally) *output += "\\clmrg";
  if (slot.startsVertically) *output += "\\clvmgf";
  if (slot.continuesVertically) *output += "\\clvmrg";
  if (!slot.isCell) return;
  const NSTextTableBlock &block = *slot.block;
  constexpr std::string_view kAlignments[] = {"\\clvertalt", "\\clvertalc", "\\clvertalb"};
  *output += kAlignments[static_cast<std::size_t>(block.verticalAlignment)];
  if (block.backgroundColor)
    appendWord(output, "\\clcbpat", static_cast<std::int64_t>(tokens.colorNumber(block.backgroundColor)));
  appendWidth(output, "\\cl", block.width);
  constexpr std::string_view kBorders[] = {"\\clbrdrt", "\\clbrdrl", "\\clbrdrb", "\\clbrdrr"};
  constexpr std::string_view kPadding[] = {"\\clpadt", "\\clpadl", "\\clpadb", "\\clpadr"};
  constexpr std::string_view kPaddingUnits[] = {"\\clpadft3", "\\clpadfl3", "\\clpadfb3", "\\clpadfr3"};
  for (std::size_t edge = 0; edge < kRectEdges; ++edge) {
    const std::int32_t border = std::max(twipsOfPoints(block.borderWidths[edge]), 0);
    if (border > 0 || block.borderColors[edge]) {
      *output += kBorders[edge];
      if (border > 0)
        appendWord(output, "\\brdrs\\brdrw", border);
      else
        *output += "\\brdrnone";
      if (block.borderColors[edge])
        appendWord(output, "\\brdrcf", static_cast<std::int64_t>(tokens.colorNumber(block.borderColors[edge])));
    }
    const std::int32_t padding = std::max(twipsOfPoints(block.padding[edge]), 0);
    if (padding == 0) continue;
    appendWord(output, kPadding[edge], padding);
    *output += kPaddingUnits[edge];
  }
}

/// The attributes without what belongs in a group.
Interned<TextAttributes> loweredAttributes(TextAttributes attributes) {
  attributes.superscript = 0;
  return Interned(std::move(attributes));
}

}  // namespace

RTFWriter::RTFWriter(const NSAttributedString &text, Attachments attachments)
    : text_(text), string_(text.string()), attachments_(attachments) {
  (void)names_.take(u"TXT.rtf"_ns);
}

std::string RTFWriter::write(const DocumentAttributes &documentAttributes) {
  findParagraphs();
  std::unordered_set<std::size_t> collected;
  for (const AttributeRun &run : text_.runs())
    if (collected.insert(run.attributes.hash()).second) tokens_.collect(*run.attributes);
  for (std::size_t i = 0; i < paragraphs_.size(); ++i) rows_.add(styleOf(i)->textBlocks);
  if (!paragraphs_.empty()) rows_.end();
  rows_.resolve();
  writeHeader(documentAttributes);
  for (std::size_t i = 0; i < paragraphs_.size(); ++i) {
    writeRowStarts(i);
    writeParagraph(i);
    checkLength();
  }
  output_ += "}\n";
  return std::move(output_);
}

void RTFWriter::checkLength() const {
  if (output_.size() > NSNotFound) throw std::length_error("the RTF is too long");
}

void RTFWriter::findParagraphs() {
  const std::u16string_view units = string_.view();
  const auto runs = text_.runs();
  std::size_t run = 0;
  for (std::uint32_t start = 0; start < units.size();) {
    const std::size_t feed = units.find(u'\n', start);
    const auto end = static_cast<std::uint32_t>(feed == units.npos ? units.size() : feed + 1);
    while (runs[run].end <= start) ++run;
    paragraphs_.push_back({start, end, run});
    start = end;
  }
}

void RTFWriter::writeHeader(const DocumentAttributes &document) {
  output_ = "{\\rtf1\\ansi\\ansicpg1252\\uc0\\deff0\n";
  if (text_.runs().empty()) tokens_.collect(TextAttributes());
  tokens_.appendTables(&output_);
  std::string info;
  appendInfo(&info, "\\title", document.title);
  appendInfo(&info, "\\author", document.author);
  appendInfo(&info, "\\subject", document.subject);
  NSMutableString keywords;
  for (const NSString &keyword : document.keywords) {
    if (keywords.length()) keywords.append(std::u16string_view(u", "));
    keywords.appendString(keyword);
  }
  appendInfo(&info, "\\keywords", std::move(keywords).string());
  appendInfo(&info, "\\*\\company", document.company);
  appendInfo(&info, "\\*\\copyright", document.copyright);
  appendInfo(&info, "\\doccomm", document.comment);
  appendDate(&info, "\\creatim", document.creationTime);
  appendDate(&info, "\\revtim", document.modificationTime);
  if (!info.empty()) output_ += "{\\info" + info + "}\n";
  if (document.paperSize) {
    appendLength(&output_, "\\paperw", document.paperSize->width);
    appendLength(&output_, "\\paperh", document.paperSize->height);
  }
  appendLength(&output_, "\\margl", document.leftMargin);
  appendLength(&output_, "\\margr", document.rightMargin);
  appendLength(&output_, "\\margt", document.topMargin);
  appendLength(&output_, "\\margb", document.bottomMargin);
  output_ += '\n';
}

void RTFWriter::writeStyle(const Interned<NSParagraphStyle> &style) {
  if (hasLastStyle_ && lastStyle_ == style) return;
  hasLastStyle_ = true;
  lastStyle_ = style;
  output_ += tokens_.paragraphWords(style);
}

void RTFWriter::writeAttributes(const Interned<TextAttributes> &attributes) {
  if (hasLastAttributes_ && lastAttributes_ == attributes) return;
  hasLastAttributes_ = true;
  lastAttributes_ = attributes;
  output_ += tokens_.characterWords(attributes);
}

void RTFWriter::writeParagraph(std::size_t index) {
  const Paragraph &paragraph = paragraphs_[index];
  const Interned<NSParagraphStyle> &style = styleOf(index);
  const std::u16string_view units = string_.view().substr(paragraph.start, paragraph.end - paragraph.start);
  const bool hasLineFeed = units.ends_with(u'\n');
  const std::size_t marker = style->textLists.empty() ? 0 : lengthOfMarker(units);
  const auto textEnd = static_cast<std::uint32_t>(paragraph.end - (hasLineFeed ? 1 : 0));
  const auto markerEnd = static_cast<std::uint32_t>(paragraph.start + marker);
  writeStyle(style);
  const auto runs = text_.runs();
  std::size_t run = paragraph.firstRun;
  const auto write = [&](std::uint32_t from, std::uint32_t to) {
    while (from < to) {
      const std::uint32_t end = std::min(runs[run].end, to);
      writeUnits(string_.view().substr(from, end - from), runs[run].attributes);
      from = end;
      if (runs[run].end == end) ++run;
    }
    endLink();
  };
  if (marker > 0) {
    openGroup("{\\listtext ");
    write(paragraph.start, markerEnd);
    closeGroup();
  }
  write(markerEnd, textEnd);
  // A paragraph's end looks as its run has it; a text that ends without one is ended as it is.
  if (hasLineFeed) {
    const Interned<TextAttributes> &attributes = runs[run].attributes;
    writeAttributes(attributes->superscript ? loweredAttributes(*attributes) : attributes);
  }
  writeEnd(index, hasLineFeed);
}

void RTFWriter::openGroup(std::string_view start) {
  output_ += start;
  outerAttributes_.push_back({hasLastAttributes_, lastAttributes_});
}

/// What was set in the group is as it was before.
void RTFWriter::closeGroup() {
  output_ += '}';
  std::tie(hasLastAttributes_, lastAttributes_) = outerAttributes_.back();
  outerAttributes_.pop_back();
}

void RTFWriter::endLink() {
  if (link_) closeGroup(), output_ += '}';
  link_ = NSString();
}

void RTFWriter::writeUnits(std::u16string_view units, const Interned<TextAttributes> &attributes) {
  if (link_ != attributes->link) {
    endLink();
    if (attributes->link.length() > 0) {
      output_ += "{\\field{\\*\\fldinst{";
      appendText(&output_, instructionOfLink(attributes->link.view()));
      output_ += "}}";
      openGroup("{\\fldrslt ");
      link_ = attributes->link;
    }
  }
  // Some readers keep raised text back until its group ends, for it may be the mark of a note.
  const bool isRaised = attributes->superscript != 0;
  if (isRaised) openGroup("{");
  writeAttributes(attributes);
  if (!attributes->attachment) {
    appendText(&output_, units);
    units = {};
  }
  while (!units.empty()) {
    const std::size_t place = std::min(units.find(NSAttachmentCharacter), units.size());
    appendText(&output_, units.substr(0, place));
    if (place < units.size()) writeAttachment(attributes->attachment);
    units.remove_prefix(std::min(place + 1, units.size()));
  }
  if (isRaised) closeGroup();
}

void RTFWriter::writeEnd(std::size_t index, bool hasLineFeed) {
  const std::span<const RTFTableEvent> events = rows_.eventsBehind(index);
  bool isParagraphEnded = false;
  for (const RTFTableEvent &event : events) {
    if (event.kind == RTFTableEvent::Kind::endRow) {
      endRow(event);
      continue;
    }
    if (isParagraphEnded) {
      // An outer cell ends behind the row of an inner table.
      beginCellParagraph(event.level);
    } else if (wasInInnerTable_ && paragraphs_[index].end - paragraphs_[index].start == 1) {
      output_ += "\\cellpar";
    }
    output_ += event.level == 0 ? "\\cell\n" : "\\nestcell\n";
    isParagraphEnded = true;
  }
  wasInInnerTable_ = false;
  if (!events.empty())
    wasInInnerTable_ = events.back().kind == RTFTableEvent::Kind::endRow && events.back().level > 0;
  if (!isParagraphEnded && hasLineFeed) output_ += "\\par\n";
}

void RTFWriter::beginCellParagraph(std::size_t level) {
  appendWord(&output_, "\\pard\\intbl\\itap", static_cast<std::int64_t>(level + 1));
  hasLastStyle_ = false;
}

void RTFWriter::writeFillers(std::size_t end, std::size_t level) {
  std::size_t &written = openRows_[level];
  for (; written < end; ++written) {
    beginCellParagraph(level);
    output_ += level == 0 ? "\\cell\n" : "\\nestcell\n";
  }
}

void RTFWriter::writeRowStarts(std::size_t index) {
  for (const RTFTableEvent &event : rows_.eventsBefore(index)) {
    if (event.kind == RTFTableEvent::Kind::openRow) {
      openRows_.resize(event.level + 1);
      openRows_[event.level] = 0;
      if (event.level == 0) writeRowDefinition(rows_.row(event.row));
    } else {
      writeFillers(event.slot, event.level);
      openRows_[event.level] = event.slot + 1;
    }
  }
}

void RTFWriter::endRow(const RTFTableEvent &event) {
  writeFillers(rows_.row(event.row).slots.size(), event.level);
  hasLastStyle_ = false;
  if (event.level == 0) {
    output_ += "\\row\n";
    return;
  }
  output_ += "{\\*\\nesttableprops";
  writeRowDefinition(rows_.row(event.row));
  output_ += "\\nestrow}{\\nonesttables\\par}\n";
}

void RTFWriter::writeRowDefinition(const RTFRowPlan &row) {
  const NSTextTable &table = *row.table;
  output_ += "\\trowd\\trgaph0\\trleft0";
  if (table.collapsesBorders) output_ += "\\taflags1";
  if (table.width != NSTextBlockWidth()) appendWidth(&output_, "\\tr", table.width);
  if (row.isLast) output_ += "\\lastrow";
  output_ += '\n';
  for (const RTFSlot &slot : row.slots) {
    appendCell(&output_, slot, tokens_);
    appendWord(&output_, "\\cellx", rows_.rightEdge(row, slot.column));
    output_ += '\n';
  }
  hasLastStyle_ = false;
}

void RTFWriter::writeAttachment(const NSTextAttachment &attachment) {
  if (attachments_ == Attachments::asPictures) return writePicture(attachment);
  const NSFileWrapper file = attachment.fileWrapper();
  if (file.isSymbolicLink()) return;
  auto &known = namesOfFiles_[file.hash()];
  auto place = std::find_if(known.begin(), known.end(), [&](const auto &entry) { return entry.first == file; });
  if (place == known.end()) {
    const NSString name = names_.take(file.preferredFilename());
    std::vector<NSFileWrapper> inner;
    for (const auto &entry : file.fileWrappers()) inner.push_back(entry.second);
    files_.push_back(file.isDirectory()
                         ? NSFileWrapper::directoryWithFileWrappers(std::move(inner), name)
                         : NSFileWrapper::regularFileWithContents(file.regularFileContents(), name));
    place = known.insert(known.end(), {file, name});
  }
  output_ += "{{\\*\\NeXTGraphic ";
  appendText(&output_, place->second.view());
  output_ += ' ';
  if (const auto size = attachment.sizeInPoints()) {
    appendWord(&output_, "\\width", twipsOfPoints(size->width));
    appendWord(&output_, "\\height", twipsOfPoints(size->height));
  }
  if (attachment.alternativeText()) {
    output_ += "{\\*\\alttext ";
    appendText(&output_, attachment.alternativeText().view());
    output_ += '}';
  }
  output_ += "}\\u-4 }";
}

void RTFWriter::writePicture(const NSTextAttachment &attachment) {
  const NSData bytes = attachment.fileWrapper().regularFileContents();
  const RTFPictureKind *const kind = pictureKindOfBytes(bytes.view());
  if (!kind) return;
  const auto appendProperty = [&](std::u16string_view name, const NSString &value) {
    if (!value) return;
    output_ += "{\\sp{\\sn ";
    appendText(&output_, name);
    output_ += "}{\\sv ";
    appendText(&output_, value.view());
    output_ += "}}";
  };
  output_ += "{\\pict{\\*\\picprop";
  appendProperty(kPictureNameProperty, attachment.fileWrapper().preferredFilename());
  appendProperty(kPictureDescriptionProperty, attachment.alternativeText());
  output_ += '}';
  output_ += kind->control;
  if (const auto size = attachment.sizeInPoints()) {
    appendWord(&output_, "\\picwgoal", twipsOfPoints(size->width));
    appendWord(&output_, "\\pichgoal", twipsOfPoints(size->height));
  }
  constexpr std::string_view kDigits = "0123456789abcdef";
  const auto span = bytes.span();
  for (std::size_t i = 0; i < span.size(); ++i) {
    if (i % kBytesOfLine == 0) output_ += '\n';
    output_ += kDigits[span[i] >> 4];
    output_ += kDigits[span[i] & 15];
  }
  output_ += '}';
  checkLength();
}

}  // namespace nimbo
