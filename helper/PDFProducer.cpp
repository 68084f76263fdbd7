// SPDX-License-Identifier: Apache-2.0
#include "helper/PDFProducer.hpp"

#include "Classes/Strings/NSString+NSStringTextFinding.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"

namespace nimbo {

bool mayAskImporterForText(const NSDictionary &documentAttributes) {
  if (NSUserDefaults::standardUserDefaults().objectForKey(u"IgnoresPDFProducer"_ns).boolean().value_or(false))
    return true;
  const NSString producer = documentAttributes.objectForKey(u"Producer"_ns).string();
  return !containsSubstring(producer, u"Ghostscript"_ns, false);
}

}  // namespace nimbo
