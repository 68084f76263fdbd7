// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"
#include "Classes/URLs/NSString+URLUtilities.hpp"
#include "Classes/URLs/URLEscaping.hpp"
#include "Classes/URLs/URLNormalizing.hpp"
#include "Classes/URLs/URLQuery.hpp"
#include "fuzz/FuzzedText.hpp"
#include "platform/Foundation/id.hpp"

namespace {

using namespace nimbo;
using View = std::u16string_view;

void require(bool good) {
  if (!good) std::abort();
}

/// Units that end where their heap block ends.
std::unique_ptr<unichar[]> exactCopy(View text) {
  std::unique_ptr<unichar[]> units(new unichar[text.size()]);
  std::ranges::copy(text, units.get());
  return units;
}

/// An obvious unescaping: into another buffer, unit by unit.
std::u16string plainlyUnescaped(View text, bool standard) {
  const auto digit = [](unichar c) {
    return View(u"0123456789abcdef").find(c >= u'A' && c <= u'F' ? c + 32 : c);
  };
  const View decoded =
      text.find(u'?') == View::npos ? View(u"\t\n\r $%&'+/:;=?@~") : View(u"\t\n\r $%&'+/:;=@~");
  std::u16string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    result += text[i];
    if (text[i] != u'%' || text.size() - i < 3) continue;
    const std::size_t high = digit(text[i + 1]), low = digit(text[i + 2]);
    if (high == View::npos || low == View::npos) continue;
    const auto value = static_cast<unichar>(16 * high + low);
    if (standard ? decoded.find(value) == View::npos : value > 127) continue;
    result.back() = value;
    i += 2;
  }
  return result;
}

void checkUnescaping(View text, bool standard) {
  const auto units = exactCopy(text);
  const std::uint32_t length =
      convertPercentEscapesOfURL(units.get(), static_cast<std::uint32_t>(text.size()), standard);
  require(View(units.get(), length) == plainlyUnescaped(text, standard));
}

/// Unescaping gives back what was escaped; the standard strength leaves some of what it does not escape itself.
void checkEscaping(const NSString &text) {
  const NSString ascii = stringByAddingASCIIPercentEscapesToURL(text);
  require(ascii.length() <= 3 * text.length());
  require(stringByReplacingASCIIPercentEscapesOfURL(ascii) == text);
  require(std::ranges::none_of(
      ascii.view(), [](unichar c) { return c < 128 && View(u" \"#$&+/:;=?@<>\\").find(c) != View::npos; }));
  const NSString standard = stringByAddingStandardPercentEscapesToURL(text);
  require(standard.view().find_first_of(u" #$&+/:;=?@") == View::npos);
  require(stringByReplacingASCIIPercentEscapesOfURL(standard) == text);
}

void checkQuery(const NSString &text, std::uint32_t start) {
  std::vector<std::pair<View, View>> params;
  const View units = text.view();
  std::size_t at = start;
  for (;;) {
    while (at < units.size() && !alphaNumCharacterSetRep()->contains(units[at])) ++at;
    const std::size_t equal = units.find(u'=', std::min(at, units.size()));
    if (equal == View::npos) break;
    const std::size_t end = std::min(units.find_first_of(u"&;", equal + 1), units.size());
    params.emplace_back(units.substr(at, equal - at), units.substr(equal + 1, end - equal - 1));
    at = end + 1;
  }
  require(numberOfQueryParams(text, start) == params.size());
  const NSDictionary dictionary = queryParams(text, start);
  require(bool(dictionary) == (start < text.length()));
  for (const auto &[key, value] : dictionary) {
    const auto isLast = [name = key.view()](const auto &param) {
      return param.first == name && !param.second.empty();
    };
    const auto last = std::find_if(params.rbegin(), params.rend(), isLast);
    require(last != params.rend() && last->second == value.string().view());
    const auto first = std::find_if(params.begin(), params.end(), isLast);
    require(queryParamNamed(text, key, start).view() == first->second);
  }
  for (const auto &[key, value] : params) {
    const NSString name = NSString::stringWithCharacters(key);
    require(containsQueryParamNamed(text, name, start));
    require(value.empty() || dictionary.objectForKey(name));
  }
}

/// What is normalised holds nothing that a URL may not hold, and is clean; normalising it again changes nothing
/// unless it has a reference or an escape that was hidden in another one.
void checkNormalizing(View text, bool trimAnchor) {
  const auto length = static_cast<std::uint32_t>(text.size());
  const auto units = exactCopy(text);
  const std::unique_ptr<unichar[]> out(new unichar[kMaxURLGrowth * text.size()]);
  const View url(out.get(), normalizeURLUnits(units.get(), length, trimAnchor, out.get()));
  require(url.find_first_of(u" \t\n\r\f\"<>\\\u2028\u2029\ufffc\ufeff") == View::npos);
  require(!trimAnchor || url.find(u'#') == View::npos);
  const std::unique_ptr<unichar[]> kept(new unichar[kMaxURLGrowth * text.size()]);
  const View meant(kept.get(), normalizeURLUnits(units.get(), length, trimAnchor, kept.get(), true));
  require(meant.find_first_of(u" \t\n\r\f\"<>\\\u2028\u2029\ufffc\ufeff") == View::npos);
  const NSString string = NSString::stringWithCharacters(url);
  require(normalizedStringURL(NSString::stringWithCharacters(text), trimAnchor).view() == url);
  const std::unique_ptr<unichar[]> clean(new unichar[kMaxURLGrowth * text.size()]);
  require(
      View(clean.get(), cleanURLUnits(units.get(), length, clean.get())).find_first_of(u" \t\n\r\f\"<>\\") ==
      View::npos);
  require(url.empty() || stringURLWrittenBy(cleanURLUnits, string).identicalTo(string));
  if (url.find(u'&') == View::npos && text.find(u"%25") == View::npos && text.find(u'&') == View::npos)
    require(url.empty() || normalizedStringURL(string, trimAnchor).identicalTo(string));
}

void checkSimplifying(const NSString &text) {
  for (unsigned flags = 0; flags < 32; ++flags) {
    const std::bitset<5> removed(flags);
    const NSString simplified = simplifiedStringURLByRemovingSessionIDs(
        text, removed.test(0), removed.test(1), removed.test(2), removed.test(3), removed.test(4));
    require(simplified.length() <= 16 * text.length() + 1);
  }
  const NSString simplified = simplifiedStringURL(text);
  const NSString plain = simplifiedStringURLByRemovingSessionIDs(text, false, false, false, false, false);
  require(simplifiedStringURLByRemovingSessionIDs(plain, false, false, false, false, false) == plain);
  // What has no host gets none.
  require(text.view().starts_with(u"//") || !simplified.view().starts_with(u"//"));
}

}  // namespace

/// The first byte chooses whether the others are bytes of ASCII or whole units, and where the query begins.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  const std::u16string text = fuzzedText(data, size);
  const NSString string = NSString::stringWithCharacters(text);
  for (const bool flag : {false, true}) {
    checkUnescaping(text, flag);
    checkNormalizing(text, flag);
  }
  checkEscaping(string);
  checkQuery(string, data[0] >> 1);
  checkSimplifying(string);
  isFeedStringURL(string);
  isMarkupMIMEType(string);
  normalizedRelLink(string);
  return 0;
}
