// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSCharacterSet.hpp"

#include <unicode/uchar.h>

#include <algorithm>

namespace nimbo {

NSCharacterSet NSCharacterSet::setOfCategories(std::uint32_t categories) {
  struct Request {
    NSCharacterSet set;
    const std::uint32_t categories;
  } request{{}, categories};
  const auto addRange = [](const void *context, UChar32 first, UChar32 limit, UCharCategory category) -> UBool {
    auto &[set, wanted] = *static_cast<Request *>(const_cast<void *>(context));
    if (U_MASK(category) & wanted)
      for (UChar32 c = first; c < std::min(limit, 0x10000); ++c) set.addCharacter(static_cast<unichar>(c));
    return limit <= 0xffff ? 1 : 0;
  };
  u_enumCharTypes(addRange, &request);
  return request.set;
}

NSCharacterSet NSCharacterSet::letterCharacterSet() {
  return setOfCategories(U_GC_L_MASK | U_GC_M_MASK);
}

NSCharacterSet NSCharacterSet::lowercaseLetterCharacterSet() {
  return setOfCategories(U_GC_LL_MASK);
}

NSCharacterSet NSCharacterSet::uppercaseLetterCharacterSet() {
  return setOfCategories(U_GC_LU_MASK | U_GC_LT_MASK);
}

NSCharacterSet NSCharacterSet::decimalDigitCharacterSet() {
  return setOfCategories(U_GC_ND_MASK);
}

NSCharacterSet NSCharacterSet::alphanumericCharacterSet() {
  return setOfCategories(U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK);
}

NSCharacterSet NSCharacterSet::whitespaceCharacterSet() {
  NSCharacterSet set = setOfCategories(U_GC_ZS_MASK);
  set.addCharacter(u'\t');
  return set;
}

NSCharacterSet NSCharacterSet::whitespaceAndNewlineCharacterSet() {
  NSCharacterSet set = setOfCategories(U_GC_Z_MASK);
  for (const unichar c : {u'\t', u'\n', u'\v', u'\f', u'\r', u'\u0085'}) set.addCharacter(c);
  return set;
}

}  // namespace nimbo
