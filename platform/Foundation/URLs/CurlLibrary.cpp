// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/URLs/CurlLibrary.hpp"

#include <dlfcn.h>

#include <optional>
#include <type_traits>

#include "platform/Foundation/NSLog.hpp"

namespace nimbo::detail {
namespace {

/// The library by the name of its interface, which has not changed since 2006.
constexpr const char *kLibrary = "libcurl.so.4";

std::optional<CurlLibrary> load() {
  void *const library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
  if (!library) {
    NSLog(NSString::stringWithUTF8String(dlerror()));
    return std::nullopt;
  }
  CurlLibrary functions;
  bool isWhole = true;
  const auto find = [&](auto &function, const char *name) {
    function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(library, name));
    isWhole = isWhole && function;
  };
  decltype(&::curl_global_init) initialize = nullptr;
  find(initialize, "curl_global_init");
  find(functions.easy_init, "curl_easy_init");
  find(functions.easy_cleanup, "curl_easy_cleanup");
  find(functions.easy_setopt, "curl_easy_setopt");
  find(functions.easy_getinfo, "curl_easy_getinfo");
  find(functions.easy_strerror, "curl_easy_strerror");
  find(functions.multi_init, "curl_multi_init");
  find(functions.multi_cleanup, "curl_multi_cleanup");
  find(functions.multi_setopt, "curl_multi_setopt");
  find(functions.multi_add_handle, "curl_multi_add_handle");
  find(functions.multi_remove_handle, "curl_multi_remove_handle");
  find(functions.multi_perform, "curl_multi_perform");
  find(functions.multi_poll, "curl_multi_poll");
  find(functions.multi_info_read, "curl_multi_info_read");
  if (!isWhole || initialize(CURL_GLOBAL_DEFAULT) != CURLE_OK) return std::nullopt;
  return functions;
}

}  // namespace

const CurlLibrary *CurlLibrary::shared() {
  static const std::optional<CurlLibrary> library = load();
  return library ? &*library : nullptr;
}

}  // namespace nimbo::detail
