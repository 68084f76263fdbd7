// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFMeanings.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace nimbo::detail {
namespace {

constexpr unsigned kCodes = 256;
constexpr std::size_t kMostLetters = 8;
constexpr std::size_t kLongestName = 64;

/// What one glyph stands for; plain data, which MuPDF's errors may jump over.
struct Letters {
  std::array<int, kMostLetters> codes;
  std::size_t count;

  bool add(int code) {
    if (code <= 0 || code == FZ_REPLACEMENT_CHARACTER || count == kMostLetters) return false;
    codes[count++] = code;
    return true;
  }
};

int hexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  return digit >= 'A' && digit <= 'F' ? digit - 'A' + 10 : -1;
}

/// Adds the letters of "uni" and many times four digits; answers whether the name is one.
bool addCodes(std::string_view name, Letters *letters) {
  name.remove_prefix(3);
  for (; !name.empty(); name.remove_prefix(4)) {
    int code = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      const int digit = hexDigit(name[i]);
      if (digit < 0) return false;
      code = code * 16 + digit;
    }
    const bool isSurrogate = code >= 0xd800 && code <= 0xdfff;
    if (isSurrogate || !letters->add(code)) return false;
  }
  return true;
}

/// Adds the letters of a part of a name; answers whether it is known.
bool addPart(std::string_view part, Letters *letters) {
  if (part.starts_with("uni") && part.size() >= 7 && part.size() % 4 == 3) return addCodes(part, letters);
  std::array<char, kLongestName> name;
  if (part.empty() || part.size() >= name.size()) return false;
  *std::copy(part.begin(), part.end(), name.begin()) = '\0';
  return letters->add(fz_unicode_from_glyph_name_strict(name.data()));
}

/// The letters of a name whose parts "_" joins; none when it stands for one alone or has an unknown part.
Letters lettersOfName(std::string_view name) {
  Letters letters = {};
  name = name.substr(0, name.find('.'));
  while (!name.empty()) {
    const std::size_t end = std::min(name.find('_'), name.size());
    if (!addPart(name.substr(0, end), &letters)) return {};
    name.remove_prefix(std::min(end + 1, name.size()));
  }
  return letters.count > 1 ? letters : Letters{};
}

/// Lets MuPDF add an entry for any code.
template <class Map>
void mapAnywhere(pdf_cmap *cmap, Map map) {
  auto &first = cmap->codespace[0];
  const auto before = first;
  const int count = cmap->codespace_len;
  if (count > 0) {
    first = {4, 0, UINT32_MAX};
    cmap->codespace_len = 1;
  }
  // An error ends the map.
  map();
  first = before;
  cmap->codespace_len = count;
}

}  // namespace

void addMeaningsOfNames(fz_context *context, pdf_font_desc *font, const char *const *names) {
  // A map that a font brings is not to be changed.
  if (!names || font->to_unicode) return;
  for (unsigned code = 0; code < kCodes; ++code) {
    const char *const name = names[code];
    if (!name || (!std::string_view(name).starts_with("uni") &&
                  std::string_view(name).find('_') == std::string_view::npos))
      continue;
    Letters letters = lettersOfName(name);
    if (letters.count == 0) continue;
    if (!font->to_unicode) font->to_unicode = pdf_new_cmap(context);
    pdf_map_one_to_many(context, font->to_unicode, code, letters.codes.data(), letters.count);
  }
  if (font->to_unicode) pdf_sort_cmap(context, font->to_unicode);
}

extern "C" {

// The linker fixes these names. NOLINTBEGIN(bugprone-reserved-identifier)
decltype(pdf_map_range_to_range) __real_pdf_map_range_to_range, __wrap_pdf_map_range_to_range;

// MuPDF turns a map from a font's codes into one from the numbers of its glyphs, and drops those numbers that
// are no codes. It does so one by one.
void __wrap_pdf_map_range_to_range(fz_context *context, pdf_cmap *cmap, unsigned low, unsigned high, int out) {
  const auto map = [&] { __real_pdf_map_range_to_range(context, cmap, low, high, out); };
  if (low == high)
    mapAnywhere(cmap, map);
  else
    map();
}
// NOLINTEND(bugprone-reserved-identifier)

}  // extern "C"

}  // namespace nimbo::detail
