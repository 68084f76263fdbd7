// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/Documents/FlatOpenDocument.hpp"

namespace nimbo {

/// A document; the reader goes by the usual prefixes, so that no name space need be declared.
inline std::string flat(const std::string &body, const std::string &styles = "", const char *kind = "text") {
  const std::string element = std::string("office:") + kind;
  return "<office:document><office:automatic-styles>" + styles + "</office:automatic-styles><office:body><" +
         element + ">" + body + "</" + element + "></office:body></office:document>";
}

inline NSAttributedString read(const std::string &xml, NSError *error = nullptr) {
  return attributedStringWithFlatOpenDocument(NSData::dataWithBytes(xml.data(), xml.size()), nullptr, error);
}

inline std::string plain(const std::string &xml) {
  const NSAttributedString text = read(xml);
  return text ? text.string().UTF8String() : "nil";
}

}  // namespace nimbo
