// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSColorSpaces.hpp"

#include <algorithm>
#include <cmath>

#include "platform/CSS/CSSNameLookup.hpp"

namespace nimbo::detail {

namespace {

using Matrix = std::array<ColorComponents, 3>;

constexpr CSSNameLookup kSpaces(std::to_array<CSSNamedValue<ColorSpace>>({
    {"srgb", ColorSpace::kSRGB},
    {"srgb-linear", ColorSpace::kLinearSRGB},
    {"display-p3", ColorSpace::kDisplayP3},
    {"a98-rgb", ColorSpace::kA98RGB},
    {"prophoto-rgb", ColorSpace::kProPhotoRGB},
    {"rec2020", ColorSpace::kRec2020},
    {"xyz", ColorSpace::kXYZD65},
    {"xyz-d65", ColorSpace::kXYZD65},
    {"xyz-d50", ColorSpace::kXYZD50},
    {"lab", ColorSpace::kLab},
    {"oklab", ColorSpace::kOklab},
}));

// The matrices of CSS Color Level 4; those of linear light lead to XYZ with the white of the space.
constexpr Matrix kSRGBOfXYZ{{{3.2409699419045226, -1.537383177570094, -0.4986107602930034},
                             {-0.9692436362808796, 1.8759675015077202, 0.04155505740717559},
                             {0.05563007969699366, -0.20397695888897652, 1.0569715142428786}}};
constexpr Matrix kXYZOfSRGB{{{0.41239079926595934, 0.357584339383878, 0.1804807884018343},
                             {0.21263900587151027, 0.715168678767756, 0.07219231536073371},
                             {0.01933081871559182, 0.11919477979462598, 0.9505321522496607}}};
constexpr Matrix kXYZOfDisplayP3{{{0.4865709486482162, 0.26566769316909306, 0.1982172852343625},
                                  {0.2289745640697488, 0.6917385218365064, 0.079286914093745},
                                  {0, 0.04511338185890264, 1.043944368900976}}};
constexpr Matrix kXYZOfA98RGB{{{0.5766690429101305, 0.1855582379065463, 0.1882286462349947},
                               {0.29734497525053605, 0.6273635662554661, 0.07529145849399788},
                               {0.02703136138641234, 0.07068885253582723, 0.9913375368376388}}};
constexpr Matrix kXYZOfRec2020{{{0.6369580483012914, 0.14461690358620832, 0.1688809751641721},
                                {0.2627002120112671, 0.6779980715188708, 0.05930171646986196},
                                {0, 0.028072693049087428, 1.060985057710791}}};
constexpr Matrix kXYZOfProPhotoRGB{{{0.7977604896723027, 0.13518583717574031, 0.0313493495815248},
                                    {0.2880711282292934, 0.7118432178101014, 0.00008565396060525902},
                                    {0, 0, 0.8251046025104601}}};
constexpr Matrix kD65OfD50{{{0.955473421488075, -0.02309845494876471, 0.06325924320057072},
                            {-0.0283697093338637, 1.0099953980813041, 0.021041441191917323},
                            {0.012314014864481998, -0.020507649298898964, 1.330365926242124}}};
constexpr ColorComponents kD50White = {0.9642956764295677, 1, 0.8251046025104602};
constexpr Matrix kConesOfLinear{{{0.4122214708, 0.5363325363, 0.0514459929},
                                 {0.2119034982, 0.6806995451, 0.1073969566},
                                 {0.0883024619, 0.2817188376, 0.6299787005}}};
constexpr Matrix kLinearOfCones{{{4.0767416621, -3.3077115913, 0.2309699292},
                                 {-1.2684380046, 2.6097574011, -0.3413193965},
                                 {-0.0041960863, -0.7034186147, 1.7076147010}}};
constexpr Matrix kOklabOfRoots{{{0.2104542553, 0.7936177850, -0.0040720468},
                                {1.9779984951, -2.4285922050, 0.4505937099},
                                {0.0259040371, 0.7827717662, -0.8086757660}}};
constexpr Matrix kRootsOfOklab{
    {{1, 0.3963377774, 0.2158037573}, {1, -0.1055613458, -0.0638541728}, {1, -0.0894841775, -1.2914855480}}};

ColorComponents product(const Matrix &matrix, const ColorComponents &vector) {
  ColorComponents result{};
  for (std::size_t i = 0; i < result.size(); ++i)
    result[i] = matrix[i][0] * vector[0] + matrix[i][1] * vector[1] + matrix[i][2] * vector[2];
  return result;
}

/// The same function of each component.
template <class Function>
ColorComponents each(ColorComponents components, Function function) {
  for (double &component : components) component = function(component);
  return components;
}

/// A function of the amount, with the sign of the component.
template <class Function>
auto signedly(Function function) {
  return [function](double x) { return std::copysign(function(std::abs(x)), x); };
}

double linearOfSRGB(double x) {
  return x <= 0.04045 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4);
}

double sRGBOfLinear(double x) {
  return x <= 0.0031308 ? x * 12.92 : 1.055 * std::pow(x, 1 / 2.4) - 0.055;
}

double linearOfA98RGB(double x) {
  return std::pow(x, 563.0 / 256);
}

double linearOfProPhotoRGB(double x) {
  return x <= 16.0 / 512 ? x / 16 : std::pow(x, 1.8);
}

double linearOfRec2020(double x) {
  constexpr double kAlpha = 1.09929682680944, kBeta = 0.018053968510807;
  return x < kBeta * 4.5 ? x / 4.5 : std::pow((x + kAlpha - 1) / kAlpha, 1 / 0.45);
}

ColorComponents xyzD50OfLab(const ColorComponents &lab) {
  constexpr double kKappa = 24389.0 / 27, kEpsilon = 216.0 / 24389;
  const double y = (lab[0] + 16) / 116;
  const ColorComponents roots = {lab[1] / 500 + y, y, y - lab[2] / 200};
  ColorComponents xyz{};
  for (std::size_t i = 0; i < xyz.size(); ++i) {
    const double cube = roots[i] * roots[i] * roots[i];
    xyz[i] = (cube > kEpsilon ? cube : (116 * roots[i] - 16) / kKappa) * kD50White[i];
  }
  return xyz;
}

ColorComponents linearOf(ColorSpace space, const ColorComponents &c) {
  switch (space) {
    case ColorSpace::kSRGB:
      return each(c, signedly(linearOfSRGB));
    case ColorSpace::kLinearSRGB:
      return c;
    case ColorSpace::kDisplayP3:
      return product(kSRGBOfXYZ, product(kXYZOfDisplayP3, each(c, signedly(linearOfSRGB))));
    case ColorSpace::kA98RGB:
      return product(kSRGBOfXYZ, product(kXYZOfA98RGB, each(c, signedly(linearOfA98RGB))));
    case ColorSpace::kRec2020:
      return product(kSRGBOfXYZ, product(kXYZOfRec2020, each(c, signedly(linearOfRec2020))));
    case ColorSpace::kProPhotoRGB:
      return linearOf(ColorSpace::kXYZD50, product(kXYZOfProPhotoRGB, each(c, signedly(linearOfProPhotoRGB))));
    case ColorSpace::kXYZD50:
      return product(kSRGBOfXYZ, product(kD65OfD50, c));
    case ColorSpace::kXYZD65:
      return product(kSRGBOfXYZ, c);
    case ColorSpace::kLab:
      return linearOf(ColorSpace::kXYZD50, xyzD50OfLab(c));
    case ColorSpace::kOklab:
      return product(kLinearOfCones, each(product(kRootsOfOklab, c), [](double x) { return x * x * x; }));
  }
  return c;
}

std::uint8_t byteOf(double component) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(component, 0.0, 1.0) * 255));
}

}  // namespace

