// SPDX-License-Identifier: Apache-2.0
#include "clients/cpp/HelperProgram.hpp"

#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <vector>

#include "clients/cpp/AbsolutePath.hpp"
#include "platform/Foundation/System/InstalledProgram.hpp"

namespace nimbo {
namespace {

using std::filesystem::path;

constexpr const char *kHelperProgram = "quiverleaf-helper";
/// Where the system looks for programs when `$PATH` is not set.
constexpr const char *kUsualPath = "/bin:/usr/bin";

/// The program in the folders of a list as `$PATH` is one, where an empty name is the working directory.
std::string findInFolders(std::string_view list, std::string *message) {
  for (bool isLast = list.empty(); !isLast;) {
    const std::size_t end = list.find(':');
    const path place = path(list.substr(0, end)) / kHelperProgram;
    if (isProgram(place.native())) return absolutePath(place, message);
    isLast = end == std::string_view::npos;
    if (!isLast) list.remove_prefix(end + 1);
  }
  return {};
}

}  // namespace

std::string findHelperProgram(std::string *message) {
  if (const char *named = std::getenv("QUIVERLEAF_HELPER"); named && *named)
    return absolutePath(named, message);
  const std::vector<std::string> places = placesOfProgram(kHelperProgram);
  std::string list;
  for (const std::string &place : places) {
    if (isProgram(place)) return place;
    list += (list.empty() ? "" : ", ") + place;
  }
  const char *set = std::getenv("PATH");
  const std::string folders = set ? set : kUsualPath;
  *message = kHelperProgram;
  *message += " was not found: no path to it is given, $QUIVERLEAF_HELPER is not set, and it is not at " +
              list + ", nor in PATH (" + folders + ")";
  return findInFolders(folders, message);
}

}  // namespace nimbo
