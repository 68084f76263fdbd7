// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/ImageFormats.hpp"

#include <algorithm>

namespace nimbo::detail {
namespace {

using namespace std::literals;

bool hasSignature(std::string_view bytes, const ImageFormat &format) {
  return bytes.substr(std::min(format.offset, bytes.size())).starts_with(format.signature);
}

/// Whether the first element is that of a picture: text, comments, a declaration and a document type may stand
/// in front of it.
bool isSVG(std::string_view bytes) {
  if (bytes.starts_with("\xef\xbb\xbf")) bytes.remove_prefix(3);
  for (;;) {
    bytes.remove_prefix(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
    const bool isComment = bytes.starts_with("<!--");
    if (!isComment && !bytes.starts_with("<?xml") && !bytes.starts_with("<!DOCTYPE svg")) break;
    const std::string_view end = isComment ? "-->"sv : ">"sv;
    const std::size_t found = bytes.find(end);
    if (found == bytes.npos) return false;
    bytes.remove_prefix(found + end.size());
  }
  return bytes.starts_with("<svg");
}

/// Movies begin in the same way as HEIF files, with other brands.
bool isHEIF(std::string_view bytes) {
  static constexpr std::string_view kBrands[] = {"mif1", "msf1", "mif2", "miaf", "heic", "heix", "heim",
                                                 "heis", "hevc", "hevx", "avif", "avis", "jpeg", "1pic"};
  return bytes.size() >= 12 && std::ranges::find(kBrands, bytes.substr(8, 4)) != std::end(kBrands);
}

}  // namespace

const ImageFormat *imageFormatOfBytes(std::string_view bytes) {
  using enum LoaderShrinking;
  static const ImageFormat kFormats[] = {
      {"\xff\xd8\xff"sv, 0, u"public.jpeg"_ns, "jpegload_source", factor, false, false},
      {"\x89PNG\r\n\x1a\n"sv, 0, u"public.png"_ns, "pngload_source", none, false, false},
      {"II*\0"sv, 0, u"public.tiff"_ns, "tiffload_source", none, true, false},
      {"MM\0*"sv, 0, u"public.tiff"_ns, "tiffload_source", none, true, false},
      {"II+\0"sv, 0, u"public.tiff"_ns, "tiffload_source", none, true, false},
      {"MM\0+"sv, 0, u"public.tiff"_ns, "tiffload_source", none, true, false},
      {"GIF8"sv, 0, u"com.compuserve.gif"_ns, "gifload_source", none, true, true},
      {"WEBP"sv, 8, u"org.webmproject.webp"_ns, "webpload_source", scale, true, true},
      {"ftyp"sv, 4, u"public.heif"_ns, "heifload_source", none, true, true, true, "heif"},
      {"\0\0\0\x0cjP  \r\n\x87\n"sv, 0, u"public.jpeg-2000"_ns, "jp2kload_source", resolutions, false, true},
      {"\xff\x4f\xff\x51"sv, 0, u"public.jpeg-2000"_ns, "jp2kload_source", resolutions, false, true},
      {"\xff\x0a"sv, 0, u"public.jpeg-xl"_ns, "jxlload_source", none, false, true, false, "jxl"},
      {"\0\0\0\x0cJXL \r\n\x87\n"sv, 0, u"public.jpeg-xl"_ns, "jxlload_source", none, false, true, false,
       "jxl"},
  };
  static const ImageFormat kSVG = {{}, 0, u"public.svg-image"_ns, "svgload_source", scale, false, false};
  for (const ImageFormat &format : kFormats)
    if (hasSignature(bytes, format)) return format.signature == "ftyp" && !isHEIF(bytes) ? nullptr : &format;
  return isSVG(bytes) ? &kSVG : nullptr;
}

}  // namespace nimbo::detail