std::optional<ColorSpace> colorSpaceNamed(std::u16string_view name) {
  const ColorSpace *const space = kSpaces.find(name);
  return space ? std::optional(*space) : std::nullopt;
}

ColorComponents sRGBOf(ColorSpace space, const ColorComponents &components) {
  if (space == ColorSpace::kSRGB) return components;
  return each(linearOf(space, components), signedly(sRGBOfLinear));
}

ColorComponents componentsOfSRGB(const ColorComponents &sRGB, ColorSpace space) {
  if (space == ColorSpace::kSRGB) return sRGB;
  const ColorComponents linear = linearOf(ColorSpace::kSRGB, sRGB);
  if (space == ColorSpace::kXYZD65) return product(kXYZOfSRGB, linear);
  if (space == ColorSpace::kOklab)
    return product(kOklabOfRoots, each(product(kConesOfLinear, linear), [](double x) { return std::cbrt(x); }));
  return linear;
}

ColorComponents sRGBOfHSL(double hue, double saturation, double lightness) {
  hue = std::fmod(hue, 360);
  if (hue < 0) hue += 360;
  const auto component = [&](double n) {
    const double k = std::fmod(n + hue / 30, 12);
    const double amount = saturation * std::min(lightness, 1 - lightness);
    return lightness - amount * std::max(-1.0, std::min({k - 3, 9 - k, 1.0}));
  };
  return {component(0), component(8), component(4)};
}

CSSColor colorOfSRGB(const ColorComponents &sRGB, double alpha) {
  return {byteOf(sRGB[0]), byteOf(sRGB[1]), byteOf(sRGB[2]), static_cast<float>(std::clamp(alpha, 0.0, 1.0))};
}

}  // namespace nimbo::detail
