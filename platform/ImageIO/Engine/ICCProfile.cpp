// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/ICCProfile.hpp"

#include <lcms2.h>

#include <memory>
#include <vector>

#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo::detail {

NSString descriptionOfICCProfile(std::span<const std::uint8_t> profile) {
  const std::unique_ptr<void, decltype(&cmsCloseProfile)> opened(
      cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size())), &cmsCloseProfile);
  if (!opened) return {};
  const auto describe = [&](wchar_t *text, std::size_t length) {
    const auto bytes = static_cast<cmsUInt32Number>(length * sizeof(wchar_t));
    return cmsGetProfileInfo(opened.get(), cmsInfoDescription, "en", "US", text, bytes) / sizeof(wchar_t);
  };
  std::vector<wchar_t> text(describe(nullptr, 0));
  describe(text.data(), text.size());
  NSMutableString string;
  // Each element holds one UTF-16 unit of the profile; a zero ends them.
  for (const wchar_t unit : text) {
    if (unit == 0) break;
    string.appendCharacter(static_cast<unichar>(unit));
  }
  return string.length() > 0 ? std::move(string).string() : NSString();
}

}  // namespace nimbo::detail
