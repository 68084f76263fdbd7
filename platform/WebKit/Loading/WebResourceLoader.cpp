// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Loading/WebResourceLoader.hpp"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSStringCase.hpp"
#include "platform/Foundation/System/RegularFile.hpp"
#include "platform/WebKit/Loading/DataURL.hpp"
#include "platform/WebKit/Loading/References.hpp"

namespace nimbo::detail {
namespace {

/// Redirects that lead nowhere, too.
constexpr int kFirstFailedStatus = 300;

bool isHTTP(const NSURL &url) {
  const NSString scheme = lowercaseString(url.scheme());
  return scheme == u"http"_ns || scheme == u"https"_ns;
}

/// A fragment is a place in what is loaded, and no part of the request.
std::u16string withoutFragment(const NSURL &url) {
  const NSString string = url.absoluteString();
  return std::u16string(string.view().substr(0, string.view().find(u'#')));
}

/// Servers write characters that no URL may have, as pages do.
NSURL URLOfRedirect(const NSString &string) {
  NSURL url = NSURL::URLWithString(string);
  return url ? url : URLOfReference(string.view(), NSURL());
}

}  // namespace

/// A part of the page on its way.
struct WebResourceLoader::Request {
  /// Its place among those that are loaded together.
  std::size_t place = 0;
  std::uint32_t resource = 0;
  NSURL URL;
  NSURLResponse redirectResponse = {};
  int redirects = 0;
  WebResource *result = nullptr;
};

WebResourceLoader::WebResourceLoader(SharedPointer<WebResourceLoadDelegate> delegate, WebView webView,
                                     WebDataSource dataSource, const WebLoadLimits &limits)
    : delegate_(std::move(delegate)),
      webView_(webView),
      dataSource_(std::move(dataSource)),
      limits_(limits),
      bytesLeft_(limits.bytesInAll),
      transfers_({
          .maximumBytes = limits.bytesOfResource,
          .bytesLeft = &bytesLeft_,
          .maximumConnections = limits.connections,
          // A proxy would be asked in place of the host that the delegate has allowed.
          .mayUseProxies = !delegate_,
          .mayConnect =
              [this](const sockaddr &address) { return !delegate_ || delegate_->mayConnectToAddress(address); },
      }) {}

void WebResourceLoader::provide(std::span<const WebResource> resources) {
  for (const WebResource &resource : resources)
    if (resource.URL()) known_.emplace(withoutFragment(resource.URL()), resource);
}

std::vector<WebResource> WebResourceLoader::load(std::span<const NSURL> urls) {
  std::vector<WebResource *> places;
  std::vector<Request> requests;
  for (const NSURL &url : urls) {
    const auto [place, isNew] = known_.try_emplace(withoutFragment(url));
    places.push_back(&place->second);
    if (isNew)
      requests.push_back({.place = requests.size(),
                          .resource = static_cast<std::uint32_t>(loadedResources_++),
                          .URL = url,
                          .result = &place->second});
  }
  for (Request &request : requests) begin(request);
  // Late ones are ended without another look, which would begin those that wait for their turn.
  bool isLate = false;
  while (transfers_.isBusy()) {
    std::optional<HTTPAnswer> answer;
    if (!isLate) answer = transfers_.next(webView_.deadline);
    isLate = !answer;
    if (isLate) answer = transfers_.abandon();
    Request &request = requests[answer->tag];
    finish(request, std::move(*answer));
  }
  std::vector<WebResource> resources;
  resources.reserve(places.size());
  for (const WebResource *place : places) resources.push_back(*place);
  return resources;
}

void WebResourceLoader::begin(Request &request) {
  if (!request.URL) return fail(request, "it is no URL");
  if (request.resource >= limits_.resources) return fail(request, "the page refers to too many parts");
  if (bytesLeft_ == 0) return fail(request, "the parts of the page are too large");
  if (const std::optional<DataURL> data = DataURL::ofURL(request.URL)) {
    bytesLeft_ -= std::min<std::size_t>(data->data.length(), bytesLeft_);
    keep(request, data->data, data->type.MIMEType, data->type.charset);
    return;
  }
  if (webView_.deadline.isOver()) return fail(request, "it took too long");
  if (delegate_) {
    const NSURLRequest allowed = delegate_->webViewWillSendRequest(webView_, request.resource, {request.URL},
                                                                   request.redirectResponse, dataSource_);
    if (!allowed) return fail(request, "the request was refused");
    request.URL = allowed.URL;
  }
  // Who answers over HTTP must not lead into the files of this machine.
  if (!request.URL.isFileURL() || request.redirectResponse) return beginRemote(request);
  NSError error;
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(request.URL.path(), &size, &error);
  if (!file) return fail(request, error.localizedFailureReason.UTF8String());
  const std::size_t room = std::min(limits_.bytesOfResource, bytesLeft_);
  if (size > room) return fail(request, "it is too large");
  const NSData data = readData(file.get(), size, static_cast<std::uint32_t>(room), &error);
  if (!data) return fail(request, error.localizedFailureReason.UTF8String());
  bytesLeft_ -= data.length();
  keep(request, data, NSString(), NSString());
}

void WebResourceLoader::beginRemote(Request &request) {
  if (!isHTTP(request.URL)) return fail(request, "its scheme is not loaded");
  // The library would take the first part of the path for the host, which no delegate was asked about.
  if (request.URL.host().length() == 0) return fail(request, "it has no host");
  if (!HTTPTransfers::isAvailable()) return fail(request, "libcurl is missing");
  if (!transfers_.start(request.place, request.URL)) fail(request, "it cannot be asked for");
}

void WebResourceLoader::finish(Request &request, HTTPAnswer answer) {
  if (NSURL redirect = URLOfRedirect(answer.redirect)) {
    if (++request.redirects > limits_.redirects) return fail(request, "it is redirected too often");
    request.redirectResponse = {request.URL, answer.statusCode};
    request.URL = std::move(redirect);
    return begin(request);
  }
  if (answer.statusCode >= kFirstFailedStatus)
    return fail(request, "the server answered " + std::to_string(answer.statusCode));
  if (!answer.failure.empty()) fail(request, answer.failure);
  if (answer.body.empty() && !answer.failure.empty()) return;
  const ContentTypeField type = contentTypeOfField(answer.contentType);
  keep(request, NSData::dataWithBytes(answer.body.data(), answer.body.size()), type.MIMEType, type.charset);
}

void WebResourceLoader::keep(Request &request, const NSData &data, const NSString &MIMEType,
                             const NSString &charset) {
  *request.result = WebResource::resourceWithData(data, request.URL, MIMEType, charset);
}

void WebResourceLoader::fail(const Request &request, std::string reason) {
  failures_.push_back({request.URL, std::move(reason)});
}

}  // namespace nimbo::detail
