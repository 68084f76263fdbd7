// SPDX-License-Identifier: Apache-2.0
#include "Classes/Paths/NSMutableString+NSStringNimboPathExtensions.hpp"

#include <optional>
#include <string>

#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Strings/UnitEditing.hpp"
#include "platform/Foundation/NSStringNormalization.hpp"
#include "platform/Foundation/Unicode/CharacterBoundaries.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo {
namespace {

constexpr IsUnitOf kIsInvalidAtEnds{u"./~:"};
constexpr IsUnitOf kIsReplaced{u"/:~"};

/// How many units the character at `index` has, and how many bytes it takes in a file name; 0 bytes when it
/// cannot stand there. As `fileSystemRepresentation` has it.
struct CharacterSize {
  std::size_t units;
  std::size_t bytes;
};

CharacterSize sizeOfCharacter(std::u16string_view units, std::size_t index) {
  const unichar c = units[index];
  if (c == 0) return {1, 0};
  if (!isSurrogate(c)) return {1, utf8Length(c)};
  if (isHighSurrogate(c) && index + 1 < units.size() && isLowSurrogate(units[index + 1])) return {2, 4};
  return {1, c >= 0xdc80 && c <= 0xdcff ? 1u : 0u};
}

/// The longest beginning of whole characters that makes a name of at most `limit` bytes.
std::size_t lengthWithinBytes(std::u16string_view units, std::size_t limit) {
  std::size_t length = 0, bytes = 0, following = 0;
  while (length < units.size()) {
    const CharacterSize size = sizeOfCharacter(units, length);
    following = size.units;
    if (size.bytes == 0 || bytes + size.bytes > limit) break;
    bytes += size.bytes;
    length += size.units;
  }
  if (length == units.size()) return length;
  const std::size_t boundary = characterBoundaryAtOrBefore(units.substr(0, length + following), length);
  return boundary > 0 ? boundary : length;
}

void cutToBytes(NSMutableString &string, std::size_t limit) {
  string.setLength(static_cast<std::uint32_t>(lengthWithinBytes(string.view(), limit)));
}

}  // namespace

inline namespace NSStringNimboPathExtensions {

void trimInvalidFilenameCharacters(NSMutableString &string) {
  trimUnits(string, kIsInvalidAtEnds);
}

void createFilename(NSMutableString &string) {
  precomposeStringWithCanonicalMapping(string);
  trimInvalidFilenameCharacters(string);
  mapUnits(string, [](unichar c) { return kIsReplaced(c) ? u'-' : c; });
}

void createFileSystemRepresentation(NSMutableString &string) {
  cutToBytes(string, kMaximumFileNameBytes);
}

void createFileSystemRepresentationWithinBytes(NSMutableString &string, std::uint32_t maximumBytes) {
  cutToBytes(string, maximumBytes);
}

void createFileSystemRepresentationAndAppendExtension(NSMutableString &string, const NSString &extension) {
  constexpr std::size_t kRoom = kMaximumFileNameBytes - 1;  // For the name and the extension.
  const std::optional<std::string> bytes = extension.fileSystemRepresentation();
  if (!bytes || bytes->size() >= kRoom) return createFileSystemRepresentation(string);
  cutToBytes(string, kRoom - bytes->size());
  const std::u16string_view units = string.view(), wanted = extension.view();
  if (units.ends_with(wanted) && units.substr(0, units.size() - wanted.size()).ends_with(u'.')) return;
  string.appendCharacter(u'.');
  string.appendString(extension);
}

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
