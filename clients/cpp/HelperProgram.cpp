// SPDX-License-Identifier: Apache-2.0
#include "clients/cpp/HelperProgram.hpp"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "clients/cpp/AbsolutePath.hpp"

namespace nimbo {
namespace {

using std::filesystem::path;

constexpr const char *kHelperProgram = "quiverleaf-helper";
/// Where the system looks for programs when `$PATH` is not set.
constexpr const char *kUsualPath = "/bin:/usr/bin";

/// It lies in the program or shared library that this code is part of.
const char landmark = 0;

bool isProgram(const path &file) {
  std::error_code error;
  return std::filesystem::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0;
}

/// The folder of the shared library that this code is part of; empty when it is part of the program.
path folderOfLibrary() {
  Dl_info information = {};
  link_map *object = nullptr;
  if (::dladdr1(&landmark, &information, reinterpret_cast<void **>(&object), RTLD_DL_LINKMAP) == 0) return {};
  std::error_code error;
  return *object->l_name ? std::filesystem::canonical(object->l_name, error).parent_path() : path();
}

/// Where the helper may be installed, the likeliest place first.
std::vector<std::string> helperPlaces() {
  std::vector<path> folders;
  if (const path library = folderOfLibrary(); !library.empty())
    folders.push_back(library / QUIVERLEAF_HELPER_FOLDER_FROM_LIBRARY);
  std::error_code error;
  if (const path program = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
      !program.empty())
    folders.insert(folders.end(), {program, program / QUIVERLEAF_HELPER_FOLDER_FROM_PROGRAM});
  folders.emplace_back(QUIVERLEAF_HELPER_FOLDER);
  std::vector<std::string> places;
  for (const path &folder : folders) {
    std::string place = (folder / kHelperProgram).lexically_normal().string();
    if (std::ranges::find(places, place) == places.end()) places.push_back(std::move(place));
  }
  return places;
}

/// The program in the folders of a list as `$PATH` is one, where an empty name is the working directory.
std::string findInFolders(std::string_view list, std::string *message) {
  for (bool isLast = list.empty(); !isLast;) {
    const std::size_t end = list.find(':');
    const path place = path(list.substr(0, end)) / kHelperProgram;
    if (isProgram(place)) return absolutePath(place, message);
    isLast = end == std::string_view::npos;
    if (!isLast) list.remove_prefix(end + 1);
  }
  return {};
}

}  // namespace

std::string findHelperProgram(std::string *message) {
  if (const char *named = std::getenv("QUIVERLEAF_HELPER"); named && *named)
    return absolutePath(named, message);
  const std::vector<std::string> places = helperPlaces();
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
