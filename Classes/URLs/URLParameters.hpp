// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace nimbo {

/// The kinds of Classes/URLs/URLParameters.tsv, as they are written there.
enum class URLNameKind { analytics, session, index };

/// Whether the table has the name under this kind, for all hosts or for this one or one above it; the case of
/// ASCII letters does not matter.
bool isURLNameOfKind(std::u16string_view name, URLNameKind kind, std::u16string_view host = {});

}  // namespace nimbo
