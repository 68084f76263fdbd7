// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/FileNames.hpp"

#include <string>
#include <string_view>

#include "platform/AppKit/NSFileWrapper.hpp"
#include "platform/Foundation/NSStringCase.hpp"

namespace nimbo {

namespace {

constexpr std::u16string_view kUnnamed = u"file";
/// The longest extension that is kept when a name is cut.
constexpr std::size_t kMaximumExtension = 32;
/// What a number may need in front of the extension.
constexpr std::size_t kNumberLength = 11;
/// So many units are never too long a name in UTF-8.
constexpr std::size_t kMaximumUnits = NSFileWrapper::kMaximumNameBytes / 3 - kNumberLength;

bool isHighSurrogate(char16_t unit) {
  return (unit & 0xfc00) == 0xd800;
}

bool isLowSurrogate(char16_t unit) {
  return (unit & 0xfc00) == 0xdc00;
}

/// Where the extension begins, with its full stop.
std::size_t extensionOf(std::u16string_view name) {
  const std::size_t dot = name.rfind(u'.');
  return dot == name.npos || dot == 0 || name.size() - dot > kMaximumExtension ? name.size() : dot;
}

/// A name that the system takes, and that leads nowhere.
std::u16string harmless(std::u16string_view preferred) {
  while (!preferred.empty() && preferred.front() <= u' ') preferred.remove_prefix(1);
  while (!preferred.empty() && preferred.back() <= u' ') preferred.remove_suffix(1);
  std::u16string name;
  for (std::size_t i = 0; i < preferred.size(); ++i) {
    const char16_t unit = preferred[i];
    const bool isPair = isHighSurrogate(unit) && i + 1 < preferred.size() && isLowSurrogate(preferred[i + 1]);
    if (isPair) {
      name += unit;
      name += preferred[++i];
    } else {
      name += unit < 0x20 || unit == 0x7f || unit == u'/' || unit == u'\\' || (unit & 0xf800) == 0xd800 ? u'_'
                                                                                                        : unit;
    }
  }
  if (name.empty() || name == u"." || name == u"..") return std::u16string(kUnnamed);
  if (name.size() <= kMaximumUnits) return name;
  const std::u16string extension = name.substr(extensionOf(name));
  name.resize(kMaximumUnits - extension.size());
  if (isHighSurrogate(name.back())) name.pop_back();
  return name + extension;
}

}  // namespace

NSString FileNames::take(const NSString &preferredName) {
  const std::u16string wanted = harmless(preferredName.view());
  NSString name = NSString::stringWithCharacters(wanted);
  const NSString folded = lowercaseString(name);
  if (taken_.insert(folded).second) return name;
  const std::size_t extension = extensionOf(wanted);
  for (std::uint32_t &number = numbers_[folded];;) {
    const std::string digits = std::to_string(++number);
    const std::u16string numbered = wanted.substr(0, extension) + u'-' +
                                    std::u16string(digits.begin(), digits.end()) + wanted.substr(extension);
    name = NSString::stringWithCharacters(numbered);
    if (taken_.insert(lowercaseString(name)).second) return name;
  }
}

}  // namespace nimbo
