// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// Whether the metadata importers may be asked for the text of a PDF with these document attributes. Not when
/// "Producer" contains "Ghostscript" in any case, unless the user default "IgnoresPDFProducer" is true.
bool mayAskImporterForText(const NSDictionary &documentAttributes);

}  // namespace nimbo
