// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSURL.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

/// What is known about a URL that somebody wrote: kind, parts, parameters, types of its extension and the forms
/// of its string; what there is none of is left out. A string that is no URL has its forms alone. "URL", the
/// URL, "Repaired", what it was meant to be, and with a base "Resolved", where it leads to from there, are
/// null when there is none. With `isMarkup` the string is a link as markup has it, with its references.
NSDictionary reportOnURL(const NSString &string, const NSURL &base, Flag isMarkup);

}  // namespace nimbo
