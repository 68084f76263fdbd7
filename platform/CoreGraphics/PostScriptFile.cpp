// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreGraphics/PostScriptFile.hpp"

#include <cstdint>

namespace nimbo {
namespace {

constexpr std::string_view kTableOfParts = "\xc5\xd0\xd3\xc6";

std::uint32_t littleEndian(std::string_view bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) value = value << 8 | static_cast<std::uint8_t>(bytes[offset + i]);
  return value;
}

}  // namespace

std::string_view postScriptPart(std::string_view file) {
  constexpr std::size_t kOffset = 4, kLength = 8, kTableBytes = 12;
  if (!file.starts_with(kTableOfParts)) return file;
  if (file.size() < kTableBytes) return {};
  const std::uint32_t start = littleEndian(file, kOffset);
  return start <= file.size() ? file.substr(start, littleEndian(file, kLength)) : std::string_view();
}

std::string_view firstLineOfPostScript(std::string_view postScript) {
  constexpr std::string_view kMark = "%!", kPrinterOrders = "\x1b%-12345X";
  const std::size_t beginning = postScript.starts_with(kPrinterOrders)
                                    ? postScript.substr(0, kPostScriptHeadBytes).find(kMark)
                                    : postScript.find_first_not_of("\x04\t\n\f\r ");
  if (beginning == std::string_view::npos) return {};
  const std::string_view line = postScript.substr(beginning);
  return line.starts_with(kMark) ? line.substr(0, line.find_first_of("\r\n")) : std::string_view();
}

bool isPostScriptFile(std::string_view bytes) {
  return bytes.starts_with(kTableOfParts) || !firstLineOfPostScript(bytes).empty();
}

bool isFirstLineOfEPS(std::string_view line) {
  return line.find(" EPSF-") != std::string_view::npos;
}

}  // namespace nimbo
