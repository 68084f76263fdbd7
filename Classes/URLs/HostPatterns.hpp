// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace nimbo {

/// Whether the host is the one that a table names; a "*" at the name's end stands for "com" and for the domain
/// of any country, as "de", "co.uk" and "com.br". The name is in small letters, the case of the host does not
/// matter, nor does a full stop at its end.
bool isHostOfPattern(std::u16string_view host, std::string_view pattern);

/// The same for the host and all hosts below it.
bool isHostOfPatternOrBelow(std::u16string_view host, std::string_view pattern);

}  // namespace nimbo
