// SPDX-License-Identifier: Apache-2.0
#include <ft2build.h>

#include FT_FREETYPE_H
#include FT_SYSTEM_H

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

// MuPDF asks for the glyph of each name of an encoding and then of the name's other spellings, and FreeType
// compares it with the names of all glyphs. The linker sends the question here (--wrap), where a table of a
// font's names, made at the first one, answers it.

namespace nimbo::detail {
namespace {

/// Fonts with more glyphs are not those that have names.
constexpr FT_Long kMaximumGlyphs = 4096;
/// With its final zero. Fonts with longer names are looked through by FreeType.
constexpr std::size_t kLongestName = 128;

struct Slot {
  std::uint32_t hash;
  /// The number of the glyph, and 1; 0 where the slot is free.
  std::uint32_t next;
};

/// Stands before its slots, in memory of the font's own, which frees it at its end.
struct GlyphNames {
  FT_Memory memory;
  std::uint32_t mask;

  Slot *slots() { return reinterpret_cast<Slot *>(this + 1); }
};
static_assert(sizeof(GlyphNames) % alignof(Slot) == 0);

std::uint32_t hashOf(std::string_view name) {
  std::uint32_t hash = 2166136261u;
  for (const char unit : name) hash = (hash ^ static_cast<unsigned char>(unit)) * 16777619u;
  return hash;
}

void dropNames(void *face) {
  const FT_Generic &generic = static_cast<FT_Face>(face)->generic;
  auto *const names = static_cast<GlyphNames *>(generic.data);
  names->memory->free(names->memory, names);
}

std::string_view nameOfGlyph(FT_Face face, std::uint32_t glyph, std::array<char, kLongestName> &buffer) {
  return FT_Get_Glyph_Name(face, glyph, buffer.data(), buffer.size()) == 0 ? buffer.data() : std::string_view();
}

/// Null when the font is not one to make a table of.
GlyphNames *namesOfFace(FT_Face face) {
  if (face->generic.finalizer == dropNames) return static_cast<GlyphNames *>(face->generic.data);
  const FT_Memory memory = face->memory;
  // The memory is MuPDF's, which has to stand behind it.
  if (face->generic.finalizer || !memory->user || !FT_HAS_GLYPH_NAMES(face) || face->num_glyphs <= 0 ||
      face->num_glyphs > kMaximumGlyphs)
    return nullptr;
  const auto glyphs = static_cast<std::uint32_t>(face->num_glyphs);
  const std::uint32_t count = std::bit_ceil(2 * glyphs);
  const auto size = static_cast<long>(sizeof(GlyphNames) + count * sizeof(Slot));
  auto *const names = static_cast<GlyphNames *>(memory->alloc(memory, size));
  if (!names) return nullptr;
  *names = {memory, count - 1};
  Slot *const slots = names->slots();
  std::memset(slots, 0, count * sizeof(Slot));
  std::array<char, kLongestName> buffer;
  for (std::uint32_t glyph = 0; glyph < glyphs; ++glyph) {
    const std::string_view name = nameOfGlyph(face, glyph, buffer);
    if (name.empty()) continue;
    const std::uint32_t hash = hashOf(name);
    std::uint32_t place = hash & names->mask;
    while (slots[place].next) place = (place + 1) & names->mask;
    slots[place] = {hash, glyph + 1};
  }
  face->generic = {names, dropNames};
  return names;
}

}  // namespace

extern "C" {

// The linker fixes these names. NOLINTBEGIN(bugprone-reserved-identifier)
decltype(FT_Get_Name_Index) __real_FT_Get_Name_Index, __wrap_FT_Get_Name_Index;

/// The first glyph of that name; 0 when there is none.
FT_UInt __wrap_FT_Get_Name_Index(FT_Face face, const FT_String *wanted) {
  const std::string_view name = wanted;
  GlyphNames *const names = name.empty() || name.size() + 1 >= kLongestName ? nullptr : namesOfFace(face);
  if (!names) return __real_FT_Get_Name_Index(face, wanted);
  const std::uint32_t hash = hashOf(name);
  std::array<char, kLongestName> buffer;
  // Glyphs of one name stand in their order.
  for (std::uint32_t place = hash & names->mask; names->slots()[place].next;
       place = (place + 1) & names->mask) {
    const Slot &slot = names->slots()[place];
    if (slot.hash == hash && nameOfGlyph(face, slot.next - 1, buffer) == name) return slot.next - 1;
  }
  return 0;
}
// NOLINTEND(bugprone-reserved-identifier)

}  // extern "C"

}  // namespace nimbo::detail
