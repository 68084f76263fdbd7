// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSDataBase64.hpp"

#include <glib.h>

#include <memory>
#include <string>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

constexpr std::size_t kGroupBytes = 3;
constexpr std::size_t kGroupCharacters = 4;

constexpr bool isBase64(unichar c) {
  return isASCIIAlphanumeric(c) || c == u'+' || c == u'/';
}

}  // namespace

NSString base64EncodedString(const NSData &data) {
  if (!data || data.length() > NSNotFound / kGroupCharacters * kGroupBytes) return NSString();
  if (data.length() == 0) return NSString::string();
  const std::unique_ptr<gchar, decltype(&g_free)> text(g_base64_encode(data.bytes(), data.length()), g_free);
  return NSString::stringWithUTF8String(text.get());
}

NSData dataWithBase64EncodedString(const NSString &string) {
  if (!string) return NSData();
  std::string text;
  text.reserve(string.length() + kGroupCharacters);
  for (const unichar c : string.view().substr(0, string.view().find(u'=')))
    if (isBase64(c)) text.push_back(static_cast<char>(c));
  if (text.size() % kGroupCharacters == 1) text.pop_back();
  if (text.empty()) return NSData::data();
  while (text.size() % kGroupCharacters != 0) text.push_back('=');
  gsize length = 0;
  const guchar *const bytes = g_base64_decode_inplace(text.data(), &length);
  return NSData::dataWithBytes(bytes, length);
}

}  // namespace nimbo
