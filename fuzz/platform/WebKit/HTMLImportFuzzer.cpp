// SPDX-License-Identifier: Apache-2.0
// Pages as attributed text, which is then written as RTF. They load nothing but what they hold themselves.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "fuzz/FuzzedText.hpp"
#include "fuzz/platform/AppKit/SoundRuns.hpp"
#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/WebKit/NSAttributedStringHTML.hpp"
#include "platform/WebKit/WebResourceLoadDelegate.hpp"

using namespace nimbo;

namespace {

/// Lets only "data" URLs be read.
class OnlyData final : public WebResourceLoadDelegate {
 public:
  NSURLRequest webViewWillSendRequest(const WebView &, std::uint32_t, const NSURLRequest &request,
                                      const NSURLResponse &, const WebDataSource &) override {
    return request.URL.scheme() == u"data"_ns ? request : NSURLRequest();
  }
  bool mayConnectToAddress(const sockaddr &) override { std::abort(); }
};

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const NSDictionary options = {{NSWebResourceLoadDelegateDocumentOption, makeShared<OnlyData>()},
                                {NSBaseURLDocumentOption, u"http://a.org/b/c"_ns}};
  DocumentAttributes attributes;
  const NSAttributedString text =
      initWithHTML(NSString::stringWithCharacters(fuzzedText(data, size)), options, &attributes);
  require(text && hasSoundRuns(text));
  const NSAttributedString read = initWithRTF(RTFFromRange(text, {0, text.length()}, attributes));
  require(read && hasSoundRuns(read));
  require(static_cast<bool>(initWithRTFD(RTFDFromRange(text, {0, text.length()}, attributes))));
  return 0;
}
