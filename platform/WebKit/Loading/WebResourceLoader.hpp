// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "platform/Foundation/NSURL.hpp"
#include "platform/Foundation/SharedPointer.hpp"
#include "platform/Foundation/URLs/HTTPTransfers.hpp"
#include "platform/WebKit/WebResource.hpp"
#include "platform/WebKit/WebResourceLoadDelegate.hpp"

namespace nimbo::detail {

/// What the parts of one page may cost; what goes beyond is not loaded.
struct WebLoadLimits {
  std::size_t resources = 1000;
  std::size_t bytesOfResource = std::size_t{32} << 20;
  std::size_t bytesInAll = std::size_t{256} << 20;
  std::size_t connections = 8;
  int redirects = 10;
};

/// Loads what a page refers to: files, "data" URLs, and over HTTP, several at once. Every request goes past the
/// delegate. Used by one thread.
class WebResourceLoader {
 public:
  /// A part that was not loaded, or not whole.
  struct Failure {
    NSURL URL;
    /// A clause that reads well behind the URL.
    std::string reason;
  };

  /// The delegate may be null: then everything is loaded.
  WebResourceLoader(SharedPointer<WebResourceLoadDelegate> delegate, WebView webView, WebDataSource dataSource,
                    const WebLoadLimits &limits = WebLoadLimits());

  /// Resources that are at hand: they are not asked for.
  void provide(std::span<const WebResource> resources);

  /// What the absolute URLs stand for, in their order, each asked for once by all calls: nil where nothing
  /// came, and the beginning of what had not come at the view's deadline or goes beyond a limit. Throws
  /// std::bad_alloc.
  std::vector<WebResource> load(std::span<const NSURL> urls);

  /// What was not loaded so far, by any call.
  const std::vector<Failure> &failures() const { return failures_; }

 private:
  struct Request;

  void begin(Request &request);
  void beginRemote(Request &request);
  void finish(Request &request, HTTPAnswer answer);
  void keep(Request &request, const NSData &data, const NSString &MIMEType, const NSString &charset);
  void fail(const Request &request, std::string reason);

  SharedPointer<WebResourceLoadDelegate> delegate_;
  WebView webView_;
  WebDataSource dataSource_;
  WebLoadLimits limits_;
  /// By URL without fragment; nil where nothing came.
  std::map<std::u16string, WebResource, std::less<>> known_;
  std::size_t loadedResources_ = 0;
  std::size_t bytesLeft_;
  HTTPTransfers transfers_;
  std::vector<Failure> failures_;
};

}  // namespace nimbo::detail
