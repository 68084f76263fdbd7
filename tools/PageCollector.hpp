// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/WebKit/WebArchive.hpp"
#include "tools/PageReferences.hpp"

namespace nimbo {

/// Makes a web archive of a page on this machine, with its images, its sheets, what these import and use, and
/// its frames, which are archives in it. Nothing is loaded from anywhere else.
///
///     PageCollector collector([](const std::string &part, const std::string &reason) { tell(part, reason); });
///     const WebArchive archive = collector.archiveOfPage(path, &error);
class PageCollector {
 public:
  /// Parts behind so many bytes in all are left out.
  static constexpr std::uint64_t kMaximumBytes = 512u << 20;

  /// Is told which part is left out, as the page names it, and why.
  using Missing = std::function<void(const std::string &part, const std::string &reason)>;

  explicit PageCollector(Missing missing) : missing_(std::move(missing)) {}

  /// The archive; nil when the page itself cannot be read, and `*error` says why.
  WebArchive archiveOfPage(const NSString &path, NSError *error);

 private:
  struct Page;

  WebArchive archiveOfPage(const WebResource &page, const Page *parent);
  void collect(const PageReference &reference, const NSURL &base, Page &page);
  WebResource resourceAt(const NSURL &URL, ReferenceKind kind, const NSString &frameName, NSError *error);

  Missing missing_;
  std::uint64_t bytes_ = kMaximumBytes;
  std::uint32_t parts_ = WebArchive::kMaximumParts;
};

}  // namespace nimbo
