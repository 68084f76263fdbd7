// SPDX-License-Identifier: Apache-2.0
#include <utility>

#include "platform/AppKit/Images/NSImage.hpp"
#include "platform/Foundation/NSStringCase.hpp"

namespace nimbo {

const std::vector<NSString> &NSImage::imageFileTypes() {
  static const std::vector<NSString> types = [] {
    const NSString extensions[] = {
        u"tiff"_ns, u"tif"_ns,  u"jpg"_ns,  u"jpeg"_ns, u"jfif"_ns, u"gif"_ns, u"png"_ns,  u"pdf"_ns,
        u"bmp"_ns,  u"dib"_ns,  u"ico"_ns,  u"cur"_ns,  u"psd"_ns,  u"psb"_ns, u"pict"_ns, u"pct"_ns,
        u"pic"_ns,  u"tga"_ns,  u"jp2"_ns,  u"j2k"_ns,  u"jpf"_ns,  u"jpx"_ns, u"jxl"_ns,  u"webp"_ns,
        u"heic"_ns, u"heif"_ns, u"avif"_ns, u"svg"_ns,  u"pbm"_ns,  u"pgm"_ns, u"ppm"_ns,  u"pnm"_ns,
        u"pam"_ns,  u"pcx"_ns,  u"xbm"_ns,  u"xpm"_ns,  u"xwd"_ns,  u"sgi"_ns, u"rgb"_ns,  u"rgba"_ns,
        u"bw"_ns,   u"ras"_ns,  u"sun"_ns,  u"dds"_ns,  u"qoi"_ns,  u"dng"_ns, u"cr2"_ns,  u"cr3"_ns,
        u"crw"_ns,  u"nef"_ns,  u"nrw"_ns,  u"arw"_ns,  u"srf"_ns,  u"sr2"_ns, u"raf"_ns,  u"orf"_ns,
        u"rw2"_ns,  u"pef"_ns,  u"srw"_ns,  u"raw"_ns,  u"3fr"_ns,  u"mrw"_ns, u"erf"_ns,  u"mos"_ns,
        u"iiq"_ns};
    std::vector<NSString> all(std::begin(extensions), std::end(extensions));
    for (const NSString &extension : extensions) {
      NSMutableString upper(extension);
      CFStringUppercase(upper);
      all.push_back(std::move(upper).string());
    }
    for (const NSString &code :
         {u"'PDF '"_ns, u"'TIFF'"_ns, u"'JPEG'"_ns, u"'GIFf'"_ns, u"'PNGf'"_ns, u"'BMPf'"_ns, u"'BMP '"_ns,
          u"'8BPS'"_ns, u"'TPIC'"_ns, u"'jp2 '"_ns, u"'.SGI'"_ns})
      all.push_back(code);
    return all;
  }();
  return types;
}

}  // namespace nimbo
