// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextKernels.hpp"

#include <algorithm>
#include <cstdint>

// This file is compiled once for each kind of vector; the best for the processor is chosen at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Classes/PlainText/PlainTextKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nimbo::detail {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
/// Texts are short: longer vectors would mostly be empty.
using Units = hn::CappedTag<std::uint16_t, 8>;

bool isPlain(unichar c, unichar next, bool stopsAtAmpersand) {
  if (c == u' ') return next > u' ';
  return !isCollapsible(c) && c != kSoftHyphen && !(stopsAtAmpersand && c == u'&');
}

HWY_ATTR std::size_t copy(const unichar *source, std::size_t length, std::size_t readable, unichar *destination,
                          bool stopsAtAmpersand) {
  const Units d;
  const std::size_t lanes = hn::Lanes(d);
  const auto load = [&](const unichar *units)
                        HWY_ATTR { return hn::LoadU(d, reinterpret_cast<const std::uint16_t *>(units)); };
  // Where "&" does not matter, the soft hyphen is looked for twice.
  const auto ampersand = hn::Set(d, stopsAtAmpersand ? std::uint16_t{u'&'} : std::uint16_t{kSoftHyphen});
  const auto space = hn::Set(d, std::uint16_t{u' '});
  const auto afterSpace = hn::Set(d, std::uint16_t{u' ' + 1});
  const auto softHyphen = hn::Set(d, std::uint16_t{kSoftHyphen});
  std::size_t i = 0;
  for (; i < length && i + lanes + 1 <= readable; i += lanes) {
    const auto v = load(source + i);
    hn::StoreU(v, d, reinterpret_cast<std::uint16_t *>(destination + i));
    const auto isBlank = hn::Lt(v, afterSpace);
    const auto isNextBlank = hn::Lt(load(source + i + 1), afterSpace);
    auto stops = hn::Or(hn::And(isBlank, hn::Or(hn::Ne(v, space), isNextBlank)),
                        hn::Or(hn::Eq(v, ampersand), hn::Eq(v, softHyphen)));
    if (!hn::AllTrue(d, hn::Lt(v, hn::Set(d, std::uint16_t{0x2000})))) {
      // The separators, and the two odd ones at the end.
      const auto separators =
          hn::Eq(hn::Or(v, hn::Set(d, std::uint16_t{1})), hn::Set(d, std::uint16_t{0x2029}));
      const auto odd =
          hn::Or(hn::Eq(v, hn::Set(d, std::uint16_t{0xfeff})), hn::Eq(v, hn::Set(d, std::uint16_t{0xfffc})));
      stops = hn::Or(stops, hn::Or(separators, odd));
    }
    const std::intptr_t at = hn::FindFirstTrue(d, stops);
    if (at >= 0) return std::min(i + static_cast<std::size_t>(at), length);
  }
  i = std::min(i, length);
  for (; i < length; ++i) {
    const unichar c = source[i];
    if (!isPlain(c, i + 1 < readable ? source[i + 1] : u'x', stopsAtAmpersand)) break;
    destination[i] = c;
  }
  return i;
}

}  // namespace HWY_NAMESPACE
}  // namespace nimbo::detail
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace nimbo::detail {

HWY_EXPORT(copy);

std::size_t copyPlainUnits(const unichar *source, std::size_t length, std::size_t readable,
                           unichar *destination, bool stopsAtAmpersand) {
  return HWY_DYNAMIC_DISPATCH(copy)(source, length, readable, destination, stopsAtAmpersand);
}

}  // namespace nimbo::detail

#endif
