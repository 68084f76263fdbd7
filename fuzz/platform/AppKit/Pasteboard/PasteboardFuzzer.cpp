// SPDX-License-Identifier: Apache-2.0
// Bytes as other programs offer them, the first of which is the form: what is read of them is UTF-8, and a
// line.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/AppKit/Pasteboard/PasteboardConversion.hpp"

using namespace nimbo;
using namespace nimbo::detail;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
  constexpr TargetForm kForms[] = {TargetForm::text, TargetForm::latin1, TargetForm::URIList,
                                   TargetForm::URLLine, TargetForm::titleLine};
  if (size == 0) return 0;
  const TargetForm form = kForms[*bytes % std::size(kForms)];
  NSError error;
  const NSData data =
      dataFromTarget({NSString(), NSString(), form}, NSData::dataWithBytes(bytes + 1, size - 1), &error);
  const bool isLine = form != TargetForm::text && form != TargetForm::latin1;
  if (!data) return error && isLine ? 0 : (std::abort(), 0);
  const bool isUTF8 = static_cast<bool>(NSString::stringWithUTF8String(data.view()));
  const bool hasEnd = data.view().find_first_of("\r\n") != std::string_view::npos;
  // A list is not converted.
  if ((!isUTF8 && form != TargetForm::URIList) || (isLine && hasEnd)) std::abort();
  return 0;
}
