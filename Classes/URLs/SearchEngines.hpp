// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// Whether a host is that of a search engine, by SearchEngines.tsv, and the path, with its escapes, not that of
/// one of its pages with content of its own. Case matters in the path only; "www." in front of the host and a
/// full stop at its end do not. False when the host is nil.
bool isSearchEngineHostAndPath(const NSString &host, const NSString &escapedPath);

}  // namespace nimbo
