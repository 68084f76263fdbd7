// SPDX-License-Identifier: Apache-2.0
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/CoreServices/TextEncodings/TextConverters.hpp"
#include "platform/Foundation/NSRange.hpp"

namespace nimbo {
namespace {

/// More bytes than ICU holds back for one character.
constexpr std::size_t kLongestSequence = 32;

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

OSStatus statusOf(UErrorCode status) {
  switch (status) {
    case U_BUFFER_OVERFLOW_ERROR:
      return kTECOutputBufferFullStatus;
    case U_INVALID_CHAR_FOUND:
      return kTECUnmappableElementErr;
    case U_TRUNCATED_CHAR_FOUND:
      return kTECPartialCharErr;
    default:
      return U_SUCCESS(status) ? noErr : kTextMalformedInputErr;
  }
}

// ICU's tables for DOS come from mainframes' and turn three controls in a circle: the end mark of DOS, 0x1a,
// would be U+001C. Texts have them in their places.
constexpr UChar kTurned[] = {0x1a, 0x1c, 0x7f};

bool turnsControls(const char *name) {
  UErrorCode status = U_ZERO_ERROR;
  const Converter converter(ucnv_open(name, &status), &ucnv_close);
  UChar unit = 0;
  ucnv_toUChars(converter.get(), &unit, 1, "\x1a", 1, &status);
  return unit == kTurned[1];
}

/// Turns the three controls by so many places.
void turnControls(std::span<UChar> units, std::size_t places) {
  for (UChar &unit : units)
    for (std::size_t i = 0; i < std::size(kTurned); ++i) {
      if (unit != kTurned[i]) continue;
      unit = kTurned[(i + places) % std::size(kTurned)];
      break;
    }
}

/// ICU's conversion in one direction.
template <class To, class From>
using Conversion = void(UConverter *, To **, const To *, const From **, const From *, std::int32_t *, UBool,
                        UErrorCode *);

/// The longest run that ICU takes at once.
template <class Unit>
constexpr std::ptrdiff_t kLongestRun = 0x7fffffff / sizeof(Unit);

template <class Unit>
Unit *endOfRun(Unit *begin, Unit *end) {
  return begin + std::min(end - begin, kLongestRun<Unit>);
}

/// Converts runs of any length; `to` and `from` go on as far as they were written and read.
template <class To, class From>
UErrorCode convertRuns(Conversion<To, From> *convert, UConverter *converter, To *&to, To *toEnd,
                       const From *&from, const From *fromEnd, bool flush) {
  for (;;) {
    UErrorCode status = U_ZERO_ERROR;
    To *const toStop = endOfRun(to, toEnd);
    const From *const fromStop = endOfRun(from, fromEnd);
    convert(converter, &to, toStop, &from, fromStop, nullptr, static_cast<UBool>(flush), &status);
    const bool goesOn =
        status == U_BUFFER_OVERFLOW_ERROR ? toStop != toEnd : U_SUCCESS(status) && fromStop != fromEnd;
    if (!goesOn) return status;
  }
}

/// Codes that the table gives no meaning become U+FFFD; impossible ones stay errors.
void substituteUnassigned(const void *usedFallbacks, UConverterToUnicodeArgs *arguments, const char *,
                          std::int32_t, UConverterCallbackReason reason, UErrorCode *status) {
  if (reason != UCNV_UNASSIGNED) return;
  constexpr UChar kReplacement = 0xfffd;
  *static_cast<bool *>(const_cast<void *>(usedFallbacks)) = true;
  *status = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(arguments, &kReplacement, 1, 0, status);
}

/// Every error stays one. (ICU's own function of this kind drops characters that are usually not shown.)
void stopAtError(const void *, UConverterFromUnicodeArgs *, const UChar *, std::int32_t, UChar32,
                 UConverterCallbackReason, UErrorCode *) {}

class ICUToUTF16 final : public TECConverter {
 public:
  ICUToUTF16(Converter converter, bool turns) : converter_(std::move(converter)), turns_(turns) {
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter_.get(), substituteUnassigned, &usedFallbacks_, nullptr, nullptr, &status);
  }

  TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) override {
    return convert(input, output, false);
  }
  TECResult flushText(std::span<std::uint8_t> output) override { return convert({}, output, true); }
  void clearContextInfo() override {
    usedFallbacks_ = false;
    ucnv_resetToUnicode(converter_.get());
  }

