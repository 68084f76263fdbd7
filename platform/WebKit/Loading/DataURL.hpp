// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace nimbo::detail {

/// What a MIME type with parameters says, as "text/html; charset=utf-8".
struct ContentTypeField {
  /// In lower case, without parameters; nil when there is none.
  NSString MIMEType;
  /// The parameter "charset", as it is written; nil when there is none.
  NSString charset;
};

/// Reads the field as servers write it; what is not understood is passed over.
ContentTypeField contentTypeOfField(std::string_view field);

/// What a URL of the scheme "data" holds.
struct DataURL {
  ContentTypeField type;
  NSData data;

  /// Nothing when the URL has another scheme, or no comma.
  static std::optional<DataURL> ofURL(const NSURL &url);
};

}  // namespace nimbo::detail
