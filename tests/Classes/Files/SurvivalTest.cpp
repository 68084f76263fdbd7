// SPDX-License-Identifier: Apache-2.0
//
// What is left of files when the process is killed at any system call, or when any call fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "tests/support/SystemCallFaults.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;
using Outcome = FaultyOutcome;
using Kind = SystemCallFaults::Kind;

/// The contents of all files by their paths in the folder.
struct State {
  std::map<std::string, std::string> files;

  std::string at(const std::string &path) const {
    const auto found = files.find(path);
    return found == files.end() ? "(none)" : found->second;
  }
  bool has(const std::string &content) const {
    return std::any_of(files.begin(), files.end(), [&](const auto &file) { return file.second == content; });
  }
};

State stateOf(const TemporaryFolder &folder) {
  State state;
  for (const auto &entry : fs::recursive_directory_iterator(folder.path())) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    state.files[entry.path().lexically_relative(folder.path()).native()] = {std::istreambuf_iterator(file), {}};
  }
  return state;
}

const std::string kOld = "old" + std::string(3000, 'o');
const std::string kOldest = "oldest" + std::string(3000, 'p');
const std::string kNew = "new" + std::string(200'000, 'n');
const NSData kNewData = NSData::dataWithBytes(kNew.data(), kNew.size());

struct Scenario {
  std::string name;
  std::map<std::string, std::string> files;
  std::function<bool(const TemporaryFolder &)> work;
  /// Whether what is left is in order, whatever happened.
  std::function<bool(const State &, Outcome)> isSafe;
  SystemCallFaults surroundings = {};
};

void PrintTo(const Scenario &scenario, std::ostream *stream) {
  *stream << scenario.name;
}

std::string nameOf(const testing::TestParamInfo<Scenario> &info) {
  return info.param.name;
}

std::string description(const State &state) {
  std::string text;
  for (const auto &[path, content] : state.files)
    text += path + ": " + content.substr(0, 7) + " (" + std::to_string(content.size()) + ")\n";
  return text;
}

/// The rotation of a file or of a folder with a file in it.
Scenario archiving(const std::string &inside, SystemCallFaults surroundings = {}) {
  const std::string p = "p" + inside, p0 = "p.0" + inside, p1 = "p.1" + inside;
  const auto archive = [](const TemporaryFolder &folder) { return archivePath(folder.string("p"), 2); };
  return {inside.empty() ? "Archive" : "ArchiveOfFolder",
          {{p, kNew}, {p0, kOld}, {p1, kOldest}},
          archive,
          [=](const State &state, Outcome outcome) {
            const std::string now = state.at(p), newest = state.at(p0);
            if (outcome == Outcome::answeredTrue)
              return now == "(none)" && newest == kNew && state.at(p1) == kOld;
            return (now == kNew || (outcome == Outcome::killed && newest == kNew)) &&
                   (newest == kOld || state.at(p1) == kOld);
          },
          surroundings};
}

/// What is at "a" takes the place of what is at "to/b".
Scenario updating(const char *name, const std::string &inside, SystemCallFaults surroundings = {}) {
  const std::string a = "a" + inside, b = "to/b" + inside;
  const bool isCopied = surroundings.withFoldersApart;
  return {
      name,
      {{a, kNew}, {b, kOld}},
      [](const TemporaryFolder &folder) { return updatePath(folder.string("a"), folder.string("to/b"), true); },
      [=](const State &state, Outcome outcome) {
        if (outcome == Outcome::answeredTrue) return state.at(a) == "(none)" && state.at(b) == kNew;
        // Only when the copy is in place the original may be lost, or left.
        if (outcome == Outcome::answeredFalse)
          return (state.at(a) == kNew && state.at(b) == kOld) || (isCopied && state.at(b) == kNew);
        return state.at(b) == kNew || (state.at(a) == kNew && state.has(kOld));
      },
      surroundings};
}

Scenario locking(const char *name, bool override, SystemCallFaults surroundings = {}) {
  const auto isWhole = [](const std::string &lock) { return lock.ends_with("</dict>\n</plist>\n"); };
  const bool isClaimed = surroundings.withoutRenameFlags;
  return {name,
          override ? std::map<std::string, std::string>{{"to/f.lock", kOld}}
                   : std::map<std::string, std::string>{{"f", kOld}},
          [=](const TemporaryFolder &folder) {
            return static_cast<bool>(lockFileAtPath(folder.string("to/f"), override));
          },
          [=](const State &state, Outcome outcome) {
            const std::string lock = state.at("to/f.lock"), before = override ? kOld : "(none)";
            if (outcome != Outcome::killed)
              return outcome == Outcome::answeredTrue ? isWhole(lock) : lock == before;
            return isWhole(lock) || lock == before || (isClaimed && lock.empty());
          },
          surroundings};
}

Scenario writing(const char *name, std::map<std::string, std::string> files,
                 std::function<bool(const NSString &)> write, std::string written) {
  const std::string before = files.empty() ? "(none)" : files.begin()->second;
  return {name, std::move(files), [=](const TemporaryFolder &folder) { return write(folder.string("f")); },
          [=](const State &state, Outcome outcome) {
            const std::string now = state.at("f");
            return now == written || (outcome != Outcome::answeredTrue && now == before);
          }};
}

std::vector<Scenario> scenarios() {
  const SystemCallFaults apart{.withFoldersApart = true}, claiming{.withoutRenameFlags = true};
  const auto atomic = [](const NSString &path) { return writeDataToFile(kNewData, path, true); };
  std::vector<Scenario> all = {
      archiving(""),
      archiving("/file"),
      archiving("", claiming),
      updating("Update", ""),
      updating("UpdateOfFolder", "/file"),
      updating("UpdateOfFolderByClaims", "/file", claiming),
      updating("UpdateAcross", "", apart),
      updating("UpdateOfFolderAcross", "/b/c/file", apart),
      locking("Lock", false),
      locking("LockByClaim", false, claiming),
      locking("LockOverridden", true),
      writing("AtomicWrite", {{"f", kOld}}, atomic, kNew),
      writing("AtomicWriteOfNewFile", {}, atomic, kNew),
      writing(
          "Append", {{"f", kOld}}, [](const NSString &path) { return writeData(kNewData, path, true); },
          kOld + kNew),
  };
  all[2].name += "ByClaims";
  return all;
}

class Survival : public testing::TestWithParam<Scenario> {
 protected:
  /// Runs the scenario with the faults at each call in turn, until there are no more.
  void runAtEachCall(SystemCallFaults faults) {
    const Scenario &scenario = GetParam();
    faults.withFoldersApart = scenario.surroundings.withFoldersApart;
    faults.withoutRenameFlags = scenario.surroundings.withoutRenameFlags;
    for (faults.call = 0;; ++faults.call) {
      const TemporaryFolder folder = TemporaryFolder::inMemory();
      for (const auto &[path, content] : scenario.files) folder.write(path, content);
      const Outcome outcome = runWithFaults(faults, [&] { return scenario.work(folder); });
      if (outcome == Outcome::notTraced) GTEST_SKIP() << "No process can be traced here.";
      if (outcome == Outcome::notReached) break;
      const State state = stateOf(folder);
      ASSERT_TRUE(scenario.isSafe(state, outcome)) << "call " << faults.call << ", error " << faults.error
                                                   << ", outcome " << static_cast<int>(outcome) << "\n"
                                                   << description(state);
      if (outcome == Outcome::killed) repeat(folder);
    }
    EXPECT_GT(faults.call, 3);
  }

  /// Who does it again, after a process was killed, does not lose what was to be kept either.
  void repeat(const TemporaryFolder &folder) {
    const Scenario &scenario = GetParam();
    scenario.work(folder);
    const State state = stateOf(folder);
    ASSERT_TRUE(!State{scenario.files}.has(kNew) || state.has(kNew)) << description(state);
  }
};

TEST_P(Survival, KeepsWhatThereWas) {
  SystemCallFaults none = GetParam().surroundings;
  const TemporaryFolder folder = TemporaryFolder::inMemory();
  for (const auto &[path, content] : GetParam().files) folder.write(path, content);
  const Outcome outcome = runWithFaults(none, [&] { return GetParam().work(folder); });
  if (outcome == Outcome::notTraced) GTEST_SKIP() << "No process can be traced here.";
  ASSERT_EQ(outcome, Outcome::answeredTrue);
  ASSERT_TRUE(GetParam().isSafe(stateOf(folder), outcome)) << description(stateOf(folder));

  runAtEachCall({.kind = Kind::kill});
  runAtEachCall({.kind = Kind::fail, .error = EIO});
#if !defined(__SANITIZE_ADDRESS__)
  // A copy of a process with all that the sanitizer keeps costs a hundred times as much.
  for (const int error : {ENOSPC, EACCES}) runAtEachCall({.kind = Kind::fail, .error = error});
  runAtEachCall({.kind = Kind::cutShort});
#endif
}

INSTANTIATE_TEST_SUITE_P(Files, Survival, testing::ValuesIn(scenarios()), nameOf);

}  // namespace
}  // namespace nimbo
