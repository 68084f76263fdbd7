// SPDX-License-Identifier: Apache-2.0
#include "Classes/Entities/EntityConversion.hpp"

#include <algorithm>
#include <bit>
#include <cstring>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/UnicharKernels.hpp"
#include "Classes/Entities/EntityTable.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

/// A decoded reference. `end` is where the text goes on behind it; null when nothing could be decoded.
struct Reference {
  const unichar *end = nullptr;
  unichar character = 0;
  /// One of the forms that have rules of their own; it is not folded.
  bool isFixed = false;
};

template <std::size_t N>
bool startsWith(const unichar *units, std::size_t length, const char16_t (&prefix)[N]) {
  return length >= N - 1 && std::memcmp(units, prefix, (N - 1) * sizeof(unichar)) == 0;
}

/// Decodes one of the forms that need no ";".
class FixedForms {
 public:
  /// Whether a form begins with this letter; it is false of most names, which then are compared with none.
  static bool canBeginWith(unichar letter) {
    constexpr std::uint32_t kFirstLetters =
        1u << ('a' - 'a') | 1u << ('g' - 'a') | 1u << ('l' - 'a') | 1u << ('n' - 'a') | 1u << ('q' - 'a');
    return letter >= u'a' && letter <= u'z' && (kFirstLetters >> (letter - u'a') & 1);
  }

  FixedForms(const unichar *units, std::size_t length) : units_(units), length_(length) {}

  Reference common() const {
    if (startsWith(units_, length_, u"nbsp")) return found(4, u'\u00a0');
    if (startsWith(units_, length_, u"apos")) return found(4, u'\'');
    return {};
  }

  [[gnu::always_inline]] Reference standard() const {
    if (startsWith(units_, length_, u"quot")) return found(4, u'"');
    if (startsWith(units_, length_, u"amp")) return found(3, u'&');
    if (startsWith(units_, length_, u"lt")) return found(2, u'<');
    if (startsWith(units_, length_, u"gt")) return found(2, u'>');
    return {};
  }

 private:
  Reference found(std::size_t letters, unichar character) const {
    const bool hasEnd = letters < length_ && units_[letters] == u';';
    return {units_ + letters + hasEnd, character, true};
  }

  const unichar *units_;
  std::size_t length_;
};

/// A reference without its "&" is decoded when it has at most this many units, the one that ends it among them.
constexpr std::size_t kMaxReferenceLength = EntityKey::kMaxLength + 1;

constexpr bool isMarkup(unichar c) {
  return c == u'<' || c == u'>' || c == u'&' || c == u'"';
}

/// The letters and digits of ASCII that the first eight units begin with, found without a branch for each.
class ASCIIName {
 public:
  static constexpr std::size_t kUnits = 8;

  explicit ASCIIName(const unichar *units) {
    typedef std::uint16_t Units __attribute__((vector_size(kUnits * sizeof(unichar))));
    typedef std::uint8_t Bytes __attribute__((vector_size(kUnits)));
    Units block;
    std::memcpy(&block, units, sizeof block);
    constexpr std::uint16_t kCase = 0x20, kFirstLetter = 'a', kLetters = 26, kFirstDigit = '0', kDigits = 10;
    const auto isMember = (((block | kCase) - kFirstLetter) < kLetters) | ((block - kFirstDigit) < kDigits);
    const auto members = std::bit_cast<std::uint64_t>(__builtin_convertvector(Units(isMember), Bytes));
    bytes_ = std::bit_cast<std::uint64_t>(__builtin_convertvector(block, Bytes));
    constexpr bool kIsLittle = std::endian::native == std::endian::little;
    length_ = static_cast<std::size_t>(kIsLittle ? std::countr_one(members) : std::countl_one(members)) / 8;
    if constexpr (kIsLittle) bytes_ = __builtin_bswap64(bytes_);
  }

  std::size_t length() const { return length_; }

  /// The key of a name that is not empty and not too long for one.
  EntityKey key() const {
    const std::size_t bits = 8 * length_;
    return {std::uint64_t{1} << bits | bytes_ >> (64 - bits)};
  }

 private:
  std::size_t length_;
  /// The lowest bytes of the units, the first one on top.
  std::uint64_t bytes_;
};

/// Decodes what follows an "&".
class ReferenceDecoder {
 public:
  ReferenceDecoder(bool standard, bool onlyNumeric)
      : standard_(standard), alphaNum_(onlyNumeric ? nullptr : alphaNumCharacterSetRep()) {}

  /// `length` is that of the rest of the text, and at least 1.
  [[gnu::always_inline]] Reference operator()(const unichar *units, std::size_t length) const {
    if (*units == u'#') return number(units, length);
    // No name begins with another unit of ASCII.
    if (*units < 128 && !isASCIILetter(*units)) return {};
    if (FixedForms::canBeginWith(*units)) {
      const FixedForms fixed(units, length);
      if (const Reference reference = fixed.common(); reference.end) return reference;
      if (standard_)
        if (const Reference reference = fixed.standard(); reference.end) return reference;
    }
    return alphaNum_ ? name(units, length) : Reference();
  }

 private:
  /// The index of the unit that ends a run which was scanned up to `scanned`: at the end of the text the run's
  /// own last unit. 0 when the run is empty or too long.
  static std::size_t indexOfTerminator(std::size_t scanned, std::size_t length) {
    if (scanned == length) return length - 1;
    return scanned < kMaxReferenceLength ? scanned : 0;
  }

  static Reference found(const unichar *units, std::size_t terminator, unichar character) {
    // A branch that is foreseen lets the text behind the reference begin early.
    if (__builtin_expect_with_probability(units[terminator] == u';', 1, 0.99))
      return {units + terminator + 1, character};
    return {units + terminator, character};
  }

