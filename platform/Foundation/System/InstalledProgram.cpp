// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/InstalledProgram.hpp"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace nimbo {
namespace {

using std::filesystem::path;

/// It lies in the program or shared library that this code is part of.
const char landmark = 0;

/// The folder of the running program, without links; empty when the system does not tell.
path folderOfThisProgram() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

/// A file in each of the folders, once.
std::vector<std::string> placesIn(const std::vector<path> &folders, std::string_view name) {
  std::vector<std::string> places;
  for (const path &folder : folders) {
    std::string place = (folder / name).lexically_normal().string();
    if (std::ranges::find(places, place) == places.end()) places.push_back(std::move(place));
  }
  return places;
}

}  // namespace

std::string folderOfThisLibrary() {
  Dl_info information = {};
  link_map *object = nullptr;
  if (::dladdr1(&landmark, &information, reinterpret_cast<void **>(&object), RTLD_DL_LINKMAP) == 0) return {};
  if (!*object->l_name) return {};
  std::error_code error;
  return std::filesystem::canonical(object->l_name, error).parent_path().string();
}

std::vector<std::string> placesOfProgram(std::string_view name) {
  std::vector<path> folders;
  if (const path library = folderOfThisLibrary(); !library.empty())
    folders.push_back(library / QUIVERLEAF_PROGRAMS_FROM_LIBRARY);
  if (const path program = folderOfThisProgram(); !program.empty())
    folders.insert(folders.end(), {program, program / QUIVERLEAF_PROGRAMS_FROM_PROGRAM});
  folders.emplace_back(QUIVERLEAF_PROGRAMS);
  return placesIn(folders, name);
}

std::vector<std::string> placesOfData(std::string_view name) {
  std::vector<path> folders;
  if (const path library = folderOfThisLibrary(); !library.empty())
    folders.push_back(library / QUIVERLEAF_DATA_FROM_LIBRARY);
  if (const path program = folderOfThisProgram(); !program.empty())
    folders.push_back(program / QUIVERLEAF_DATA_FROM_PROGRAM);
  folders.emplace_back(QUIVERLEAF_DATA);
  return placesIn(folders, name);
}

bool isProgram(const std::string &file) {
  std::error_code error;
  return std::filesystem::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0;
}

std::string installedProgram(std::string_view name) {
  const std::vector<std::string> places = placesOfProgram(name);
  const auto found = std::ranges::find_if(places, isProgram);
  return found == places.end() ? std::string() : *found;
}

}  // namespace nimbo
