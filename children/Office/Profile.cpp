// SPDX-License-Identifier: Apache-2.0
#include "children/Office/Profile.hpp"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace nimbo {
namespace {

struct Setting {
  const char *path, *name, *value;
};

constexpr const char *kNever = "2";

constexpr Setting kSettings[] = {
    {"Office.Common/Security/Scripting", "MacroSecurityLevel", "3"},
    {"Office.Common/Security/Scripting", "DisableMacrosExecution", "true"},
    {"Office.Common/Security/Scripting", "DisableActiveContent", "true"},
    {"Office.Common/Security/Scripting", "BlockUntrustedRefererLinks", "true"},
    {"Office.Common/Misc", "FirstRun", "false"},
    {"Office.Common/History", "PickListSize", "0"},
    {"Office.Common/Save/Document", "AutoSave", "false"},
    {"Office.Common/Load", "UserDefinedSettings", "false"},
    {"Office.Recovery/AutoSave", "Enabled", "false"},
    {"Office.Recovery/RecoveryInfo", "Enabled", "false"},
    {"Office.Writer/Content/Update", "Link", kNever},
    {"Office.Writer/Content/Update", "Field", "false"},
    {"Office.Writer/Content/Update", "Chart", "false"},
    {"Office.Calc/Content/Update", "Link", kNever},
};

}  // namespace

bool writeProfile(const std::string &folder) {
  std::error_code error;
  std::filesystem::create_directories(folder + "/user", error);
  std::ofstream file(folder + "/user/registrymodifications.xcu");
  file << R"(<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry" xmlns:xs="http://www.w3.org/2001/XMLSchema">
)";
  for (const auto &[path, name, value] : kSettings)
    file << "<item oor:path=\"/org.openoffice." << path << "\"><prop oor:name=\"" << name
         << "\" oor:op=\"fuse\"><value>" << value << "</value></prop></item>\n";
  file << "</oor:items>\n";
  return static_cast<bool>(file.flush());
}

}  // namespace nimbo