  Reference number(const unichar *units, std::size_t length) const {
    const bool isHexadecimal = length > 1 && (units[1] == u'x' || units[1] == u'X');
    const unsigned base = isHexadecimal ? 16 : 10;
    const std::size_t limit = std::min(length, kMaxReferenceLength);
    const std::size_t first = isHexadecimal ? 2 : 1;
    std::size_t end = first;
    unsigned value = 0, valueBefore = 0;
    for (; end < limit; ++end) {
      const unsigned digit = hexDigitValue(units[end]);
      if (digit >= base) break;
      valueBefore = value;
      value = value * base + digit;
    }
    const std::size_t terminator = indexOfTerminator(end, length);
    if (terminator == 0) return {};
    if (terminator < end) value = valueBefore;
    const auto character = static_cast<unichar>(value);
    if (!standard_ && isMarkup(character)) return {};
    return found(units, terminator, character);
  }

  Reference name(const unichar *units, std::size_t length) const {
    if (length < ASCIIName::kUnits) return scannedName(units, length);
    const ASCIIName start(units);
    const std::size_t end = start.length();
    if (end > EntityKey::kMaxLength) return {};
    // Other characters belong to names, too, though no entity has them.
    if (units[end] >= 128) return scannedName(units, length);
    const unichar character = characterOfEntity(start.key());
    return character ? found(units, end, character) : Reference();
  }

  /// What `name` gives, found unit by unit.
  Reference scannedName(const unichar *units, std::size_t length) const {
    const std::size_t limit = std::min(length, kMaxReferenceLength);
    EntityKey key;
    std::size_t end = 0;
    for (; end < limit && alphaNum_->contains(units[end]); ++end)
      key.append(static_cast<std::uint8_t>(units[end]));
    const std::size_t terminator = indexOfTerminator(end, length);
    if (terminator == 0) return {};
    if (terminator < end) key.removeLast();
    const unichar character = characterOfEntity(key);
    return character ? found(units, terminator, character) : Reference();
  }

  bool standard_;
  /// Null when names are not decoded.
  const CharacterSetRep *alphaNum_;
};

/// Decodes "quot;", "amp;", "lt;" and "gt;".
Reference decodeStandardReference(const unichar *units, std::size_t length) {
  const Reference reference = FixedForms(units, length).standard();
  return reference.end && reference.end[-1] == u';' ? reference : Reference();
}

/// The run before the next "&" is first looked for by hand, since it is often short; the vectors then take it
/// in blocks that stay in the processor's nearest cache between search and copy.
constexpr std::size_t kShortRunLength = 16;
constexpr std::size_t kBlockLength = 2048;

/// What becomes of characters that are to stay.
struct Unfolded {
  unichar operator()(unichar c) const { return c; }
};

/// What becomes of characters whose diacritics are taken away.
struct Folded {
  const unichar *table;

  unichar operator()(unichar c) const { return table[c]; }
};

/// Copies units forward to a place that may be before them.
void copyUnits(const unichar *in, std::size_t length, unichar *out, Unfolded) {
  if (in != out) std::memmove(out, in, length * sizeof(unichar));
}
void copyUnits(const unichar *in, std::size_t length, unichar *out, Folded fold) {
  if (detail::areAllUnicharsAscii(in, length))
    copyUnits(in, length, out, Unfolded());
  else
    std::transform(in, in + length, out, fold);
}

/// Decodes every reference in [in, end) and answers the end of the output.
template <class Decode, class Fold>
unichar *decodeReferences(const unichar *in, const unichar *end, unichar *out, Decode decode, Fold fold) {
  for (;;) {
    const std::size_t shortLength = std::min(kShortRunLength, static_cast<std::size_t>(end - in));
    std::size_t run = 0;
    for (; run < shortLength && in[run] != u'&'; ++run) out[run] = fold(in[run]);
    in += run;
    out += run;
    while (in < end && *in != u'&') {
      const std::size_t length = detail::findOneOfChoice(
          in, std::min(kBlockLength, static_cast<std::size_t>(end - in)), detail::UnicharChoice::only(u'&'));
      copyUnits(in, length, out, fold);
      in += length;
      out += length;
    }
    if (in == end) return out;
    ++in;
    const Reference reference = in < end ? decode(in, static_cast<std::size_t>(end - in)) : Reference();
    if (reference.end) {
      *out++ = reference.isFixed ? reference.character : fold(reference.character);
      in = reference.end;
    } else {
      *out++ = u'&';
    }
  }
}

}  // namespace

std::uint32_t convertEntities2Characters(const unichar *source, unichar *destination, std::uint32_t start,
                                         std::uint32_t length, Flag standard, Flag onlyNumeric,
                                         Flag nonUmlauted) {
  if (length == 0) return 0;
  const unichar *const in = source + start;
  const ReferenceDecoder decode(standard, onlyNumeric);
  const unichar *const end =
      nonUmlauted ? decodeReferences(in, in + length, destination, decode, Folded{initUmlautsCharsTable()})
                  : decodeReferences(in, in + length, destination, decode, Unfolded());
  return static_cast<std::uint32_t>(end - destination);
}

std::uint32_t convertStandardEntities2Characters(const unichar *source, unichar *destination,
                                                 std::uint32_t length) {
  if (length == 0) return 0;
  const unichar *const end =
      decodeReferences(source, source + length, destination, decodeStandardReference, Unfolded());
  return static_cast<std::uint32_t>(end - destination);
}

}  // namespace nimbo
