// SPDX-License-Identifier: Apache-2.0
#include "helper/HTMLImportOptions.hpp"

#include "Classes/URLs/NSURL+NSURLNimboExtensions/Schemes.hpp"
#include "platform/WebKit/NSAttributedStringHTML.hpp"

namespace nimbo {

NSDictionary HTMLImportOptions(const SharedPointer<WebResourceLoadDelegate> &delegate, const NSURL &baseURL,
                               float timeoutSeconds) {
  NSDictionary options = {{NSUseWebKitDocumentOption, true},
                          {NSTimeoutDocumentOption, timeoutSeconds},
                          {NSWebResourceLoadDelegateDocumentOption, delegate}};
  options.setObject(baseURLForWebKit(baseURL).absoluteString(), NSBaseURLDocumentOption);
  return options;
}

}  // namespace nimbo
