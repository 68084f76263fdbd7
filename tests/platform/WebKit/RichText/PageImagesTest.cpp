// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/WebKit/RichText/ImageChoice.hpp"
#include "platform/WebKit/RichText/ImageSize.hpp"
#include "tests/platform/WebKit/RichText/PageDump.hpp"

namespace nimbo::detail {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

TEST(PageImages, SourcesAreChosenForAScreenOfSingleDensity) {
  const struct {
    std::u16string_view srcset, sizes, src, expected;
  } cases[] = {
      {u"", u"", u" a ", u"a"},
      {u"b 2x", u"", u"a", u"a"},
      {u"b 2x, c 0.5x", u"", u"", u"b"},
      {u"b 1x", u"", u"a", u"b"},
      {u"b,c 3x", u"", u"", u"b,c"},
      {u"b, c 3x", u"", u"a", u"b"},
      {u"s 320w, m 640w, l 1280w, h 2560w", u"", u"a", u"l"},
      {u"s 320w, m 640w, l 1280w", u"(min-width: 600px) 50vw, 100vw", u"a", u"m"},
      {u"s 320w, m 640w", u"(max-width: 600px) 100px, 20em", u"a", u"s"},
      {u"s 320w, m 640w", u"", u"", u"m"},
      {u"b 2q, c -1x, d 0w", u"", u"a", u"a"},
      {u"data:image/png;base64,AA,BB 1x, c 2x", u"", u"", u"data:image/png;base64,AA,BB"},
      {u" ,, ", u"", u"", u""},
      {u"c 3x, b 1.5x, e 2x, d 0.9x", u"", u"", u"b"},
      {u"b 0.4x, c 0.9x, d 0.5x", u"", u"", u"c"},
      {u"b, c, d 2x", u"", u"", u"b"},
      {u"b,, c 2x", u"", u"", u"b"},
      {u"b (x, y), c 2x", u"", u"", u"c"},
      // Where widths are said, what "src" has does not count.
      {u"s 320w", u"", u"a", u"s"},
  };
  for (const auto &test : cases)
    EXPECT_EQ(chosenSource(test.srcset, test.sizes, test.src), test.expected)
        << NSString::stringWithCharacters(test.srcset).UTF8String();
  // Numbers are read of 64 units.
  for (const std::size_t zeros : {63, 64}) {
    const std::u16string srcset = u"b " + std::u16string(zeros, u'0') + u"2x";
    EXPECT_EQ(chosenSource(srcset, u"", u""), zeros == 63 ? u"b" : u"");
  }
  // The page is 1280 pixels wide and 720 high.
  for (const auto &[sizes, expected] :
       std::initializer_list<std::pair<std::u16string_view, std::u16string_view>>{
           {u"100px", u"100"},
           {u"101px", u"160"},
           {u"10em", u"160"},
           {u"10REM", u"160"},
           {u"150pt", u"200"},
           {u"200", u"200"},
           {u"25vw", u"320"},
           {u"50vh", u"360"},
           {u"1q, 0px, -1px, x, 100px", u"100"},
           {u"(min-width: 1px) and (max-width: 2px) 100px, 160px", u"160"},
           {u"(min-width: calc(1px + (2px))) 160px, 100px", u"160"},
           {u"((min-width: 1px) or (width: 1px)) 160px, 100px", u"160"},
       })
    EXPECT_EQ(chosenSource(u"100 100w, 160 160w, 200 200w, 320 320w, 360 360w", sizes, u""), expected)
        << NSString::stringWithCharacters(sizes).UTF8String();
}

std::string imagesOf(std::u16string_view html) {
  std::string list;
  for (const PageImage &image : textOfHTML(html).images) {
    list += std::to_string(image.index) + ":" + image.URL.UTF8String();
    if (image.width) list += " w" + std::to_string(static_cast<int>(*image.width));
    if (image.height) list += " h" + std::to_string(static_cast<int>(*image.height));
    if (image.alternativeText) list += " '" + image.alternativeText.UTF8String() + "'";
    list += ";";
  }
  return list;
}

TEST(PageImages, PagesSayWhatStandsWhere) {
  const struct {
    std::u16string_view html;
    std::string_view text, images;
  } cases[] = {
      {u"<p>a <img src=x alt=y> b", "a * b|", "2:x 'y';"},
      {u"a<img src=x style='display:block'>b<img src=y style='display:grid'>c", "a|*|b|*|c|", "2:x;6:y;"},
      {u"a <img src=x style='float:left'> b", "a * b|", "2:x;"},
      {u"<img src=x width=40 height='30px'><img src=y width='50%' style='height:2em'>", "**|",
       "0:x w40 h30;1:y h32;"},
      {u"<img src=x width=40 height=30 style='width:50%'><img src=y width=-1 height=0><img src=z width=x "
       u"height=2>",
       "***|", "0:x h30;1:y h0;2:z h2;"},
      {u"<img src=x width=1 height=2><img src=y width=2 height=1><img src=z width=0 height=0>", "**|",
       "0:x w1 h2;1:y w2 h1;"},
      {u"<img src=t width=1 height=1>a<img alt=none>", "anone|", ""},
      {u"<picture><source media=print srcset=p><source type=image/avif srcset=v><source srcset=s><img src=x>"
       u"</picture>",
       "*|", "0:s;"},
      {u"<video poster=p>f</video><object data=o.png>f</object><input type=image src=i alt=go>", "***|",
       "0:p;1:o.png;2:i 'go';"},
      {u"<object data=a.PNG></object><object data=b.jpg></object><object data=c.jpeg></object><object "
       u"data=d.gif></object><object data=e.svg></object><object data=f.webp></object><object data=g.bmp>"
       u"</object><object type=IMAGE/x data=h></object><object type=text/html data=i.png>j</object>",
       "********j|", "0:a.PNG;1:b.jpg;2:c.jpeg;3:d.gif;4:e.svg;5:f.webp;6:g.bmp;7:h;"},
      {u"<style>i::before{content:url(u) 'x'}</style>a<i></i>", "a*x|", "1:u;"},
      {u"<p style='visibility:hidden'><img src=x>", "", ""},
      {u"<table><tr><td>a<td><img src=x></table>", "a|*|", "2:x;"},
  };
  for (const auto &test : cases) {
    EXPECT_EQ(plainDump(test.html), test.text) << NSString::stringWithCharacters(test.html).UTF8String();
    EXPECT_EQ(imagesOf(test.html), test.images) << NSString::stringWithCharacters(test.html).UTF8String();
  }
}

TEST(PageImages, SourcesOfShownTypesAreChosen) {
  const auto chosen = [](std::u16string_view type) {
    return imagesOf(u"<picture><source type='" + std::u16string(type) + u"' srcset=s><img src=x></picture>");
  };
  for (const std::u16string_view type :
       {u"", u"image/png", u"image/jpeg", u"image/jpg", u"image/gif", u"image/webp", u"image/svg+xml",
        u"image/bmp", u"image/tiff", u" IMAGE/PNG "})
    EXPECT_EQ(chosen(type), "0:s;") << NSString::stringWithCharacters(type).UTF8String();
  for (const std::u16string_view type : {u"image/avif", u"image/heic", u"image/png2", u"image"})
    EXPECT_EQ(chosen(type), "0:x;") << NSString::stringWithCharacters(type).UTF8String();
  EXPECT_EQ(imagesOf(u"<picture><img src=x><source srcset=s></picture>"), "0:x;");
  EXPECT_EQ(imagesOf(u"<picture><source srcset=''><b></b><source srcset=s><img src=x></picture>"), "0:s;");
}

/// The beginning of a JPEG picture of 300 by 200 pixels whose Exif has the orientation, and its bytes in either
/// order.
std::string jpeg(char orientation, bool isLittle = false, char entries = 1) {
  const std::string value(1, orientation);
  return "\xff\xd8\xff\xe1\x00\x22"
         "Exif\0\0"s +
         (isLittle ? "II\x2a\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0"s + value + "\0"s
                   : "MM\0\x2a\0\0\0\x08\0"s + entries + "\x01\x12\0\x03\0\0\0\x01\0"s + value) +
         "\0\0\0\0\0\0"s + "\xff\xc0\x00\x11\x08\x00\xc8\x01\x2c\x03\x01\x22\x00"s;
}

TEST(ImageSize, HeadersSayKindAndSize) {
  const struct {
    std::string bytes;
    std::string_view kind;
    double width, height;
  } cases[] = {
      {"\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\x01\x2c\0\0\0\xc8"s, "png", 300, 200},
      {"GIF89a\x2c\x01\xc8\0"s, "gif", 300, 200},
      {jpeg(1), "jpg", 300, 200},
      {jpeg(4), "jpg", 300, 200},
      {jpeg(5), "jpg", 200, 300},
      {jpeg(6), "jpg", 200, 300},
      {jpeg(8), "jpg", 200, 300},
      {jpeg(9), "jpg", 300, 200},
      {jpeg(6, false, 0), "jpg", 300, 200},
      {jpeg(1, true), "jpg", 300, 200},
      {jpeg(6, true), "jpg", 200, 300},
      // Tables, and what is reserved, stand where a frame does not begin.
      {"\xff\xd8\xff\xbf\0\x04\0\1\xff\xc4\0\x05\0\1\1\xff\xc8\0\x04\0\1\xff\xcc\0\x04\0\1\xff\xcf\0\x0b\x08\0\xc8\x01\x2c\1"s,
       "jpg", 300, 200},
      {"\xff\xd8\xff\xdb\0\1\xff\xc0\0\x0b\x08\0\xc8\x01\x2c\1\1\x11\0"s, "jpg", 0, 0},
      {"\xff\xd8\xff\xdb\0\2\0\xc0\0\x0b\x08\0\xc8\x01\x2c\1\1\x11\0"s, "jpg", 0, 0},
      {"GIF87a\x2c\x01\xc8\0"s, "gif", 300, 200},
      {"BM\0\0\0\0\0\0\0\0\0\0\0\0\x0c\0\0\0\x2c\x01\xc8\0\0\0\0\0"s, "bmp", 300, 200},
      {"BM\0\0\0\0\0\0\0\0\0\0\0\0\x0c\0\0\0\x2c\x01\xc8\0\0\0\0"s, "", 0, 0},
      {"RIFF\0\0\0\0WEBPVP8?\0\0\0\0\0\0\0\x9d\x01\x2a\x2c\x01\xc8\0"s, "webp", 0, 0},
      {"RIFF\0\0\0\0WAVEVP8 \0\0\0\0\0\0\0\x9d\x01\x2a\x2c\x01\xc8\0"s, "", 0, 0},
      {"\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\xff\xff\0\0\xff\xff"s, "png", 65535, 65535},
      {"\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\1\0\0\0\0\0\1"s, "png", 0, 0},
      {"\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\0\1\0\1\0\0"s, "png", 0, 0},
      {"\xef\xbb\xbf <svg stroke-width='7' width='300' height='200'>", "svg", 300, 200},
      {"<svg width=300 height='200' viewBox='0 0 300 200'>", "svg", 300, 200},
      {"<svg width='300", "svg", 0, 0},
      {"x<svg width='300' height='200'>", "", 0, 0},
      {"\xff\xd8\xff\xff\xff\x01\xff\xd0\xff\xc0\0\x0b\x08\0\xc8\x01\x2c\1\1\x11\0"s, "jpg", 300, 200},
      {"BM\0\0\0\0\0\0\0\0\0\0\0\0\x28\0\0\0\x2c\x01\0\0\x38\xff\xff\xff"s, "bmp", 300, 200},
      {"RIFF\0\0\0\0WEBPVP8X\x0a\0\0\0\0\0\0\0\x2b\x01\0\xc7\0\0"s, "webp", 300, 200},
      {"RIFF\0\0\0\0WEBPVP8 \0\0\0\0\0\0\0\x9d\x01\x2a\x2c\x01\xc8\0"s, "webp", 300, 200},
      {"RIFF\0\0\0\0WEBPVP8L\0\0\0\0\x2f\x2b\xc1\x31\0"s, "webp", 300, 200},
      {"<?xml version='1.0'?><svg xmlns='x' width='300' height=\"200px\">", "svg", 300, 200},
      {"<svg width='100%' viewBox='0 0 300,200'>", "svg", 300, 200},
      {"<svg height='1in' viewBox='0 0 10 20'>", "svg", 48, 96},
      {"<svg width='1in' viewBox='0 0 10 20'>", "svg", 96, 192},
      {"<svg width='10' viewBox='0 0 -10 -20'>", "svg", 0, 0},
      {"<svg viewBox='0 0 10'>", "svg", 0, 0},
      {"\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\x7f\xff\xff\xff\0\0\0\xc8"s, "png", 0, 0},
      {"\x89PNG\r\n\x1a\n"s, "png", 0, 0},
      {"\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\x01\x2c\0\0\0"s, "png", 0, 0},
      // No more than the first 65536 bytes are looked at.
      {"<" + std::string(65510, ' ') + "<svg width='3' height='2'>", "svg", 3, 2},
      {"<" + std::string(65511, ' ') + "<svg width='3' height='2'>", "svg", 0, 0},
      {"\xff\xd8\xff\xe1\xff\xff"s, "jpg", 0, 0},
      {"<svg>", "svg", 0, 0},
      {"<html>", "", 0, 0},
      {"", "", 0, 0},
  };
  for (const auto &test : cases) {
    // An exact copy on the heap lets a sanitizer see what is read behind the end.
    const std::vector<char> copy(test.bytes.begin(), test.bytes.end());
    const auto header = imageHeader({copy.data(), copy.size()});
    EXPECT_EQ(header ? header->pathExtension : ""sv, test.kind);
    const NSSize size = header && header->sizeInPixels ? *header->sizeInPixels : NSSize();
    EXPECT_EQ(size, (NSSize{test.width, test.height})) << test.kind;
  }
}

TEST(ImageSize, DrawingsMeasureInAnyUnit) {
  // Each of them is an inch, as 96 pixels are; six letters of 16 pixels are as wide.
  for (const std::string_view inch : {"96", "96px", "72pt", "6pc", "1in", "2.54cm", "25.4MM", "6em"}) {
    const std::string value(inch);
    const auto header = imageHeader("<svg width='" + value + "' height='" + value + "'>");
    ASSERT_TRUE(header && header->sizeInPixels) << inch;
    EXPECT_NEAR(header->sizeInPixels->width, 96, 1e-9) << inch;
    EXPECT_NEAR(header->sizeInPixels->height, 96, 1e-9) << inch;
  }
}

WebResource pictureAt(const NSString &url, const std::string &bytes = "GIF89a\x2c\x01\xc8\0"s) {
  return WebResource::resourceWithData(NSData::dataWithBytes(bytes.data(), bytes.size()),
                                       NSURL::URLWithString(url), u"image/gif"_ns);
}

TEST(PageImages, LoadedPicturesBecomeAttachments) {
  const PageText page = textOfHTML(
      u"<a href=l><img src=1 width=150></a><img src=2 height=400 alt=two><img src=3 alt=three><b><img "
      u"src=4></b>"
      u"<img src=5 width=40 height=40>");
  const std::string noPicture = "<html>";
  const WebResource loaded[] = {
      pictureAt(u"http://a/dir/p%20q.gif?x"_ns), pictureAt(u"http://a/"_ns), WebResource(),
      WebResource::resourceWithData(NSData::dataWithBytes(noPicture.data(), noPicture.size()), NSURL(),
                                    u"image/png"_ns),
      pictureAt(u"http://a/x.php"_ns)};
  const NSAttributedString text = textWithImages(page, loaded);
  EXPECT_EQ(plainDump(text), "**three*|");
  const auto attachment = [&](std::uint32_t index) { return text.attributesAtIndex(index)->attachment; };
  EXPECT_EQ(attachment(0).sizeInPoints(), (NSSize{112.5, 75}));
  EXPECT_EQ(attachment(0).fileWrapper().preferredFilename(), u"p q.gif"_ns);
  EXPECT_EQ(attachment(0).fileWrapper().regularFileContents(), loaded[0].data());
  EXPECT_EQ(text.attributesAtIndex(0)->link, u"l"_ns);
  EXPECT_EQ(attachment(1).sizeInPoints(), (NSSize{450, 300}));
  EXPECT_EQ(attachment(1).alternativeText(), u"two"_ns);
  EXPECT_EQ(attachment(1).fileWrapper().preferredFilename(), u"image.gif"_ns);
  EXPECT_FALSE(attachment(2));
  EXPECT_EQ(attachment(7).sizeInPoints(), (NSSize{30, 30}));
  EXPECT_EQ(attachment(7).fileWrapper().preferredFilename(), u"x.gif"_ns);
}

TEST(PageImages, PicturesAreNamedByTheirAddresses) {
  const struct {
    NSString url;
    std::string bytes;
    NSString name;
  } cases[] = {{u"http://a/b/c.jpeg"_ns, jpeg(1), u"c.jpeg"_ns},
               {u"http://a/c.jpg"_ns, jpeg(1), u"c.jpg"_ns},
               {u"http://a/c.d.jpe"_ns, jpeg(1), u"c.d.jpg"_ns},
               {u"http://a/c.jpeg"_ns, "<svg>", u"c.svg"_ns},
               {u"data:image/x,b/c.jpg"_ns, jpeg(1), u"image.jpg"_ns}};
  for (const auto &[url, bytes, name] : cases) {
    const WebResource loaded = pictureAt(url, bytes);
    const NSAttributedString text = textWithImages(textOfHTML(u"<img src=1>"), {&loaded, 1});
    EXPECT_EQ(text.attributesAtIndex(0)->attachment.fileWrapper().preferredFilename(), name);
  }
}

TEST(PageImages, PicturesMayHaveNoSize) {
  const PageText page = textOfHTML(u"<img src=1><img src=2 width=40><img src=3 width=40 height=20>");
  const std::string drawing = "<svg>";
  const WebResource one =
      WebResource::resourceWithData(NSData::dataWithBytes(drawing.data(), drawing.size()),
                                    NSURL::URLWithString(u"http://a/b"_ns), u"image/svg+xml"_ns);
  const WebResource loaded[] = {one, one, one};
  const NSAttributedString text = textWithImages(page, loaded);
  ASSERT_EQ(plainDump(text), "***|");
  EXPECT_FALSE(text.attributesAtIndex(0)->attachment.sizeInPoints());
  EXPECT_FALSE(text.attributesAtIndex(1)->attachment.sizeInPoints());
  EXPECT_EQ(text.attributesAtIndex(2)->attachment.sizeInPoints(), (NSSize{30, 15}));
  EXPECT_EQ(text.attributesAtIndex(0)->attachment.fileWrapper().preferredFilename(), u"b.svg"_ns);
}

TEST(PageImages, ParagraphsOfNothingButLostPicturesGo) {
  const PageText page = textOfHTML(u"<p>a<p><img src=x><p>b<table><tr><td><img src=y></table>");
  EXPECT_EQ(plainDump(textWithImages(page, {})), "a|b||");
  for (const auto &[html, text] : std::initializer_list<std::pair<std::u16string_view, std::string_view>>{
           {u"<img src=x><p>b", "b|"},
           {u"<p>a<img src=x><p>b", "a|b|"},
           {u"<p><img src=x>a<p>b", "a|b|"},
           {u"<p>a<p><img src=x alt=y><p>b", "a|y|b|"},
       })
    EXPECT_EQ(plainDump(textWithImages(textOfHTML(html), {})), text)
        << NSString::stringWithCharacters(html).UTF8String();
}

TEST(PageAttributes, HeadsSayWhatPagesAre) {
  HTMLDocument document = HTMLDocument::documentWithText(
      u"<title> A\n b </title><meta name=Author content=' Me '><meta name=keywords content='x, y z,,'>"
      u"<meta name=description content=d><meta name=description content=e><meta name=subject content=''>"
      u"<meta name=subject content=s><meta name=COMPANY content=c><meta name=' copyright' content=r>"
      u"<meta name=keywords content=late><meta name=Author content=late>");
  const DocumentAttributes attributes = documentAttributesOfPage(document);
  EXPECT_EQ(attributes.title, u"A b"_ns);
  EXPECT_EQ(attributes.author, u"Me"_ns);
  EXPECT_EQ(attributes.keywords, (std::vector{u"x"_ns, u"y z"_ns}));
  EXPECT_EQ(attributes.comment, u"d"_ns);
  EXPECT_EQ(attributes.subject, u"s"_ns);
  EXPECT_EQ(attributes.company, u"c"_ns);
  EXPECT_EQ(attributes.copyright, u"r"_ns);
}

}  // namespace
}  // namespace nimbo::detail
