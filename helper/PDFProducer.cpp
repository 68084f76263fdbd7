// SPDX-License-Identifier: Apache-2.0
#include "helper/PDFProducer.hpp"

#include <algorithm>
#include <string_view>

#include "platform/Foundation/NSUserDefaults.hpp"

namespace nimbo {
namespace {

constexpr std::u16string_view kGhostscript = u"ghostscript";

constexpr unichar lowercaseAscii(unichar unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<unichar>(unit + (u'a' - u'A')) : unit;
}

}  // namespace

bool mayAskImporterForText(const NSDictionary &documentAttributes) {
  if (NSUserDefaults::standardUserDefaults().objectForKey(u"IgnoresPDFProducer"_ns).boolean().value_or(false))
    return true;
  const NSString producer = documentAttributes.objectForKey(u"Producer"_ns).string();
  const std::u16string_view text = producer.view();
  const auto found = std::search(text.begin(), text.end(), kGhostscript.begin(), kGhostscript.end(),
                                 [](unichar unit, unichar letter) { return lowercaseAscii(unit) == letter; });
  return text.empty() || found == text.end();
}

}  // namespace nimbo
