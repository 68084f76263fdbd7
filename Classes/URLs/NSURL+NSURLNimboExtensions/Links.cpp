// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Links.hpp"

#include "Classes/URLs/NSURL+NSURLNimboExtensions/Components.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Schemes.hpp"

namespace nimbo {
inline namespace NSURLNimboExtensions {

namespace {

enum FollowMode : std::uint32_t { kNever, kSameHost, kSameFolder, kFolderAndBelow, kAlways };

}  // namespace

bool shouldFollowLink(std::uint32_t mode, std::uint32_t level) {
  if (mode <= kAlways) return mode != kNever;
  return level <= mode - kAlways;
}

bool shouldFollowLink(const NSURL &url, std::uint32_t mode, std::uint32_t level, const NSURL &baseURL) {
  if (!url) return false;
  if (mode == kNever || mode >= kAlways) return shouldFollowLink(mode, level);
  if (!isHostEqualTo(url, baseURL)) return false;
  if (mode == kSameHost) return true;
  const NSString folder = standardizedBaseDirectory(url), baseFolder = standardizedBaseDirectory(baseURL);
  return mode == kSameFolder ? folder == baseFolder : folder.view().starts_with(baseFolder.view());
}

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
