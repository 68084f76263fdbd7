// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "clients/cpp/HelperClient.hpp"

namespace nimbo {

/// Has the helper write RTFD data as the folder, tells why when it cannot, and gives the exit code.
int writeRichText(HelperClient &client, const NSData &rtfd, const std::string &folder);

}  // namespace nimbo
