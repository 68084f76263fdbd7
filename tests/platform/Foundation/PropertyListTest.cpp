// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Foundation/NSObject.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"

namespace nimbo {
namespace {

using enum NSPropertyListFormat;
using PropertyList = NSPropertyListSerialization;
using namespace std::string_literals;
using namespace std::string_view_literals;

NSData dataOf(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

/// Reads `bytes` and expects them to be in `expected` form.
id readAs(NSPropertyListFormat expected, std::string_view bytes) {
  NSPropertyListFormat format{};
  NSError error;
  id result = PropertyList::propertyListFromData(dataOf(bytes), &format, &error);
  EXPECT_TRUE(result) << error.localizedFailureReason.UTF8String() << "\n" << bytes;
  EXPECT_TRUE(!result || format == expected) << bytes;
  return result;
}

/// The reason why `bytes` are no property list.
std::string refusal(std::string_view bytes) {
  NSError error;
  EXPECT_FALSE(PropertyList::propertyListFromData(dataOf(bytes), nullptr, &error)) << bytes;
  const std::string reason = error.localizedFailureReason.UTF8String();
  EXPECT_EQ(reason.find('\n'), std::string::npos);
  const bool isTooLarge = reason == "nested too deeply" || reason == "too many values";
  EXPECT_EQ(error.errorCode(), isTooLarge ? ErrorCode::tooLarge : ErrorCode::damaged) << reason;
  return reason;
}

std::string refusalToWrite(const id &value, NSPropertyListFormat format) {
  NSError error;
  EXPECT_FALSE(PropertyList::dataWithPropertyList(value, format, &error));
  return error.localizedFailureReason.UTF8String();
}

id roundTrip(const id &value, NSPropertyListFormat format) {
  NSError error;
  const NSData data = PropertyList::dataWithPropertyList(value, format, &error);
  EXPECT_TRUE(data) << error.localizedFailureReason.UTF8String();
  return readAs(format, data.view());
}

id nested(std::uint32_t depth, id value) {
  for (std::uint32_t i = 0; i < depth; ++i)
    value = i % 2 ? id(NSArray{value}) : id(NSDictionary{{u"k"_ns, value}});
  return value;
}

/// A binary property list of these objects, object 0 on top, with offsets and references of one byte.
std::string binaryOf(const std::vector<std::string> &objects) {
  std::string bytes = "bplist00", table;
  for (const auto &object : objects) {
    table += static_cast<char>(bytes.size());
    bytes += object;
  }
  const auto tableOffset = static_cast<char>(bytes.size());
  const auto count = static_cast<char>(objects.size());
  return bytes + table + "\0\0\0\0\0\0\1\1"s + "\0\0\0\0\0\0\0"s + count + std::string(8, '\0') +
         "\0\0\0\0\0\0\0"s + tableOffset;
}

std::string xmlOf(const std::string &content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + content + "</plist>";
}

TEST(PropertyList, ValuesAtTheEdgesSurviveBothWays) {
  const double infinity = std::numeric_limits<double>::infinity();
  const id all = NSArray{infinity,      -infinity,
                         NSDate{-3600}, u"& < > \" ' ]]> \t\n\r \U0001f600 \u00e9"_ns,
                         u"  "_ns,      nested(PropertyList::kMaximumDepth - 2, 1)};
  for (const auto format : {binary, xml}) {
    EXPECT_EQ(roundTrip(all, format), all);
    EXPECT_TRUE(std::isnan(*roundTrip(std::nan(""), format).real()));
  }
}

TEST(PropertyList, OnlyTheBinaryFormHoldsEveryUnit) {
  const NSString every = NSString::stringWithCharacters(u"a\0\x1f\xd800\xffff\xdc00z"_ns.view());
  EXPECT_EQ(roundTrip(NSDictionary{{every, every}}, binary), id(NSDictionary{{every, every}}));
  EXPECT_EQ(roundTrip(every, xml).string(), u"a\ufffd\ufffd\ufffd\ufffd\ufffdz"_ns);
  EXPECT_TRUE(roundTrip(NSArray{NSNull()}, binary).array()[0].isNull());
  EXPECT_EQ(refusalToWrite(NSArray{NSNull()}, xml), "XML cannot hold null");
  EXPECT_EQ(roundTrip(NSDate{0.75}, binary).date(), NSDate{0.75});
  EXPECT_EQ(roundTrip(NSDate{-0.25}, xml).date(), NSDate{-1});
}

TEST(PropertyList, RefusesToWriteWhatCannotBeRead) {
  id doubled = 1;
  for (int i = 0; i < 40; ++i) doubled = NSArray{doubled, doubled};
  const id object = makeShared<NSObject>();
  for (const auto format : {binary, xml}) {
    for (const id &value : {object, id(NSArray{1, object}), id(NSDictionary{{u"k"_ns, object}})})
      EXPECT_EQ(refusalToWrite(value, format), "an object is no property list");
    EXPECT_EQ(refusalToWrite(id(), format), "nil is no property list");
    EXPECT_EQ(refusalToWrite(NSArray{1, id()}, format), "nil is no property list");
    EXPECT_EQ(refusalToWrite(nested(PropertyList::kMaximumDepth + 1, 1), format), "nested too deeply");
    EXPECT_EQ(refusalToWrite(doubled, format), "too many values");
  }
  EXPECT_EQ(refusalToWrite(NSDate{1e12}, xml), "a date outside the years 0 to 9999");
  for (const id &value : {id(1), object})
    EXPECT_EQ(refusalToWrite(value, openStep), "the old-style form is not written");
}

TEST(PropertyList, KeysCountAsValues) {
  // The list, the dictionaries, and the key and the value of each.
  constexpr std::uint32_t kDictionaries = (PropertyList::kMaximumObjects - 1) / 3;
  static_assert(1 + 3 * kDictionaries == PropertyList::kMaximumObjects);
  std::vector<id> most(kDictionaries, NSDictionary{{u"k"_ns, 1}});
  std::vector<id> more = most;
  more.emplace_back(1);
  const id whole = NSArray(std::move(most)), tooMuch = NSArray(std::move(more));
  for (const auto format : {binary, xml}) {
    EXPECT_TRUE(PropertyList::dataWithPropertyList(whole, format));
    EXPECT_EQ(refusalToWrite(tooMuch, format), "too many values");
  }
}

TEST(BinaryPropertyList, WritesNumbersInTheFewestBytes) {
  const std::pair<std::int64_t, std::string_view> cases[] = {
      {0, "\x10\0"sv},
      {0xff, "\x10\xff"},
      {0x100, "\x11\1\0"sv},
      {0xffff, "\x11\xff\xff"},
      {0x10000, "\x12\0\1\0\0"sv},
      {0xffffffff, "\x12\xff\xff\xff\xff"},
      {0x100000000, "\x13\0\0\0\1\0\0\0\0"sv},
      {-1, "\x13\xff\xff\xff\xff\xff\xff\xff\xff"},
  };
  for (const auto &[number, object] : cases)
    EXPECT_EQ(PropertyList::dataWithPropertyList(number, binary).view(), binaryOf({std::string(object)}))
        << number;
  // The count of a string stands in its marker, or behind it.
  EXPECT_EQ(PropertyList::dataWithPropertyList(u"14 characters."_ns, binary).view(),
            binaryOf({"\x5e"s + "14 characters."}));
  EXPECT_EQ(PropertyList::dataWithPropertyList(u"15 characters.."_ns, binary).view(),
            binaryOf({"\x5f\x10\x0f"s + "15 characters.."}));
}

TEST(XMLPropertyList, BreaksDataIntoLines) {
  // To column 76, tabs being 8 wide, but of 16 characters at least.
  const std::pair<std::uint32_t, std::size_t> cases[] = {{0, 76}, {1, 68}, {7, 20}, {8, 16}, {9, 16}, {20, 16}};
  for (const auto &[depth, length] : cases) {
    id value = dataOf(std::string(length / 4 * 3 * 2, '\0') + '\0');
    for (std::uint32_t i = 0; i < depth; ++i) value = NSArray{value};
    const std::string tabs(depth, '\t'),
        line = tabs + std::string(length, 'A') + "\n",
        lines = tabs + "<data>\n" + line + line + tabs + "AA==\n" + tabs + "</data>\n";
    EXPECT_NE(PropertyList::dataWithPropertyList(value, xml).view().find(lines), std::string_view::npos)
        << depth;
  }
}

TEST(BinaryPropertyList, DataSharesTheStorage) {
  const NSData message = PropertyList::dataWithPropertyList(NSArray{dataOf("payload")}, binary);
  const NSData payload = PropertyList::propertyListFromData(message).array()[0].data();
  EXPECT_EQ(payload.view(), "payload");
  EXPECT_EQ(payload.bytes(), message.bytes() + message.view().find("payload"));
}

TEST(BinaryPropertyList, ReadsWhatOthersWrite) {
  const std::string zeros(8, '\0'), ones(8, '\xff');
  EXPECT_EQ(readAs(binary, binaryOf({"\x22\x3f\x80\x00\x00"s})), id(1.0));
  EXPECT_EQ(readAs(binary, binaryOf({"\x11\xff\xfe"s})), id(0xfffe));
  EXPECT_EQ(readAs(binary, binaryOf({"\x14" + zeros + zeros})), id(0));
  EXPECT_EQ(readAs(binary, binaryOf({"\x14" + ones + ones})), id(-1));
  const id shared = readAs(binary, binaryOf({"\xa3\1\1\2"s, "\xa1\2"s, "\x51s"s}));
  EXPECT_EQ(shared, id(NSArray{NSArray{u"s"_ns}, NSArray{u"s"_ns}, u"s"_ns}));
}

TEST(BinaryPropertyList, RefusesHostileInput) {
  const std::string ones(8, '\xff');
  const std::string good = binaryOf({"\xa2\1\1"s, "\x51s"s});
  const auto patched = [&](std::size_t fromEnd, const std::string &bytes) {
    return std::string(good).replace(good.size() - fromEnd, bytes.size(), bytes);
  };
  const std::string tooShort = "too short for a binary property list",
                    sizes = "impossible offset or reference size",
                    offset = "an object's offset is outside the data",
                    beyond = "an object goes beyond the data";
  std::vector<std::string> unfolding;
  for (int i = 1; i < 40; ++i) unfolding.push_back("\xa2"s + char(i) + char(i));
  unfolding.push_back("\x09");
  for (const auto &[bytes, reason] : std::vector<std::pair<std::string, std::string>>{
           {good.substr(0, 40), tooShort},
           {patched(26, "\0"s), sizes},
           {patched(26, "\x9"), sizes},
           {patched(25, "\0"s), sizes},
           {patched(25, "\x9"), sizes},
           {patched(24, ones), "more objects than the offset table holds"},
           {patched(16, ones), "a reference to an object that is not there"},
           {patched(8, ones), "the offset table is outside the data"},
           {patched(8, std::string(8, '\0')), "the offset table is outside the data"},
           {patched(34, "\x7"), offset},
           {patched(33, "\x10"), offset},
           {binaryOf({"\xa1\5"s}), "a reference to an object that is not there"},
           {binaryOf({"\xa1\0"s}), "nested too deeply"},
           {binaryOf({"\xd1\1\0"s, "\x51k"s}), "nested too deeply"},
           {binaryOf({"\xd1\1\1"s, "\x08"s}), "a dictionary key that is no string"},
           {binaryOf(unfolding), "too many values"},
           {binaryOf({"\xaf\x13" + ones}), "too many values"},
           {binaryOf({"\xdf\x12\0\x10\0\0"s}), beyond},
           {binaryOf({"\xaf\x14" + ones + ones}), "a count that is no integer"},
           {binaryOf({"\xaf\0\0"s}), "a count that is no integer"},
           {binaryOf({"\x4f\x13" + ones}), beyond},
           {binaryOf({"\x5f\x13" + ones}), beyond},
           {binaryOf({"\x6f\x13\x80\0\0\0\0\0\0\1"s}), beyond},
           {binaryOf({"\x62xyz"s}), beyond},
           {binaryOf({"\xa3\1\2\3"s, "\x5a"s, "\x59"s,
                      "\x58"
                      "1234567890"s}),
            "objects overlap"},
           {binaryOf({"\x51\x80"s}), "an ASCII string that is not ASCII"},
           {binaryOf({"\x72xy"s}), "an object of an unknown kind"},
           {binaryOf({"\x80\1"s}), "UID objects are not supported"},
           {binaryOf({"\x14\0\0\0\0\0\0\0\0"s + ones}), "integer out of range"},
           {binaryOf({"\x15" + ones + ones + ones + ones}), "an integer of an unknown size"},
       })
    EXPECT_EQ(refusal(bytes), reason) << testing::PrintToString(bytes);
}

TEST(BinaryPropertyList, TruncatedOrDamagedAnywhereNeverCrashes) {
  const NSData data = PropertyList::dataWithPropertyList(
      NSDictionary{{u"text"_ns, u"\u20acuro"_ns}, {u"list"_ns, NSArray{1, 2.5, NSDate{1}, dataOf("abc")}}},
      binary);
  for (std::size_t length = 8; length < data.length(); ++length) {
    EXPECT_FALSE(PropertyList::propertyListFromData(dataOf(data.view().substr(0, length)))) << length;
    for (const int change : {0x01, 0x10, 0x80, 0xff}) {
      std::string damaged(data.view());
      damaged[length] = static_cast<char>(damaged[length] ^ change);
      const id result = PropertyList::propertyListFromData(dataOf(damaged));
      EXPECT_TRUE(!result || PropertyList::dataWithPropertyList(result, binary));
    }
  }
}

TEST(BinaryPropertyList, HasALimitOfObjects) {
  const auto listOf = [](std::uint32_t objects) {
    std::string count;
    for (const int shift : {24, 16, 8, 0}) count += static_cast<char>(objects >> shift);
    return "bplist00\x09" + std::string(objects, '\x08') + "\0\0\0\0\0\0\1\4\0\0\0\0"s + count +
           std::string(15, '\0') + '\x09';
  };
  EXPECT_EQ(PropertyList::propertyListFromData(dataOf(listOf(PropertyList::kMaximumObjects))), id(true));
  NSError error;
  EXPECT_FALSE(
      PropertyList::propertyListFromData(dataOf(listOf(PropertyList::kMaximumObjects + 1)), nullptr, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
}

TEST(XMLPropertyList, ReadsEveryNotation) {
  std::string utf16 = "\xff\xfe";
  for (const char c : "<plist><true/></plist>"s) utf16 += {c, '\0'};
  for (const auto &[bytes, value] : std::vector<std::pair<std::string, id>>{
           {xmlOf("<integer>&#13;\t -0x10\n</integer>"), -16},
           {xmlOf("<integer>+0X1f</integer>"), 31},
           {xmlOf("<integer>-9223372036854775808</integer>"), INT64_MIN},
           {xmlOf("<real>+1e3</real>"), 1000.0},
           {xmlOf("<date>2001-01-01T00:00:01.5Z</date>"), NSDate{1.5}},
           {xmlOf("<date>2000-12-31T23:59:60Z</date>"), NSDate{0}},
           {xmlOf("<data>\n\t YW\tJj\n\tZA=&#13;= </data>"), dataOf("abcd")},
           {xmlOf("<data/>"), NSData::data()},
           {xmlOf("<string>a<![CDATA[<b>&amp;]]>&#x20ac;<!-- no -->\r\nc</string>"), u"a<b>&amp;\u20ac\nc"_ns},
           {xmlOf("<string/>"), NSString::string()},
           {xmlOf("<!-- c --><dict> <key>k</key> <array> </array> </dict>"),
            NSDictionary{{u"k"_ns, NSArray::array()}}},
           {"\xef\xbb\xbf \n<!DOCTYPE plist [<!ENTITY e \"x\">]><plist><string>&e;</string></plist>",
            u"&e;"_ns},
           {"<plist><true/></plist>", true},
           {utf16, true},
       })
    EXPECT_EQ(readAs(xml, bytes), value) << bytes;
}

TEST(XMLPropertyList, RefusesBadInput) {
  std::string deep;
  for (std::uint32_t i = 0; i < 20 * PropertyList::kMaximumDepth; ++i) deep += "<array>";
  for (const auto &[bytes, reason] : std::vector<std::pair<std::string, std::string>>{
           {"<?xml version=\"1.0\"?>\n<dict/>", "line 2: no plist element"},
           {xmlOf(""), "line 2: an empty plist"},
           {xmlOf("\n<true/>\n<true/>"), "line 4: more than one value"},
           {xmlOf("<dict><key>a</key></dict>"), "line 2: a key without a value"},
           {xmlOf("<dict><true/></dict>"), "line 2: a value without a key"},
           {xmlOf("<array>x<true/></array>"), "line 2: text outside of a value"},
           {xmlOf("<set/>"), "line 2: an unknown element"},
           {xmlOf("<string>a<true/></string>"), "line 2: an element inside of text"},
           {xmlOf("<string>\xff</string>"), "line 2: invalid UTF-8"},
           {xmlOf("<integer>9223372036854775808</integer>"), "line 2: integer out of range"},
           {xmlOf("<integer>-9223372036854775809</integer>"), "line 2: integer out of range"},
           {xmlOf("<integer>18446744073709551616</integer>"), "line 2: integer out of range"},
           {xmlOf("<integer>-</integer>"), "line 2: not an integer"},
           {xmlOf("<integer>0x</integer>"), "line 2: not an integer"},
           {xmlOf("<real>1,5</real>"), "line 2: not a real"},
           {xmlOf("<real/>"), "line 2: not a real"},
           {xmlOf("<date>-001-02-28T00:00:00Z</date>"), "line 2: not a date"},
           {xmlOf("<date>2001-x2-28T00:00:00Z</date>"), "line 2: not a date"},
           {xmlOf("<date>2001-02--8T00:00:00Z</date>"), "line 2: not a date"},
           {xmlOf("<date>2001-02-28 00:00:00Z</date>"), "line 2: not a date"},
           {xmlOf("<date>2001-02-28T-1:00:00Z</date>"), "line 2: not a date"},
           {xmlOf("<date>2001-02-28T00:60:00Z</date>"), "line 2: not a date"},
           {xmlOf("<date>2001-02-28T00:00:61Z</date>"), "line 2: not a date"},
           {xmlOf("<date>2001-02-29T00:00:00Z</date>"), "line 2: not a date"},
           {xmlOf("<date>2001-02-28T24:00:00Z</date>"), "line 2: not a date"},
           {xmlOf("<date>2001-02-28T00:00:00</date>"), "line 2: not a date"},
           {xmlOf("<date>2001-02-28T00:00:00,5Z</date>"), "line 2: not a date"},
           {xmlOf("<date>2001-02-28T00:00:00.Z</date>"), "line 2: not a date"},
           {xmlOf("<date>2001-02-28T00:00:00.5eZ</date>"), "line 2: not a date"},
           {xmlOf("<data>YWJ</data>"), "line 2: not base64"},
           {xmlOf("<data>YWI=YWI=</data>"), "line 2: not base64"},
           {xmlOf("<data>Y===</data>"), "line 2: not base64"},
           {"<plist>" + deep, "line 1: Start-end tags mismatch"},
       })
    EXPECT_EQ(refusal(bytes), reason) << bytes;
  for (std::uint32_t i = 0; i < 20 * PropertyList::kMaximumDepth; ++i) deep += "</array>";
  EXPECT_EQ(refusal(xmlOf(deep)), "nested too deeply");
  EXPECT_EQ(refusal("<?xml" + std::string(2 * PropertyList::kMaximumObjects, '<')), "too many values");
}

TEST(TextPropertyList, ReadsEveryNotation) {
  const id list = readAs(openStep, R"(// importers
(
    "/Library/Spot light/A.mdimporter",
    /System/B-1_2.mdimporter, 'it"s' /* ) */,
    { bare = 12.5; "a b" = (); empty = {}; }, < 0fbd 7 7 >,<>,
)  // end)");
  EXPECT_EQ(list,
            id(NSArray{u"/Library/Spot light/A.mdimporter"_ns, u"/System/B-1_2.mdimporter"_ns, u"it\"s"_ns,
                       NSDictionary{{u"bare"_ns, u"12.5"_ns},
                                    {u"a b"_ns, NSArray::array()},
                                    {u"empty"_ns, NSDictionary::dictionary()}},
                       dataOf("\x0f\xbd\x77"), NSData::data()}));
  EXPECT_EQ(readAs(openStep, R"("\n\t\r\a\b\f\v\\\"\'\101\3514\0\U20ac\ud83d\q\Ud83d" )").string(),
            NSString::stringWithCharacters(u"\n\t\r\a\b\f\v\\\"'A\u00e9"
                                           u"4\0\u20acud83dq\xd83d"_ns.view()));
  EXPECT_EQ(readAs(openStep, "\xef\xbb\xbf\"\xe2\x82\xac\n//\"").string(), u"\u20ac\n//"_ns);
  EXPECT_EQ(readAs(openStep, "http://host/path").string(), u"http://host/path"_ns);
  EXPECT_EQ(readAs(openStep, "/**/a /***/").string(), u"a"_ns);
  EXPECT_EQ(readAs(openStep, "_$+/:.-azAZ09").string(), u"_$+/:.-azAZ09"_ns);
  EXPECT_EQ(readAs(openStep, "(a\xe2\x80\xa8,\xe2\x80\xa9\t\v\f\r b)"), id(NSArray{u"a"_ns, u"b"_ns}));
  EXPECT_EQ(readAs(openStep, "'\\8\\9\\377'").string(), u"89\u00ff"_ns);
  EXPECT_EQ(readAs(openStep, "// A table\na = b; \"c\" = ();\n"),
            id(NSDictionary{{u"a"_ns, u"b"_ns}, {u"c"_ns, NSArray::array()}}));
  EXPECT_EQ(readAs(openStep,
                   "\xff\xfe<\0"
                   "4\0"
                   "1\0"
                   ">\0"s),
            id(dataOf("A")));
}

TEST(TextPropertyList, HasALimitOfValues) {
  // The list, and the key, the value and its element of each pair.
  constexpr std::uint32_t kPairs = (PropertyList::kMaximumObjects - 1) / 3;
  static_assert(1 + 3 * kPairs == PropertyList::kMaximumObjects);
  std::string text = "{";
  for (std::uint32_t i = 1; i < kPairs; ++i) text += "a=(b);";
  EXPECT_EQ(readAs(openStep, text + "a=(b);}"), id(NSDictionary{{u"a"_ns, NSArray{u"b"_ns}}}));
  EXPECT_EQ(refusal(text + "a=(b,b);}"), "too many values");
}

TEST(TextPropertyList, RefusalsNameTheLine) {
  const std::string deep(PropertyList::kMaximumDepth + 1, '(');
  for (const auto &[bytes, reason] : std::vector<std::pair<std::string, std::string>>{
           {"\n  // only\n", "line 3: unexpected end"},
           {"(a\n b)", "line 2: expected ',' or ')' in an array"},
           {"(a,,b)", "line 1: unexpected character"},
           {"{a\n; }", "line 2: expected '=' after a key"},
           {"{a=b}", "line 1: expected ';' after a value"},
           {"a = b;\nc", "line 2: expected '=' after a key"},
           {"a\nb", "line 2: more text after the property list"},
           {"\n\"a\\\"", "line 2: a string without an end"},
           {"\"\\", "line 1: a string without an end"},
           {"\"\\Ug\"", "line 1: an escape without digits"},
           {"\"\\400\"", "line 1: an octal escape out of range"},
           {"<0f0>", "line 1: expected pairs of hexadecimal digits and '>' in data"},
           {"/* a", "line 1: a comment without an end"},
           {"\n(a,\n\xc0)", "line 3: invalid UTF-8"},
           {"\xff\xfe", "line 1: unexpected end"},
           {deep, "nested too deeply"},
       })
    EXPECT_EQ(refusal(bytes), reason) << bytes;
}

TEST(PropertyList, NothingIsIncomplete) {
  for (const NSData &nothing : {NSData(), NSData::data()}) {
    NSError error;
    EXPECT_FALSE(PropertyList::propertyListFromData(nothing, nullptr, &error));
    EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
  }
  NSError error;
  EXPECT_FALSE(PropertyList::dataWithPropertyList(NSNull(), xml, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::other);
}

}  // namespace
}  // namespace nimbo
