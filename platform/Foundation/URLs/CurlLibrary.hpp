// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <curl/curl.h>

// The header makes a macro of this name, to check types.
#undef curl_easy_setopt
#undef curl_easy_getinfo
#undef curl_multi_setopt

namespace nimbo::detail {

/// The functions of libcurl that are used. It is loaded when first needed: with its libraries it takes longer
/// to load than all else that a helper starts with, and few requests need it.
struct CurlLibrary {
  decltype(&::curl_easy_init) easy_init = nullptr;
  decltype(&::curl_easy_cleanup) easy_cleanup = nullptr;
  decltype(&::curl_easy_setopt) easy_setopt = nullptr;
  decltype(&::curl_easy_getinfo) easy_getinfo = nullptr;
  decltype(&::curl_easy_strerror) easy_strerror = nullptr;
  decltype(&::curl_multi_init) multi_init = nullptr;
  decltype(&::curl_multi_cleanup) multi_cleanup = nullptr;
  decltype(&::curl_multi_setopt) multi_setopt = nullptr;
  decltype(&::curl_multi_add_handle) multi_add_handle = nullptr;
  decltype(&::curl_multi_remove_handle) multi_remove_handle = nullptr;
  decltype(&::curl_multi_perform) multi_perform = nullptr;
  decltype(&::curl_multi_poll) multi_poll = nullptr;
  decltype(&::curl_multi_info_read) multi_info_read = nullptr;

  /// The library, which stays; null when there is none. Any thread may ask.
  static const CurlLibrary *shared();
};

}  // namespace nimbo::detail
