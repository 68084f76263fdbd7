// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSURL.hpp"
#include "platform/Foundation/id.hpp"
#include "platform/WebKit/WebResourceLoadDelegate.hpp"

namespace nimbo {

/// How long a page waits for its parts.
inline constexpr float kHTMLImportTimeoutSeconds = 15;

/// The options for `initWithHTML`: "UseWebKit", "Timeout", "WebResourceLoadDelegate" unless the delegate is
/// null, and "BaseURL" unless the web engine has no use for the URL.
NSDictionary HTMLImportOptions(const SharedPointer<WebResourceLoadDelegate> &delegate, const NSURL &baseURL,
                               float timeoutSeconds = kHTMLImportTimeoutSeconds);

}  // namespace nimbo
