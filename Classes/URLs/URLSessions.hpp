// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace nimbo {

/// Whether a parameter "name=value" names the session of a visitor, by Classes/URLs/URLParameters.tsv. A name
/// that sites also use for other things, as "sid" or "session", does so only when the value looks like an
/// identifier that a machine made: a UUID, or many letters and digits in a mixture.
bool isSessionParameter(std::u16string_view parameter);

}  // namespace nimbo
