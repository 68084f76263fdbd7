// SPDX-License-Identifier: Apache-2.0
//
// Pages as attributed text, as compare-styles takes it: a line of JSON for each page, which is in UTF-8. What a
// page refers to comes from files; nothing is asked of a network. A link is its address, or null.
//
//   bench-rich-text-runs PAGE...

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/Foundation/NSURL.hpp"
#include "platform/WebKit/NSAttributedStringHTML.hpp"
#include "platform/WebKit/WebResourceLoadDelegate.hpp"

namespace {

using namespace nimbo;

constexpr double kPixelsOfPoint = 4.0 / 3;

/// Allows files alone.
class FilesOnly final : public WebResourceLoadDelegate {
 public:
  NSURLRequest webViewWillSendRequest(const WebView &, std::uint32_t, const NSURLRequest &request,
                                      const NSURLResponse &, const WebDataSource &) override {
    return request.URL.isFileURL() ? request : NSURLRequest();
  }
};

NSString textOfFile(const char *path) {
  std::ifstream file(path, std::ios::binary);
  return NSString::stringWithLossyUTF8String(std::string{std::istreambuf_iterator<char>(file), {}});
}

void writeJSON(std::u16string_view text) {
  std::putchar('"');
  for (const char16_t c : text) std::printf("\\u%04x", static_cast<unsigned>(c));
  std::putchar('"');
}

void writeRun(std::u16string_view text, const TextAttributes &attributes) {
  const auto word = [](bool flag) { return flag ? "true" : "false"; };
  const NSColor color = attributes.foregroundColor.value_or(NSColor());
  std::printf("[");
  writeJSON(text);
  std::printf(
      ",{\"weight\":%u,\"italic\":%s,\"size\":%.6g,\"color\":[%u,%u,%u,%.4g],\"underline\":%s,\"strike\":%s,"
      "\"link\":",
      attributes.font.weight, word(attributes.font.isItalic), attributes.font.pointSize * kPixelsOfPoint,
      color.red, color.green, color.blue, color.alpha / 255.0,
      word(attributes.underlineStyle != NSUnderlineStyle::none),
      word(attributes.strikethroughStyle != NSStrikethroughStyle::none));
  if (attributes.link)
    writeJSON(attributes.link.view());
  else
    std::printf("null");
  std::printf("}]");
}

void writePage(const char *path) {
  const NSURL base = NSURL::fileURLWithPath(NSString::stringWithUTF8String(path));
  const NSDictionary options = {
      {NSBaseURLDocumentOption, base.absoluteString()},
      {NSWebResourceLoadDelegateDocumentOption, SharedPointer<NSObject>(makeShared<FilesOnly>())}};
  const NSAttributedString text = initWithHTML(textOfFile(path), options);
  std::printf("{\"runs\":[");
  std::uint32_t start = 0;
  for (const AttributeRun &run : text.runs()) {
    if (start != 0) std::putchar(',');
    writeRun(text.string().view().substr(start, run.end - start), *run.attributes);
    start = run.end;
  }
  std::printf("]}\n");
}

}  // namespace

int main(int count, char **arguments) {
  for (int i = 1; i < count; ++i) writePage(arguments[i]);
  return 0;
}
