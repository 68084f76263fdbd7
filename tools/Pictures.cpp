// SPDX-License-Identifier: Apache-2.0
#include "tools/Pictures.hpp"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "tools/CommandLine.hpp"
#include "tools/InputFile.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

/// What `make` answers; raises `InputError` when it is nil.
NSData checked(const std::string &name, const auto &make) {
  NSError error;
  NSData picture = make(&error);
  if (!picture) throw InputError(name, error);
  return picture;
}

}  // namespace

NSString typeOfPictureFile(const std::string &file) {
  constexpr struct {
    std::string_view extension;
    const char16_t *type;
  } kTypes[] = {{".tiff", u"public.tiff"}, {".tif", u"public.tiff"},  {".png", u"public.png"},
                {".jpg", u"public.jpeg"},  {".jpeg", u"public.jpeg"}, {".webp", u"org.webmproject.webp"}};
  const auto *const found = std::ranges::find_if(
      kTypes, [&](const auto &one) { return endsWithASCIINoCase(std::string_view(file), one.extension); });
  if (found == std::end(kTypes))
    throw UsageError("-o takes the name of a .tiff, .png, .jpeg or .webp file, not '" + file + "'");
  return NSString::stringWithCharacters(found->type);
}

std::optional<std::uint32_t> numberOfPixels(const std::optional<std::string> &option, std::uint32_t most) {
  if (!option) return std::nullopt;
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(option->data(), option->data() + option->size(), number);
  if (error != std::errc() || end != option->data() + option->size() || number == 0 || number > most)
    throw UsageError("--size takes a number of pixels from 1 to " + std::to_string(most) + ", not '" + *option +
                     "'");
  return number;
}

NSData makePicture(const PictureOrder &order, const std::string &name) {
  return checked(name, [&](NSError *error) { return makePicture(order, error); });
}

NSData makePicture(const PictureOrder &order, const NSData &bytes, const std::string &name) {
  return checked(name, [&](NSError *error) { return makePicture(order, bytes, error); });
}

}  // namespace nimbo
