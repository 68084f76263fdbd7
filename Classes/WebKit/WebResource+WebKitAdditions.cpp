// SPDX-License-Identifier: Apache-2.0
#include "Classes/WebKit/WebResource+WebKitAdditions.hpp"

#include "Classes/Encodings/NSString+XmlExtensions+Encoding.hpp"
#include "Classes/URLs/NSString+URLUtilities/Kinds.hpp"

namespace nimbo {
inline namespace WebKitAdditions {

NSString documentSource(const WebResource &resource) {
  if (!isMarkupMIMEType(resource.MIMEType())) return NSString();
  return stringWithMarkupData(resource.data(), resource.textEncodingName(), NSISOLatin1StringEncoding,
                              resource.URL().absoluteString());
}

}  // namespace WebKitAdditions
}  // namespace nimbo
