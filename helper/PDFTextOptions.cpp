// SPDX-License-Identifier: Apache-2.0
#include "helper/PDFTextOptions.hpp"

#include "platform/Foundation/NSException.hpp"
#include "platform/Foundation/NSStringJoining.hpp"

namespace nimbo {
namespace {

[[noreturn]] void raiseInvalidOption(const NSString &key) {
  throw NSException(u"NSInvalidArgumentException"_ns,
                    stringByConcatenating(u"not an option, or a wrong value: ", key));
}

bool isFlag(const id &value) {
  return value.isBoolean() || value.isInteger();
}

bool flagOf(const id &value) {
  return value.boolean().value_or(value.integer().value_or(0) != 0);
}

bool isPageNumber(const id &value) {
  return value.isInteger() && *value.integer() >= 1 && *value.integer() <= INT32_MAX;
}

}  // namespace

PDFTextOptions PDFTextOptionsOfDictionary(const NSDictionary &dictionary) {
  PDFTextOptions options;
  for (const auto &[key, value] : dictionary) {
    if (key == u"Password"_ns && value.string())
      options.password = value.string();
    else if (key == u"FirstPage"_ns && isPageNumber(value))
      options.firstPage = static_cast<std::uint32_t>(*value.integer());
    else if (key == u"LastPage"_ns && isPageNumber(value))
      options.lastPage = static_cast<std::uint32_t>(*value.integer());
    else if (key == u"Attributed"_ns && isFlag(value))
      options.attributed = flagOf(value);
    else if (key == u"ByPage"_ns && isFlag(value))
      options.byPage = flagOf(value);
    else
      raiseInvalidOption(key);
  }
  if (options.lastPage < options.firstPage) raiseInvalidOption(u"LastPage"_ns);
  if (options.attributed && options.byPage) raiseInvalidOption(u"ByPage"_ns);
  return options;
}

}  // namespace nimbo
