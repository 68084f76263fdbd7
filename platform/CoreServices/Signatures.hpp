// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace nimbo {

/// Whether the text begins with the header of a mail, whichever field comes first: nothing but header fields up
/// to an empty line (or the end of what is there), two of them fields that mails have. The databases know a few
/// first fields only.
bool beginsLikeMail(std::string_view head);

/// Whether a text begins with a letter, a digit, a quotation mark, or with a number sign as headings and
/// remarks do. Neither markup does nor data, and what the databases take such a text for is mostly wrong.
bool beginsLikeProse(std::string_view text);

}  // namespace nimbo
