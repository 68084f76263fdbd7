// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>
#include <utility>

#include "platform/CoreServices/SingleByteTables.hpp"
#include "platform/CoreServices/TextConverters.hpp"
#include "platform/Foundation/NSRange.hpp"

namespace nimbo {
namespace {

constexpr std::size_t kBytes = 256;
constexpr std::size_t kHighHalf = 128;
constexpr unichar kNoCharacter = 0xfffd;

std::array<unichar, kBytes> charactersOf(const SingleByteTable &table) {
  std::array<unichar, kBytes> characters;
  std::iota(characters.begin(), characters.begin() + kHighHalf, unichar{0});
  std::copy_n(table.highHalf, kHighHalf, characters.begin() + kHighHalf);
  characters['\\'] = table.backslash;
  characters['~'] = table.tilde;
  return characters;
}

class SingleByteConverter : public TECConverter {
 public:
  TECResult flushText(std::span<std::uint8_t>) final { return {}; }
  void clearContextInfo() final {}
};

class SingleByteToUTF16 final : public SingleByteConverter {
 public:
  explicit SingleByteToUTF16(const SingleByteTable &table) : characters_(charactersOf(table)) {}

  TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) override {
    const std::size_t count = std::min(input.size(), output.size() / sizeof(unichar));
    bool usedFallbacks = false;
    for (std::size_t i = 0; i < count; ++i) {
      const unichar unit = characters_[input[i]];
      usedFallbacks |= unit == kNoCharacter;
      std::memcpy(output.data() + i * sizeof unit, &unit, sizeof unit);
    }
    const OSStatus status = count < input.size() ? kTECOutputBufferFullStatus
                            : usedFallbacks      ? kTECUsedFallbacksStatus
                                                 : noErr;
    return {status, count, count * sizeof(unichar)};
  }

 private:
  const std::array<unichar, kBytes> characters_;
};

class UTF16ToSingleByte final : public SingleByteConverter {
 public:
  explicit UTF16ToSingleByte(const SingleByteTable &table) {
    const auto characters = charactersOf(table);
    for (std::size_t i = 0; i < kBytes; ++i) bytes_[i] = {characters[i], static_cast<std::uint8_t>(i)};
    std::ranges::sort(bytes_, {},
                      [](const Entry &entry) { return std::pair(entry.first, rank(entry.second)); });
  }

  TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) override {
    const std::size_t count = input.size() / sizeof(unichar);
    for (std::size_t i = 0; i < count; ++i) {
      if (i == output.size()) return {kTECOutputBufferFullStatus, i * sizeof(unichar), i};
      unichar unit;
      std::memcpy(&unit, input.data() + i * sizeof unit, sizeof unit);
      const auto found = std::ranges::lower_bound(bytes_, unit, {}, &Entry::first);
      if (unit == kNoCharacter || found == bytes_.end() || found->first != unit)
        return {kTECUnmappableElementErr, i * sizeof(unichar), i};
      output[i] = found->second;
    }
    const bool isOdd = input.size() % sizeof(unichar) != 0;
    return {isOdd ? kTECPartialCharErr : noErr, count * sizeof(unichar), count};
  }

 private:
  using Entry = std::pair<unichar, std::uint8_t>;
  /// Of bytes with the same character, ASCII goes first, then the highest: shapes of letters stand below the
  /// plain ones.
  static std::size_t rank(std::uint8_t byte) { return byte < kHighHalf ? 0 : kBytes - byte; }

  /// Ascending by character; of those with the same, the byte to write is first.
  std::array<Entry, kBytes> bytes_;
};

}  // namespace

std::unique_ptr<TECConverter> makeSingleByteConverter(const char *name, ConversionDirection direction) {
  const SingleByteTable table = singleByteTable(name);
  if (!table.highHalf) return nullptr;
  if (direction == ConversionDirection::toUnicode) return std::make_unique<SingleByteToUTF16>(table);
  return std::make_unique<UTF16ToSingleByte>(table);
}

}  // namespace nimbo
