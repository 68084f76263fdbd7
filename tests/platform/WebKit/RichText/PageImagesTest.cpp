// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>
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
  };
  for (const auto &test : cases)
    EXPECT_EQ(chosenSource(test.srcset, test.sizes, test.src), test.expected)
        << NSString::stringWithCharacters(test.srcset).UTF8String();
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
      {u"a<img src=x style='display:block'>b", "a|*|b|", "2:x;"},
      {u"a <img src=x style='float:left'> b", "a * b|", "2:x;"},
      {u"<img src=x width=40 height='30px'><img src=y width='50%' style='height:2em'>", "**|",
       "0:x w40 h30;1:y h32;"},
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

/// The beginning of a JPEG picture of 300 by 200 pixels whose Exif has the orientation.
std::string jpeg(char orientation) {
  return "\xff\xd8\xff\xe1\x00\x22"
         "Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0"s +
         orientation + "\0\0\0\0\0\0"s + "\xff\xc0\x00\x11\x08\x00\xc8\x01\x2c\x03\x01\x22\x00"s;
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
      {jpeg(6), "jpg", 200, 300},
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

WebResource pictureAt(const NSString &url) {
  const std::string bytes = "GIF89a\x2c\x01\xc8\0"s;
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
}

TEST(PageAttributes, HeadsSayWhatPagesAre) {
  HTMLDocument document = HTMLDocument::documentWithText(
      u"<title> A\n b </title><meta name=Author content=' Me '><meta name=keywords content='x, y z,,'>"
      u"<meta name=description content=d><meta name=description content=e><meta name=subject content=''>"
      u"<meta name=subject content=s><meta name=COMPANY content=c><meta name=' copyright' content=r>");
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
