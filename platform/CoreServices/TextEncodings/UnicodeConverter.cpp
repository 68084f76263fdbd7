// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>

#include "platform/CoreServices/TextEncodings/TextConverters.hpp"
#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/Unicode/UTF8Conversion.hpp"

namespace nimbo {
namespace {

OSStatus statusOf(ConversionEnd end) {
  switch (end) {
    case ConversionEnd::complete:
      return noErr;
    case ConversionEnd::outputFull:
      return kTECOutputBufferFullStatus;
    case ConversionEnd::cut:
      return kTECPartialCharErr;
    case ConversionEnd::malformed:
      break;
  }
  return kTextMalformedInputErr;
}

/// Keeps nothing from call to call.
class StatelessConverter : public TECConverter {
 public:
  TECResult flushText(std::span<std::uint8_t>) override { return {}; }
  void clearContextInfo() override {}
};

class UTF8ToUTF16 final : public StatelessConverter {
 public:
  TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) override {
    const ConversionProgress done =
        convertUTF8ToUTF16(reinterpret_cast<const char *>(input.data()), input.size(),
                           reinterpret_cast<unichar *>(output.data()), output.size() / sizeof(unichar));
    return {statusOf(done.end), done.consumed, done.written * sizeof(unichar)};
  }
};

class UTF16ToUTF8 final : public StatelessConverter {
 public:
  TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) override {
    const ConversionProgress done =
        convertUTF16ToUTF8(reinterpret_cast<const unichar *>(input.data()), input.size() / sizeof(unichar),
                           reinterpret_cast<char *>(output.data()), output.size());
    const bool isOdd = done.end == ConversionEnd::complete && input.size() % sizeof(unichar) != 0;
    return {isOdd ? kTECPartialCharErr : statusOf(done.end), done.consumed * sizeof(unichar), done.written};
  }
};

class UTF16ToUTF16 final : public StatelessConverter {
 public:
  explicit UTF16ToUTF16(bool swapsBytes) : swapsBytes_(swapsBytes) {}

  TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) override {
    const std::size_t size = std::min(input.size(), output.size()) & ~std::size_t{1};
    if (!swapsBytes_ && size > 0) std::memcpy(output.data(), input.data(), size);
    if (swapsBytes_) {
      for (std::size_t i = 0; i < size; i += sizeof(unichar)) {
        output[i] = input[i + 1];
        output[i + 1] = input[i];
      }
    }
    const std::size_t left = input.size() - size;
    return {left == 0 ? noErr : left == 1 ? kTECPartialCharErr : kTECOutputBufferFullStatus, size, size};
  }

 private:
  const bool swapsBytes_;
};

}  // namespace

std::unique_ptr<TECConverter> makeUTF8Converter(ConversionDirection direction) {
  if (direction == ConversionDirection::toUnicode) return std::make_unique<UTF8ToUTF16>();
  return std::make_unique<UTF16ToUTF8>();
}

std::unique_ptr<TECConverter> makeUTF16Converter(bool swapsBytes) {
  return std::make_unique<UTF16ToUTF16>(swapsBytes);
}

}  // namespace nimbo
