// SPDX-License-Identifier: Apache-2.0
#include <glib.h>

#include <bit>
#include <cerrno>
#include <utility>

#include "platform/CoreServices/TextEncodings/TextConverters.hpp"

namespace nimbo {
namespace {

const GIConv kNoDescriptor = reinterpret_cast<GIConv>(-1);  // NOLINT: GLib's own convention

class IconvConverter final : public TECConverter {
 public:
  IconvConverter(GIConv descriptor, ConversionDirection direction)
      : descriptor_(descriptor), direction_(direction) {}
  IconvConverter(const IconvConverter &) = delete;
  IconvConverter &operator=(const IconvConverter &) = delete;
  ~IconvConverter() override { g_iconv_close(descriptor_); }

  TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) override {
    // The C library reads through this pointer only.
    auto *source = reinterpret_cast<char *>(const_cast<std::uint8_t *>(input.data()));
    std::size_t left = input.size();
    TECResult result = convert(left ? &source : nullptr, &left, output, left > 0);
    result.consumedBytes = input.size() - left;
    return result;
  }
  TECResult flushText(std::span<std::uint8_t> output) override {
    return convert(nullptr, nullptr, output, true);
  }
  void clearContextInfo() override { g_iconv(descriptor_, nullptr, nullptr, nullptr, nullptr); }

 private:
  TECResult convert(char **source, std::size_t *left, std::span<std::uint8_t> output, bool isNeeded) {
    if (!isNeeded) return {};
    char nowhere = 0;
    // The C library ends the process when it gets a null pointer for no room.
    char *to = output.empty() ? &nowhere : reinterpret_cast<char *>(output.data());
    std::size_t room = output.size();
    const std::size_t answer = g_iconv(descriptor_, source, left, &to, &room);
    const int error = answer == static_cast<std::size_t>(-1) ? errno : 0;
    return {statusOf(error), 0, output.size() - room};
  }

  OSStatus statusOf(int error) const {
    if (error == 0) return noErr;
    if (error == E2BIG) return kTECOutputBufferFullStatus;
    if (error == EINVAL) return kTECPartialCharErr;
    return direction_ == ConversionDirection::toUnicode ? kTextMalformedInputErr : kTECUnmappableElementErr;
  }

  const GIConv descriptor_;
  const ConversionDirection direction_;
};

}  // namespace

std::unique_ptr<TECConverter> makeIconvConverter(const char *name, ConversionDirection direction) {
  const char *const unicode = std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";
  const bool decodes = direction == ConversionDirection::toUnicode;
  const GIConv descriptor = decodes ? g_iconv_open(unicode, name) : g_iconv_open(name, unicode);
  if (descriptor == kNoDescriptor) return nullptr;
  return std::make_unique<IconvConverter>(descriptor, direction);
}

}  // namespace nimbo
