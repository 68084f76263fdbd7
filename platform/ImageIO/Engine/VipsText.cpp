// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/VipsText.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/ImageIO/Engine/ImageColors.hpp"
#include "platform/ImageIO/Engine/PixelCopying.hpp"

namespace nimbo::detail {
namespace {

constexpr double kMinimumPointSize = 1;
constexpr double kMaximumPointSize = 1000;
/// Longer texts are shortened before they are measured.
constexpr std::uint32_t kMaximumTextLength = 2000;
/// Dots an inch at which a point is a pixel.
constexpr int kDotsPerInch = 72;
/// It has the least and the greatest height of usual letters; drawn unseen in front of the text it keeps the
/// lines alike, because libvips cuts off what is empty.
constexpr std::string_view kStrut = "<span alpha=\"1\">\xc3\x85|g</span>";

/// A character for Pango's markup; what is no text becomes a blank.
std::string markupOfCharacter(std::string_view character) {
  if (character == "&") return "&amp;";
  if (character == "<") return "&lt;";
  if (character == ">") return "&gt;";
  if (static_cast<unsigned char>(character[0]) < ' ' || character == "\x7f") return " ";
  return std::string(character);
}

/// The characters of the text, ready for markup.
std::vector<std::string> charactersOf(const NSString &text) {
  const std::string bytes = text.UTF8String();
  std::vector<std::string> characters;
  for (std::size_t i = 0; i < bytes.size();) {
    std::size_t end = i + 1;
    while (end < bytes.size() && (static_cast<unsigned char>(bytes[end]) & 0xc0) == 0x80) ++end;
    characters.push_back(markupOfCharacter(std::string_view(bytes).substr(i, end - i)));
    i = end;
  }
  return characters;
}

/// The text of at most so many characters, with an ellipsis in place of those in the middle.
std::string shortened(const std::vector<std::string> &characters, std::size_t count) {
  std::string markup;
  const bool isWhole = count >= characters.size();
  const std::size_t head = isWhole ? characters.size() : (count + 1) / 2;
  for (std::size_t i = 0; i < head; ++i) markup += characters[i];
  if (isWhole) return markup;
  markup += "\xe2\x80\xa6";
  for (std::size_t i = characters.size() - count / 2; i < characters.size(); ++i) markup += characters[i];
  return markup;
}

/// Draws lines of one size and colour.
class LineDrawing {
 public:
  LineDrawing(double pointSize, const CGColor &color) {
    char text[64];
    std::snprintf(text, sizeof text, "sans %.1f", pointSize);
    font_ = text;
    const auto part = [](double component) {
      return static_cast<unsigned>(std::lround(std::clamp(component, 0.0, 1.0) * 255));
    };
    std::snprintf(text, sizeof text, "<span foreground=\"#%02x%02x%02x\" alpha=\"%u\">", part(color.red),
                  part(color.green), part(color.blue), std::max(part(color.alpha) * 257, 1u));
    opening_ = text;
    const auto strut = draw(std::string(kStrut));
    strutWidth_ = strut ? vips_image_get_width(strut.get()) : 0;
  }

  /// Null when there is nothing to see.
  VipsPointer<VipsImage> line(const std::string &markup) const {
    const auto drawn = draw(std::string(kStrut) + opening_ + markup + "</span>");
    const int width = drawn ? vips_image_get_width(drawn.get()) - strutWidth_ : 0;
    if (width <= 0) return nullptr;
    return applied(drawn, [&](auto in, auto out) {
      return vips_extract_area(in, out, strutWidth_, 0, width, vips_image_get_height(in), nullptr);
    });
  }

 private:
  VipsPointer<VipsImage> draw(const std::string &markup) const {
    VipsImage *image = nullptr;
    if (vips_text(&image, markup.c_str(), "font", font_.c_str(), "dpi", kDotsPerInch, "rgba", TRUE, nullptr) !=
        0)
      return nullptr;
    return VipsPointer<VipsImage>(image);
  }

  std::string font_;
  std::string opening_;
  int strutWidth_ = 0;
};

}  // namespace

ImagePixels drawnTextLine(const NSString &text, double pointSize, std::uint32_t maximumWidth,
                          const CGColor &color, NSError *error) {
  ImagePixels pixels;
  if (!startVips() || !(pointSize >= kMinimumPointSize && pointSize <= kMaximumPointSize)) {
    setError(error, ErrorCode::other, "there is no font of this size");
    return pixels;
  }
  const std::vector<std::string> characters = charactersOf(text);
  if (std::ranges::all_of(characters, [](const std::string &character) { return character == " "; })) {
    setError(error, ErrorCode::incomplete, "the text has nothing to see");
    return pixels;
  }
  const LineDrawing drawing(pointSize, color);
  const auto lineOf = [&](std::size_t count) {
    auto line = drawing.line(shortened(characters, count));
    const bool fits = line && vips_image_get_width(line.get()) <= static_cast<int>(maximumWidth);
    return fits ? std::move(line) : nullptr;
  };
  auto line = characters.size() <= kMaximumTextLength ? lineOf(characters.size()) : nullptr;
  std::size_t fitting = 0;
  for (std::size_t tooMany = std::min<std::size_t>(characters.size(), kMaximumTextLength);
       !line && tooMany - fitting > 1;) {
    const std::size_t middle = (fitting + tooMany) / 2;
    (lineOf(middle) ? fitting : tooMany) = middle;
  }
  if (!line && fitting > 0) line = lineOf(fitting);
  if (line) pixels = copiedPixels(line.get(), Orientation(), Deadline::never());
  if (!pixels.bytes) setError(error, ErrorCode::incomplete, "the text has nothing to see");
  vips_error_clear();
  return pixels;
}

}  // namespace nimbo::detail
