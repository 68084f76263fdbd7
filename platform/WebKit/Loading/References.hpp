// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/Foundation/NSURL.hpp"

namespace nimbo::detail {

/// What a reference in a page means, as browsers read it: white space around it and line breaks in it are
/// dropped, backslashes are slashes, what no URL may have is escaped as UTF-8, and the host is written in
/// ASCII. Absolute, unless the base is nil. Nil when it is no URL even so, and for nothing but white space.
NSURL URLOfReference(std::u16string_view reference, const NSURL &base);

}  // namespace nimbo::detail
