// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/ImageColors.hpp"

#include <cstdint>

#include "platform/ImageIO/Engine/VipsHeader.hpp"

namespace nimbo::detail {
namespace {

constexpr double kMaximumSample = 255;
/// At least as many rows as are asked for at once.
constexpr int kCachedRows = 64;

VipsPointer<VipsImage> bandsOf(const VipsPointer<VipsImage> &image, int first, int count) {
  return applied(image,
                 [=](auto in, auto out) { return vips_extract_band(in, out, first, "n", count, nullptr); });
}

/// The colours without alpha, under the interpretation that they allow.
VipsPointer<VipsImage> colorsOf(const VipsPointer<VipsImage> &image, int bands) {
  VipsInterpretation interpretation = vips_image_guess_interpretation(image.get());
  if (interpretation == VIPS_INTERPRETATION_MULTIBAND) {
    interpretation = bands >= 3 ? VIPS_INTERPRETATION_sRGB : VIPS_INTERPRETATION_B_W;
    bands = bands >= 3 ? 3 : 1;
  }
  return applied(bandsOf(image, 0, bands), [=](auto in, auto out) {
    return vips_copy(in, out, "interpretation", interpretation, nullptr);
  });
}

double maximumAlpha(VipsInterpretation interpretation) {
  switch (interpretation) {
    case VIPS_INTERPRETATION_RGB16:
    case VIPS_INTERPRETATION_GREY16:
      return UINT16_MAX;
    case VIPS_INTERPRETATION_scRGB:
      return 1;
    default:
      return kMaximumSample;
  }
}

/// The alpha with 8 bits.
VipsPointer<VipsImage> alphaOf(const VipsPointer<VipsImage> &image) {
  const double maximum = maximumAlpha(vips_image_get_interpretation(image.get()));
  const int last = vips_image_get_bands(image.get()) - 1;
  if (vips_image_get_format(image.get()) == VIPS_FORMAT_UCHAR) return bandsOf(image, last, 1);
  return applied(bandsOf(image, last, 1), [=](auto in, auto out) {
    return vips_linear1(in, out, kMaximumSample / maximum, 0, "uchar", TRUE, nullptr);
  });
}

/// Whether a profile says how the colours are to be changed.
bool hasForeignProfile(VipsImage *image) {
  if (!vips_image_get_typeof(image, VIPS_META_ICC_NAME)) return false;
  const NSString name = profileNameOfImage(image);
  return !name || !name.UTF8String().starts_with("sRGB");
}

/// Whether there is nothing to do.
bool isPlainSRGB(VipsImage *image) {
  const int bands = vips_image_get_bands(image);
  return vips_image_get_format(image) == VIPS_FORMAT_UCHAR && (bands == 3 || bands == 4) &&
         vips_image_get_interpretation(image) == VIPS_INTERPRETATION_sRGB && !hasForeignProfile(image);
}

VipsPointer<VipsImage> colorsInSRGB(const VipsPointer<VipsImage> &colors) {
  const bool isCMYK = vips_image_get_interpretation(colors.get()) == VIPS_INTERPRETATION_CMYK;
  VipsPointer<VipsImage> result;
  if (isCMYK || hasForeignProfile(colors.get()))
    result = applied(colors, [=](auto in, auto out) {
      return vips_icc_transform(in, out, "srgb", "embedded", TRUE, "input_profile", isCMYK ? "cmyk" : "srgb",
                                "intent", VIPS_INTENT_PERCEPTUAL, nullptr);
    });
  // A profile may be damaged or be one of other colours.
  if (result && vips_image_get_bands(result.get()) == 3) return result;
  return applied(
      colors, [](auto in, auto out) { return vips_colourspace(in, out, VIPS_INTERPRETATION_sRGB, nullptr); });
}

}  // namespace

VipsPointer<VipsImage> imageInSRGB(VipsPointer<VipsImage> image) {
  const bool hasAlpha = vips_image_hasalpha(image.get());
  if (isPlainSRGB(image.get())) return image;
  // Colours and alpha go two ways, and what they come from shall be made once.
  if (hasAlpha)
    image = applied(image, [](auto in, auto out) {
      return vips_linecache(in, out, "tile_height", kCachedRows, "access", VIPS_ACCESS_SEQUENTIAL, nullptr);
    });
  if (!image) return nullptr;
  const auto colors = colorsOf(image, vips_image_get_bands(image.get()) - (hasAlpha ? 1 : 0));
  if (!colors) return nullptr;
  auto result = colorsInSRGB(colors);
  result = applied(result, [](auto in, auto out) { return vips_cast(in, out, VIPS_FORMAT_UCHAR, nullptr); });
  if (!hasAlpha) return result;
  const auto alpha = alphaOf(image);
  if (!alpha) return nullptr;
  return applied(result, [&](auto in, auto out) { return vips_bandjoin2(in, alpha.get(), out, nullptr); });
}

}  // namespace nimbo::detail