 private:
  TECResult convert(std::span<const std::uint8_t> input, std::span<std::uint8_t> output, bool flush) {
    const char *const begin = reinterpret_cast<const char *>(input.data());
    const char *source = begin;
    const char *const end = begin + input.size();
    auto *const target = reinterpret_cast<UChar *>(output.data());
    UChar *to = target;
    UErrorCode status = convertRuns<UChar, char>(ucnv_toUnicode, converter_.get(), to,
                                                 target + output.size() / sizeof(UChar), source, end, flush);
    if (turns_) turnControls({target, to}, 2);
    TECResult result{statusOf(status), static_cast<std::size_t>(source - begin),
                     static_cast<std::size_t>(to - target) * sizeof(UChar)};
    if (result.status == kTextMalformedInputErr)
      result.consumedBytes -= std::min(result.consumedBytes, bytesOfLastError());
    // ICU keeps the first bytes of a divided character until the others come.
    if (result.status == noErr && ucnv_toUCountPending(converter_.get(), &status) > 0)
      result.status = kTECPartialCharErr;
    if (result.status == noErr && std::exchange(usedFallbacks_, false)) result.status = kTECUsedFallbacksStatus;
    return result;
  }

  std::size_t bytesOfLastError() {
    char bytes[kLongestSequence];
    std::int8_t length = sizeof bytes;
    UErrorCode status = U_ZERO_ERROR;
    ucnv_getInvalidChars(converter_.get(), bytes, &length, &status);
    return U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0;
  }

  const Converter converter_;
  const bool turns_;
  /// Since the last call that reported it: one that stops before the end of its input does not.
  bool usedFallbacks_ = false;
};

class UTF16ToICU final : public TECConverter {
 public:
  UTF16ToICU(Converter converter, bool turns) : converter_(std::move(converter)), turns_(turns) {
    UErrorCode status = U_ZERO_ERROR;
    isHZ_ = ucnv_getType(converter_.get()) == UCNV_HZ;
    ucnv_setFromUCallBack(converter_.get(), stopAtError, nullptr, nullptr, nullptr, &status);
  }

  TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) override {
    return convert(input, output, false);
  }
  TECResult flushText(std::span<std::uint8_t> output) override {
    if (!isHZ_) return convert({}, output, true);
    if (!closing_) {
      // ICU leaves Chinese open at the end, but closes it before ASCII.
      std::array<std::uint8_t, kLongestSequence> bytes;
      const UChar space = u' ';
      const TECResult result =
          convert({reinterpret_cast<const std::uint8_t *>(&space), sizeof space}, bytes, true);
      if (result.status != noErr) return {result.status, 0, 0};
      closing_.emplace(bytes.begin(), bytes.begin() + result.writtenBytes - 1);
    }
    if (output.size() < closing_->size()) return {kTECOutputBufferFullStatus, 0, 0};
    std::ranges::copy(*closing_, output.begin());
    const std::size_t written = closing_->size();
    closing_.reset();
    return {noErr, 0, written};
  }
  void clearContextInfo() override {
    closing_.reset();
    ucnv_resetFromUnicode(converter_.get());
  }

 private:
  TECResult convert(std::span<const std::uint8_t> input, std::span<std::uint8_t> output, bool flush) {
    const std::size_t count = input.size() / sizeof(UChar);
    const auto *begin = reinterpret_cast<const UChar *>(input.data());
    std::vector<UChar> turned;
    if (turns_) {
      turned.assign(begin, begin + count);
      turnControls(turned, 1);
      begin = turned.data();
    }
    const UChar *source = begin;
    auto *const target = reinterpret_cast<char *>(output.data());
    char *to = target;
    const UErrorCode status = convertRuns<char, UChar>(ucnv_fromUnicode, converter_.get(), to,
                                                       target + output.size(), source, begin + count, flush);
    TECResult result{statusOf(status), static_cast<std::size_t>(source - begin) * sizeof(UChar),
                     static_cast<std::size_t>(to - target)};
    if (result.status == noErr && input.size() % sizeof(UChar) != 0) result.status = kTECPartialCharErr;
    return result;
  }

  const Converter converter_;
  const bool turns_;
  bool isHZ_ = false;
  /// What ends the text, while it waits for room.
  std::optional<std::string> closing_;
};

}  // namespace

std::unique_ptr<TECConverter> makeICUConverter(const char *name, ConversionDirection direction) {
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(ucnv_open(name, &status), &ucnv_close);
  if (U_FAILURE(status)) return nullptr;
  const bool turns = turnsControls(name);
  if (direction == ConversionDirection::toUnicode)
    return std::make_unique<ICUToUTF16>(std::move(converter), turns);
  return std::make_unique<UTF16ToICU>(std::move(converter), turns);
}

}  // namespace nimbo
