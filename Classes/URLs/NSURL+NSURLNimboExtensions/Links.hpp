// SPDX-License-Identifier: Apache-2.0
//
// Whether someone who walks through pages follows a link. The modes: 0 never; 1 on the same host; 2 in the
// same folder; 3 in the same folder and those inside it; 4 always; above that as long as the level, the number
// of links that led to the page, is at most mode - 4. Any thread may ask.
//
//     const NSURL base = NSURL::URLWithString(u"http://example.org/a/"_ns);
//     shouldFollowLink(NSURL::URLWithString(u"http://example.org/b/"_ns), 1, 0, base);  // true
//     shouldFollowLink(6, 3);  // false
#pragma once

#include <cstdint>

#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSURLNimboExtensions {

/// Whether a link is followed of which is not known where it leads: true for the modes 1 to 4.
bool shouldFollowLink(std::uint32_t mode, std::uint32_t level);
/// Whether the link to `url` is followed from `baseURL`. Hosts are compared by `isHostEqualTo`, folders by
/// `standardizedBaseDirectory` with regard to case.
bool shouldFollowLink(const NSURL &url, std::uint32_t mode, std::uint32_t level, const NSURL &baseURL);

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
