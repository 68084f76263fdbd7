// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSJSONSerialization.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "platform/Foundation/NSArray.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

NSString string(std::string_view text) {
  return exactString(NSString::stringWithUTF8String(text).view());
}

TEST(JSONSerialization, ReadsValues) {
  const std::pair<std::string, id> values[] = {
      {" [1,-2.5,1e2,true,false,null,\"\\u00e9\\n\\\"\\ud800\"] ",
       NSArray{1, -2.5, 100.0, true, false, NSNull(),
               NSString::stringWithCharacters(u"\u00e9\n\"" + std::u16string(1, char16_t{0xd800}))}},
      {"{\"a\":{},\"b\":[],\"a\":1}", NSDictionary{{u"a"_ns, 1}, {u"b"_ns, NSArray::array()}}},
      {"9223372036854775807", std::int64_t{9223372036854775807}},
      {"9223372036854775808", 9223372036854775808.0},
      {"0.5", 0.5},
      {"-0.5E+1", -5.0},
      {"\t\n\r [ \t\n\r1 \t\n\r, 2 ] \t\n\r", NSArray{1, 2}},
      {"\"a b\\\"\\\\\\/\\b\\f\\n\\r\\tz\"", u"a b\"\\/\b\f\n\r\tz"_ns},
      {"\ufeff0", 0}};
  for (const auto &[text, value] : values)
    EXPECT_EQ(NSJSONSerialization::JSONObjectWithString(string(text)), value) << text;
  for (const char *text :
       {"{",   "[1,]",  "{\"a\" 1}", "{a:1}", "01",   "1.",          ".5",         "+1",
        "1e",  "1e999", "--1",       "nul",   "\"",   "\"\n\"",      "\"\\x\"",    "\"\\u12\"",
        "1 2", "'a'",   "[",         "\"\\",  "1.e5", "{a\":1}",     "{\"a\":1,}", "{\"a\":1",
        "[1",  "-",     "-01",       "1-2",   "truE", "\"\\u12g4\"", "\"\\u0041"}) {
    NSError error;
    EXPECT_FALSE(NSJSONSerialization::JSONObjectWithString(string(text), &error)) << text;
    EXPECT_EQ(error.errorCode(), ErrorCode::damaged) << text;
  }
  const auto codeOf = [](const std::string &text) {
    NSError error;
    static_cast<void>(NSJSONSerialization::JSONObjectWithString(string(text), &error));
    return error.errorCode();
  };
  EXPECT_EQ(codeOf(" "), ErrorCode::incomplete);
  const std::string most(NSJSONSerialization::kMaximumDepth + 1, '[');
  EXPECT_EQ(codeOf(most + std::string(most.size(), ']')), ErrorCode::none);
  EXPECT_EQ(codeOf(most + "["), ErrorCode::tooLarge);
}

}  // namespace
}  // namespace nimbo
