// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "platform/CoreServices/SingleByteTables.hpp"
#include "platform/CoreServices/TextConverters.hpp"
#include "platform/Foundation/NSRange.hpp"

namespace nimbo {
namespace {

constexpr std::size_t kHighHalf = 0x80;
constexpr unichar kNoCharacter = 0xfffd;

class SingleByteConverter : public TECConverter {
 public:
  TECResult flushText(std::span<std::uint8_t>) final { return {}; }
  void clearContextInfo() final {}
};

class SingleByteToUTF16 final : public SingleByteConverter {
 public:
  explicit SingleByteToUTF16(const char16_t *table) : table_(table) {}

  TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) override {
    const std::size_t count = std::min(input.size(), output.size() / sizeof(unichar));
    bool usedFallbacks = false;
    for (std::size_t i = 0; i < count; ++i) {
      const unichar unit = input[i] < kHighHalf ? unichar{input[i]} : table_[input[i] - kHighHalf];
      usedFallbacks |= unit == kNoCharacter;
      std::memcpy(output.data() + i * sizeof unit, &unit, sizeof unit);
    }
    const OSStatus status = count < input.size() ? kTECOutputBufferFullStatus
                            : usedFallbacks      ? kTECUsedFallbacksStatus
                                                 : noErr;
    return {status, count, count * sizeof(unichar)};
  }

 private:
  const char16_t *const table_;
};

class UTF16ToSingleByte final : public SingleByteConverter {
 public:
  explicit UTF16ToSingleByte(const char16_t *table) {
    for (std::size_t i = 0; i < kHighHalf; ++i)
      bytes_[i] = {table[i], static_cast<std::uint8_t>(kHighHalf + i)};
    std::ranges::sort(bytes_);
  }

  TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) override {
    const std::size_t count = input.size() / sizeof(unichar);
    for (std::size_t i = 0; i < count; ++i) {
      if (i == output.size()) return {kTECOutputBufferFullStatus, i * sizeof(unichar), i};
      unichar unit;
      std::memcpy(&unit, input.data() + i * sizeof unit, sizeof unit);
      if (unit < kHighHalf) {
        output[i] = static_cast<std::uint8_t>(unit);
        continue;
      }
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
  /// Ascending; of bytes with the same character the lowest is first.
  std::array<Entry, kHighHalf> bytes_;
};

}  // namespace

std::unique_ptr<TECConverter> makeSingleByteConverter(const char *name, ConversionDirection direction) {
  const char16_t *table = singleByteTable(name);
  if (!table) return nullptr;
  if (direction == ConversionDirection::toUnicode) return std::make_unique<SingleByteToUTF16>(table);
  return std::make_unique<UTF16ToSingleByte>(table);
}

}  // namespace nimbo
