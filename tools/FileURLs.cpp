// SPDX-License-Identifier: Apache-2.0
#include "tools/FileURLs.hpp"

#include <string_view>

#include "platform/Foundation/URLs/PercentEscapes.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "tools/CommandLine.hpp"

namespace nimbo {

std::string pathOfFileArgument(const std::string &argument) {
  constexpr std::string_view kStart = "file://";
  std::string_view rest = argument;
  if (!startsWithASCIINoCase(rest, kStart)) return argument;
  rest.remove_prefix(kStart.size());
  rest = rest.substr(0, rest.find_first_of("?#"));
  const std::size_t start = rest.find('/');
  const std::string_view host = rest.substr(0, start);
  if (!host.empty() && !equalsASCIINoCase(host, "localhost"))
    throw UsageError("'" + argument + "' is a file of another machine");
  std::string path = start == rest.npos ? std::string() : bytesByReplacingPercentEscapes(rest.substr(start));
  if (path.empty() || path.find('\0') != path.npos) throw UsageError("'" + argument + "' names no file");
  return path;
}

}  // namespace nimbo
