// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "platform/CoreServices/TextEncodings/CodeTable.hpp"
#include "platform/CoreServices/TextEncodings/TextConverters.hpp"
#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo {
namespace {

TableCode pairOf(std::uint8_t lead, std::uint8_t trail) {
  return static_cast<TableCode>(lead << 8 | trail);
}

class TableToUTF16 final : public TECConverter {
 public:
  explicit TableToUTF16(const CodeTable &table) : table_(table) {}

  TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) override {
    TECResult result;
    while (writePending(output, result)) {
      const auto rest = input.subspan(result.consumedBytes);
      if (rest.empty()) {
        if (std::exchange(usedFallbacks_, false)) result.status = kTECUsedFallbacksStatus;
        return result;
      }
      if (convertPlainCodes(input, output, result)) continue;
      if (held_) {
        const TableCode code = pairOf(*held_, rest[0]);
        if (table_.isPossible(code)) ++result.consumedBytes;
        mean(table_.isPossible(code) ? code : *held_);
        held_.reset();
      } else if (!table_.isLead(rest[0])) {
        if (!table_.isPossible(rest[0])) return failed(kTextMalformedInputErr, result);
        mean(rest[0]);
        ++result.consumedBytes;
      } else if (table_.isPossible(rest[0])) {
        held_ = rest[0];
        ++result.consumedBytes;
      } else {
        if (rest.size() == 1) return failed(kTECPartialCharErr, result);
        const TableCode code = pairOf(rest[0], rest[1]);
        if (!table_.isPossible(code)) return failed(kTextMalformedInputErr, result);
        mean(code);
        result.consumedBytes += 2;
      }
    }
    return failed(kTECOutputBufferFullStatus, result);
  }

  TECResult flushText(std::span<std::uint8_t> output) override {
    if (held_) mean(*std::exchange(held_, std::nullopt));
    TECResult result;
    if (!writePending(output, result)) return failed(kTECOutputBufferFullStatus, result);
    if (std::exchange(usedFallbacks_, false)) result.status = kTECUsedFallbacksStatus;
    return result;
  }

  void clearContextInfo() override {
    held_.reset();
    pending_.clear();
    usedFallbacks_ = false;
  }

 private:
  static TECResult failed(OSStatus status, TECResult result) {
    result.status = status;
    return result;
  }

  void mean(TableCode code) {
    table_.appendMeaning(code, &pending_);
    usedFallbacks_ |= pending_.back() == CodeTable::kNoCharacter;
  }

  /// Converts codes as long as each is a single unit, and no other is possible, and there is room; false when
  /// that was none.
  bool convertPlainCodes(std::span<const std::uint8_t> input, std::span<std::uint8_t> output,
                         TECResult &result) const {
    if (held_) return false;
    const std::size_t before = result.writtenBytes;
    while (result.consumedBytes < input.size() && output.size() - result.writtenBytes >= sizeof(unichar)) {
      const std::uint8_t first = input[result.consumedBytes];
      const bool isPair = table_.isLead(first);
      if (isPair && (table_.isPossible(first) || input.size() - result.consumedBytes < 2)) break;
      const unichar unit = table_.unitOf(isPair ? pairOf(first, input[result.consumedBytes + 1]) : first);
      if (unit == CodeTable::kNoCharacter) break;
      std::memcpy(output.data() + result.writtenBytes, &unit, sizeof unit);
      result.writtenBytes += sizeof unit;
      result.consumedBytes += isPair ? 2 : 1;
    }
    return result.writtenBytes > before;
  }

  /// False when something is left.
  bool writePending(std::span<std::uint8_t> output, TECResult &result) {
    const std::size_t room = (output.size() - result.writtenBytes) / sizeof(unichar);
    const std::size_t count = std::min(room, pending_.size());
    if (count > 0) std::memcpy(output.data() + result.writtenBytes, pending_.data(), count * sizeof(unichar));
    pending_.erase(0, count);
    result.writtenBytes += count * sizeof(unichar);
    return pending_.empty();
  }

  const CodeTable &table_;
  /// A byte that means something, and more if a certain other follows.
  std::optional<std::uint8_t> held_;
  std::u16string pending_;
  bool usedFallbacks_ = false;
};

class UTF16ToTable final : public TECConverter {
 public:
  explicit UTF16ToTable(const CodeTable &table) : table_(table) {}

  TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) override {
    TECResult result;
    while (input.size() - result.consumedBytes >= sizeof(unichar)) {
      unichar units[2] = {};
      const std::size_t size = std::min(input.size() - result.consumedBytes, sizeof units) & ~std::size_t{1};
      std::memcpy(units, input.data() + result.consumedBytes, size);
      const bool isPair = isHighSurrogate(units[0]) && isLowSurrogate(units[1]);
      if (isHighSurrogate(units[0]) && size == sizeof(unichar)) {
        result.status = kTECPartialCharErr;
        return result;
      }
      const auto code = table_.codeOf(isPair ? characterOfSurrogates(units[0], units[1]) : units[0]);
      if (!code) {
        result.status = kTECUnmappableElementErr;
        return result;
      }
      if (!write(*code, output, result)) {
        result.status = kTECOutputBufferFullStatus;
        return result;
      }
      result.consumedBytes += isPair ? sizeof units : sizeof(unichar);
    }
    if (result.consumedBytes < input.size()) result.status = kTECPartialCharErr;
    return result;
  }

  TECResult flushText(std::span<std::uint8_t>) override { return {}; }
  void clearContextInfo() override {}

 private:
  /// False, and nothing is written, when there is no room.
  static bool write(TableCode code, std::span<std::uint8_t> output, TECResult &result) {
    const bool isPair = code > 0xff;
    if (output.size() - result.writtenBytes < (isPair ? 2u : 1u)) return false;
    if (isPair) output[result.writtenBytes++] = static_cast<std::uint8_t>(code >> 8);
    output[result.writtenBytes++] = static_cast<std::uint8_t>(code);
    return true;
  }

  const CodeTable &table_;
};

}  // namespace

std::unique_ptr<TECConverter> makeTableConverter(const char *name, ConversionDirection direction) {
  const CodeTable *table = codeTable(name);
  if (!table) return nullptr;
  if (direction == ConversionDirection::toUnicode) return std::make_unique<TableToUTF16>(*table);
  return std::make_unique<UTF16ToTable>(*table);
}

}  // namespace nimbo
