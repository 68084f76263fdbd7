// SPDX-License-Identifier: Apache-2.0
//
// Where the project's own programs, libraries and data are that people do not name themselves. Any thread may
// ask.
//
//     for (const std::string &place : placesOfProgram("quiverleaf-helper"))
//       if (isProgram(place)) return place;
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Absolute paths where a program may be installed, the likeliest first: as this library and as the running
/// program find it from their own places, which works where all has been moved, and where it was to be
/// installed.
std::vector<std::string> placesOfProgram(std::string_view name);

/// The same of a file of data that is installed with the programs.
std::vector<std::string> placesOfData(std::string_view name);

/// The folder of the shared library that this code is part of, without links; empty when it is part of the
/// program.
std::string folderOfThisLibrary();

/// Whether it is a file that this process may run.
bool isProgram(const std::string &path);

/// The first place where the program is; empty when it is at none.
std::string installedProgram(std::string_view name);

}  // namespace nimbo
