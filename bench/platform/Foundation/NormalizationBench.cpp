// SPDX-License-Identifier: Apache-2.0
//
// fixAndNormalizeString against ICU's own normalisation to NFC. Most text is in NFC already, which is then to
// be found out, and nothing rewritten.
//
//   bench-normalization [UNITS [ROUNDS]]

#include <unicode/unorm2.h>

#include <string>

#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Normalizing.hpp"
#include "bench/Compare.hpp"

namespace {

using namespace nimbo;

struct Sample {
  const char *name;
  std::u16string_view part;
};

constexpr Sample kSamples[] = {
    {"ASCII", u"The quick brown fox jumps over the lazy dog, and then does it again. "},
    {"English", u"The \u201cquick\u201d brown fox jumps over the lazy dog \u2013 and then does it again. "},
    {"German",
     u"F\u00fcr gr\u00f6\u00dfere \u00dcbungen fehlt oft die Mu\u00dfe; das ist aber nicht schlimm. "},
    {"Vietnamese",
     u"Ti\u1ebfng Vi\u1ec7t c\u00f3 nhi\u1ec1u d\u1ea5u, v\u00e0 m\u1ecdi d\u1ea5u \u0111\u1ec1u c\u1ea7n. "},
    {"Russian",
     u"\u0421\u044a\u0435\u0448\u044c \u0435\u0449\u0451 \u044d\u0442\u0438\u0445 "
     u"\u043c\u044f\u0433\u043a\u0438\u0445 \u0431\u0443\u043b\u043e\u043a. "},
    {"Arabic",
     u"\u0627\u0644\u0643\u062a\u0627\u0628 \u062e\u064a\u0631 \u062c\u0644\u064a\u0633 \u0641\u064a "
     u"\u0627\u0644\u0632\u0645\u0627\u0646. "},
    {"Chinese",
     u"\u6625\u7720\u4e0d\u89c9\u6653\uff0c\u5904\u5904\u95fb\u557c\u9e1f\u3002\u591c\u6765\u98ce\u96e8\u58f0"},
    {"Japanese",
     u"\u30ac\u30e9\u30b9\u306e\u7a93\u304b\u3089\u3001\u82b1\u306e\u65e5\u304c\u898b\u3048\u308b\u3002"},
    {"Korean", u"\ub2e4\ub78c\uc950 \ud5cc \uccc7\ubc14\ud034\uc5d0 \ud0c0\uace0\ud30c. "},
    {"Hindi",
     u"\u0939\u093f\u0928\u094d\u0926\u0940 \u092d\u093e\u0930\u0924 \u0915\u0940 \u092d\u093e\u0937\u093e "
     u"\u0939\u0948\u0964 "},
    {"Hindi, with nuktas and English",
     u"\u0932\u0921\u093c\u0915\u093e (boy) \u092a\u0922\u093c\u0924\u093e \u0939\u0948, "
     u"\u2018\u092b\u093c\u094b\u0928\u2019 \u092d\u0940\u0964 "},
    {"Bengali",
     u"\u09ac\u09be\u0982\u09b2\u09be \u09ad\u09be\u09b7\u09be \u09aa\u09cd\u09b0\u09be\u09a3 "
     u"\u099c\u09c1\u09a1\u09bc\u09be\u09af\u09bc\u0964 "},
    {"Thai", u"\u0e1b\u0e39\u0e48\u0e01\u0e34\u0e19\u0e19\u0e49\u0e33\u0e17\u0e35\u0e48\u0e19\u0e35\u0e48 "},
    {"Hebrew with points",
     u"\u05d1\u05b0\u05bc\u05e8\u05b5\u05d0\u05e9\u05b4\u05c1\u05d9\u05ea "
     u"\u05d1\u05b8\u05bc\u05e8\u05b8\u05d0. "},
    {"Arabic with points",
     u"\u0643\u064e\u062a\u064e\u0628\u064e "
     u"\u0627\u0644\u062f\u064e\u0651\u0631\u0652\u0633\u064e. "},
    {"German, an umlaut in 70 decomposed",
     u"Das ist eine ganz gewo\u0308hnliche Zeile, die nur einen einzigen Umlaut hat. "},
    {"Vietnamese, decomposed",
     u"Tie\u0302\u0301ng Vie\u0323\u0302t co\u0301 nhie\u0302\u0300u da\u0302\u0301u. "},
    {"Korean, decomposed", u"\u1103\u1161\u1105\u1161\u11b7\u110c\u1171 \u1112\u1165\u11ab. "},
};

}  // namespace

int main(int argc, char **argv) {
  const int units = argc > 1 ? std::atoi(argv[1]) : 500'000;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 30;
  UErrorCode error = U_ZERO_ERROR;
  const UNormalizer2 *const normalizer = unorm2_getNFCInstance(&error);
  if (U_FAILURE(error) || units < 1 || rounds < 1) return 1;
  for (const Sample &sample : kSamples) {
    std::u16string text;
    while (text.size() < static_cast<std::size_t>(units)) text += sample.part;
    const auto length = static_cast<std::int32_t>(text.size());
    std::u16string composed(text.size(), u'\0');
    const auto composeByICU = [&] {
      error = U_ZERO_ERROR;
      return unorm2_normalize(normalizer, text.data(), length, composed.data(), length, &error);
    };
    composed.resize(static_cast<std::size_t>(composeByICU()));
    NSMutableString ours;
    ours.appendCharacters(text.data(), static_cast<std::uint32_t>(length));
    fixAndNormalizeString(ours);
    if (U_FAILURE(error) || ours.view() != composed) return std::fprintf(stderr, "the answers differ\n"), 1;
    const bool isNormal = composed == text;
    const std::u16string_view view = text;
    composed.resize(text.size());
    const std::size_t composedLength = ours.length();
    bench::compare(sample.name,
                   {{"unorm2_normalize", [&] { return static_cast<std::uint64_t>(composeByICU()); },
                     composedLength, bench::bytesOf(view)},
                    {"fixAndNormalizeString",
                     [&] {
                       // What is not normal must be copied anew for each round.
                       if (!isNormal) {
                         ours.setLength(0);
                         ours.appendCharacters(text.data(), static_cast<std::uint32_t>(length));
                       }
                       fixAndNormalizeString(ours);
                       return std::uint64_t{ours.length()};
                     },
                     composedLength, bench::bytesOf(view)}},
                   rounds);
  }
  return 0;
}
