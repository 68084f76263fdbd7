// SPDX-License-Identifier: Apache-2.0
//
//     endOfScriptText(u"a<!--<script></script>--></script>", 0);  // 25
#pragma once

#include <cstddef>
#include <string_view>

namespace nimbo {

/// Where the text of a script ends that begins at `start`: at the "<" of its end tag, or with the page. In a
/// comment, a script within the script has an end tag of its own. Any thread may call this.
std::size_t endOfScriptText(std::u16string_view page, std::size_t start);

}  // namespace nimbo
