// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/WebResourceLoadDelegate.hpp"

namespace nimbo {

WebResourceLoadDelegate::~WebResourceLoadDelegate() = default;

bool WebResourceLoadDelegate::mayConnectToAddress(const sockaddr &) {
  return true;
}

}  // namespace nimbo
