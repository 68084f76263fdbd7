// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/EngineLibrary.hpp"

#include <dlfcn.h>

#include <functional>
#include <map>
#include <mutex>
#include <string>

#include "platform/Foundation/System/InstalledProgram.hpp"

namespace nimbo {
namespace {

/// Null, with `*error`, when the library cannot be loaded.
const void *loadEngine(const std::string &name, NSError *error) {
  const std::string file = "libnimbo-" + name + ".so." QUIVERLEAF_ENGINE_VERSION;
  const std::string folder = folderOfThisLibrary();
  if (folder.empty()) {
    setError(error, ErrorCode::other, file + " is looked for by shared libraries only");
    return nullptr;
  }
  // What it registers with other libraries outlives every use.
  void *library = ::dlopen((folder + "/quiverleaf/" + file).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  void *function = library ? ::dlsym(library, "nimboEngine") : nullptr;
  if (function) return reinterpret_cast<const void *(*)()>(function)();
  const char *message = ::dlerror();
  setError(error, ErrorCode::other, file + " cannot be loaded: " + (message ? message : "it is no engine"));
  return nullptr;
}

}  // namespace

const void *engineNamed(std::string_view name, NSError *error) {
  static std::map<std::string, const void *, std::less<>> engines;
  static std::mutex mutex;
  const std::scoped_lock lock(mutex);
  const auto known = engines.find(name);
  if (known != engines.end()) return known->second;
  const void *engine = loadEngine(std::string(name), error);
  // A passing failure, as a lack of descriptors, is not kept.
  if (engine) engines.emplace(name, engine);
  return engine;
}

}  // namespace nimbo
