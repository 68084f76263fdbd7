// SPDX-License-Identifier: Apache-2.0
//
// Pages to strings, beside ICU's conversion from the encoding that they are in, as if that were known.
//
//   bench-decoding [ROUNDS]

#include <unicode/ucnv.h>

#include <memory>
#include <string>

#include "Classes/Encodings/MarkupDecoding.hpp"
#include "bench/Compare.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"

namespace {

using namespace nimbo;

struct Sample {
  const char *name;
  NSString line;
  NSStringEncoding encoding;
  /// The name in ICU; what the page declares when `isDeclared`.
  const char *charset;
  bool isDeclared;
};

constexpr int kLines = 5000;

std::uint64_t unitsByICU(const std::string &bytes, const char *charset) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(charset, &status), &ucnv_close);
  std::u16string units(bytes.size(), u'\0');
  const std::int32_t length =
      ucnv_toUChars(converter.get(), units.data(), static_cast<std::int32_t>(units.size()), bytes.data(),
                    static_cast<std::int32_t>(bytes.size()), &status);
  return U_SUCCESS(status) ? static_cast<std::uint64_t>(length) : 0;
}

}  // namespace

int main(int argc, char **argv) {
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 30;
  const NSString english = u"<p>Leaves fall into the archive, and arrows lie in their quiver.</p>\n"_ns;
  const NSString french = u"<p>Les flèches restent là où l'été les a laissées.</p>\n"_ns;
  const NSString russian = u"<p>Листья падают в архив, а стрелы лежат в колчане.</p>\n"_ns;
  const Sample samples[] = {
      {"ASCII", english, NSUTF8StringEncoding, "UTF-8", true},
      {"French, UTF-8", french, NSUTF8StringEncoding, "UTF-8", true},
      {"French, ISO 8859-1", french, NSISOLatin1StringEncoding, "ISO-8859-1", true},
      {"French, not declared", french, NSISOLatin1StringEncoding, "windows-1252", false},
      {"Russian, UTF-8", russian, NSUTF8StringEncoding, "UTF-8", true},
      {"Russian, Windows 1251", russian, NSWindowsCP1251StringEncoding, "windows-1251", true},
      {"Russian, not declared", russian, NSWindowsCP1251StringEncoding, "windows-1251", false},
  };
  for (const Sample &sample : samples) {
    const NSData line = dataUsingEncoding(sample.line, sample.encoding);
    std::string page =
        sample.isDeclared ? "<meta charset=" + std::string(sample.charset) + "><body>" : "<body>";
    for (int i = 0; i < kLines; ++i) page += line.view();
    const NSData data = NSData::dataWithBytes(page.data(), page.size());
    const std::uint64_t units = unitsByICU(page, sample.charset);
    const auto text = bench::bytesOf(std::string_view(page));
    bench::compare(sample.name,
                   {{"ICU, told the encoding", [&] { return unitsByICU(page, sample.charset); }, units, text},
                    {"decodeMarkup", [&] { return decodeMarkup(data, 0).string.length(); }, units, text}},
                   rounds);
  }
}
