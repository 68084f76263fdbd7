// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "importers/Packages/DocumentProperties.hpp"

namespace nimbo {

/// What the head of a page says of it: title, language, author, keywords, description, and the program that
/// made it. Dates in meta tags mean something else on every page.
DocumentProperties propertiesOfPage(const NSString &markup);

}  // namespace nimbo
