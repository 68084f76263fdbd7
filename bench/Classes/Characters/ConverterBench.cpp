// SPDX-License-Identifier: Apache-2.0
// convertEncodingToUnicode from UTF-8 against ICU's converter, on text of several kinds.
#include <unicode/ucnv.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/Characters/UnicodeConverters.hpp"
#include "bench/Compare.hpp"

using namespace nimbo;

namespace {

constexpr std::size_t kTextBytes = 1u << 20;
constexpr int kRounds = 41;

struct Sample {
  const char *name;
  std::string_view part;
};

constexpr Sample kSamples[] = {
    {"ASCII", "The quick brown fox jumps over the lazy dog, and then does it again. "},
    {"English",
     "The \xe2\x80\x9cquick\xe2\x80\x9d brown fox jumps over the lazy dog, and then \xe2\x80\x93 does "
     "it again at some length, because nothing else is to be done today. "},
    {"German",
     "F\xc3\xbcr gr\xc3\xb6\xc3\x9f\x65re \xc3\x9c\x62ungen fehlt oft die M\xc3\xbc\xc3\x9f\x65; das ist "
     "aber nicht schlimm. "},
    {"Russian",
     "\xd0\xa1\xd1\x8a\xd0\xb5\xd1\x88\xd1\x8c \xd0\xb5\xd1\x89\xd1\x91 \xd1\x8d\xd1\x82\xd0\xb8\xd1\x85 "
     "\xd0\xbc\xd1\x8f\xd0\xb3\xd0\xba\xd0\xb8\xd1\x85 "},
    {"CJK",
     "\xe6\x98\xa5\xe7\x9c\xa0\xe4\xb8\x8d\xe8\xa7\x89\xe6\x99\x93\xef\xbc\x8c\xe5\xa4\x84\xe5\xa4\x84\xe9"
     "\x97\xbb\xe5\x95\xbc\xe9\xb8\x9f\xe3\x80\x82"},
    {"CJK page",
     "<p class=\"text\">\xe6\x98\xa5\xe7\x9c\xa0\xe4\xb8\x8d\xe8\xa7\x89\xe6\x99\x93\xef\xbc\x8c\xe5\xa4"
     "\x84\xe5\xa4\x84\xe9\x97\xbb\xe5\x95\xbc\xe9\xb8\x9f\xe3\x80\x82</p>\n"},
    {"emoji", "\xf0\x9f\x98\x80\xf0\x9f\x8d\x80\xf0\x9f\x90\xb1"},
};

void check(bool good, const char *what) {
  if (good) return;
  std::fprintf(stderr, "%s\n", what);
  std::exit(1);
}

}  // namespace

int main() {
  UErrorCode status = U_ZERO_ERROR;
  UConverter *icu = ucnv_open("UTF-8", &status);
  check(U_SUCCESS(status), "no converter");
  for (const Sample &sample : kSamples) {
    std::string text;
    while (text.size() < kTextBytes) text += sample.part;
    std::vector<unichar> ours(text.size());
    std::vector<UChar> theirs(text.size());
    std::uint32_t count = 0;
    std::int32_t icuCount = 0;
    const auto convert = [&] {
      convertEncodingToUnicode(text.data(), static_cast<std::uint32_t>(text.size()), kCFStringEncodingUTF8,
                               ours.data(), static_cast<std::uint32_t>(ours.size()), &count);
    };
    const auto convertByICU = [&] {
      status = U_ZERO_ERROR;
      icuCount = ucnv_toUChars(icu, theirs.data(), static_cast<std::int32_t>(theirs.size()), text.data(),
                               static_cast<std::int32_t>(text.size()), &status);
    };
    convert();
    convertByICU();
    check(count > 0 && count == static_cast<std::uint32_t>(icuCount) &&
              std::equal(ours.begin(), ours.begin() + count, theirs.begin()),
          "the answers differ");
    const auto bytes = bench::bytesOf(std::string_view(text));
    bench::compare(sample.name,
                   {{"ucnv_toUChars",
                     [&] {
                       convertByICU();
                       return static_cast<std::uint64_t>(icuCount);
                     },
                     count, bytes},
                    {"convertEncodingToUnicode",
                     [&] {
                       convert();
                       return std::uint64_t{count};
                     },
                     count, bytes}},
                   kRounds);
  }
  ucnv_close(icu);
}
