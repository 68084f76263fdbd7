// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Pasteboard/PasteboardConversion.hpp"

#include <algorithm>
#include <bit>
#include <string>
#include <string_view>

#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/AppKit/PictureProgram.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"
#include "platform/Foundation/Unicode/UTF16Text.hpp"
#include "platform/Foundation/Unicode/UTF8Conversion.hpp"

namespace nimbo::detail {
namespace {

using namespace std::string_view_literals;

NSData dataWithBytes(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

NSData dataWithUnits(std::u16string_view units) {
  return dataWithBytes(encodeUTF8(units, InvalidInput::replaced).value_or(""));
}

/// Text in an encoding that the type does not tell as UTF-8.
NSData textOfBytes(const NSData &bytes) {
  constexpr auto kMark = "\xef\xbb\xbf"sv;
  const bool isMarked = bytes.view().starts_with(kMark);
  NSData text = isMarked ? bytes.subdataWithRange({kMark.size(), bytes.length()}) : bytes;
  const std::string_view view = text.view();
  if (view.starts_with("\xff\xfe"sv) || view.starts_with("\xfe\xff"sv))
    return dataWithUnits(unitsOfUTF16(view, std::endian::native));
  if (NSString::stringWithUTF8String(view)) return text;
  std::u16string units(view.size(), u'\0');
  std::ranges::transform(view, units.begin(), [](char c) { return static_cast<unsigned char>(c); });
  return dataWithUnits(units);
}

NSData latin1OfText(const NSData &text) {
  // What is the same in both is kept once.
  if (std::ranges::all_of(text.span(), [](std::uint8_t byte) { return byte < 0x80; })) return text;
  const NSString string = NSString::stringWithLossyUTF8String(text.view());
  std::string bytes;
  for (std::u16string_view left = string.view(); !left.empty(); left.remove_prefix(1)) {
    constexpr unichar kLast = 0xff;
    const bool isPair = left.size() > 1 && left[0] >= 0xd800 && left[0] < 0xdc00;
    bytes += left[0] <= kLast ? static_cast<char>(left[0]) : '?';
    if (isPair) left.remove_prefix(1);
  }
  return dataWithBytes(bytes);
}

/// Takes the next line off a text; some programs end the last one with a null character.
template <class Unit>
std::basic_string_view<Unit> takeLine(std::basic_string_view<Unit> *text) {
  const Unit ends[] = {'\r', '\n', 0};
  const std::size_t end =
      std::min(text->find_first_of(std::basic_string_view<Unit>(ends, std::size(ends))), text->size());
  const auto line = text->substr(0, end);
  const std::size_t endUnits = text->substr(end).starts_with(std::basic_string_view<Unit>(ends, 2)) ? 2 : 1;
  text->remove_prefix(std::min(end + endUnits, text->size()));
  return line;
}

NSData firstURL(const NSData &list) {
  for (std::string_view text = list.view(); !text.empty();) {
    const std::string_view line = trimmed(takeLine(&text), isASCIIWhiteSpace<char>);
    if (!line.empty() && line.front() != '#') return dataWithBytes(line);
  }
  return {};
}

NSData lineOfLines(const NSData &lines, bool isTitle) {
  const std::u16string units = unitsOfUTF16(lines.view(), std::endian::native);
  std::u16string_view text = units;
  const std::u16string_view url = takeLine(&text);
  if (!isTitle) return url.empty() ? NSData() : dataWithUnits(url);
  // Behind the last unit there is a null one.
  return units[url.size()] != 0 ? dataWithUnits(takeLine(&text)) : NSData();
}

NSData plainRTF(const NSData &data) {
  const NSAttributedString text = initWithRTFD(data);
  return text ? RTFFromRange(text, {0, text.length()}) : NSData();
}

/// A picture in the other of the two formats that pasteboards have.
NSData convertedPicture(const NSData &picture, bool isPNG, NSError *error) {
  constexpr double kSeconds = 10;
  return makePicture(
      {.what = "picture", .type = isPNG ? u"public.png"_ns : u"public.tiff"_ns, .seconds = kSeconds}, picture,
      error);
}

}  // namespace

NSData dataForTarget(const PasteboardTarget &target, const NSData &data) {
  switch (target.form) {
    case TargetForm::latin1:
      return latin1OfText(data);
    case TargetForm::URIList:
      return data.length() == 0 ? NSData() : dataWithBytes(std::string(data.view()) + "\r\n");
    case TargetForm::picture:
      return convertedPicture(data, target.target == u"image/png"_ns, nullptr);
    case TargetForm::plainRTF:
      return plainRTF(data);
    default:
      return data;
  }
}

NSData dataFromTarget(const PasteboardTarget &target, const NSData &bytes, NSError *error) {
  const auto orFail = [error](NSData data) {
    if (!data) setError(error, ErrorCode::incomplete, "the clipboard holds no data of this type");
    return data;
  };
  switch (target.form) {
    case TargetForm::text:
    case TargetForm::latin1:
      return textOfBytes(bytes);
    case TargetForm::URIList:
      return orFail(firstURL(bytes));
    case TargetForm::URLLine:
    case TargetForm::titleLine:
      return orFail(lineOfLines(bytes, target.form == TargetForm::titleLine));
    case TargetForm::picture:
      return convertedPicture(bytes, target.type != u"NSTIFFPboardType"_ns, error);
    default:
      return bytes;
  }
}

NSData URLLines(const NSData &url, const NSData &title) {
  if (url.length() == 0) return {};
  std::u16string lines(NSString::stringWithLossyUTF8String(url.view()).view());
  lines.append(u"\n").append(NSString::stringWithLossyUTF8String((title ? title : url).view()).view());
  return NSData::dataWithBytes(lines.data(), lines.size() * sizeof(unichar));
}

}  // namespace nimbo::detail
