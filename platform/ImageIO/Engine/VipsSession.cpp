// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/VipsSession.hpp"

#include <dlfcn.h>

#include <algorithm>
#include <mutex>
#include <set>
#include <string>

namespace nimbo::detail {
namespace {

/// Where libvips looks for what it finds by its own place otherwise.
constexpr char kHomeVariable[] = "VIPSHOME";

/// Starts libvips without its modules: those of ImageMagick, OpenSlide and Poppler take nearly all of its
/// start, and are blocked anyway. libvips itself would set the variable, too.
bool startWithoutModules() {
  const bool hasHome = g_getenv(kHomeVariable) != nullptr;
  if (!hasHome) g_setenv(kHomeVariable, "/nonexistent", FALSE);
  const bool started = VIPS_INIT("quiverleaf") == 0;
  if (!hasHome) g_unsetenv(kHomeVariable);
  return started;
}

/// These libraries are fuzzed by their own makers, though libvips does not say so.
void allowFuzzedLoaders() {
  for (const char *loader : {"VipsForeignLoadJp2k", "VipsForeignLoadJxl", "VipsForeignLoadSvg"})
    vips_operation_block_set(loader, FALSE);
}

}  // namespace

bool startVips() {
  static const bool started = [] {
    // Its remarks about damaged files are for nobody.
    g_log_set_handler(
        "VIPS", static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK | G_LOG_FLAG_FATAL | G_LOG_FLAG_RECURSION),
        [](const gchar *, GLogLevelFlags, const gchar *, gpointer) {}, nullptr);
    if (!startWithoutModules()) return false;
    vips_concurrency_set(1);
    vips_cache_set_max(0);
    vips_block_untrusted_set(TRUE);
    allowFuzzedLoaders();
    return true;
  }();
  return started;
}

void loadVipsModule(const char *name) {
  static std::set<std::string, std::less<>> known;
  static std::mutex mutex;
  const std::scoped_lock lock(mutex);
  Dl_info library;
  if (!known.emplace(name).second || ::dladdr(reinterpret_cast<const void *>(&vips_init), &library) == 0)
    return;
  const std::string file = library.dli_fname;
  const std::string folder = file.substr(0, file.rfind('/') + 1) + "vips-modules-" +
                             std::to_string(vips_version(0)) + '.' + std::to_string(vips_version(1));
  // It has no suffix of libraries, which is added. Its types stay as long as the process.
  if (GModule *module = g_module_open((folder + "/vips-" + name).c_str(), G_MODULE_BIND_LOCAL))
    g_module_make_resident(module);
  allowFuzzedLoaders();
}

VipsInput::VipsInput(const ImageInput &input, const Deadline &deadline) : input_(input), deadline_(deadline) {
  using Read = gint64 (*)(VipsSourceCustom *, void *, gint64, gpointer);
  using Seek = gint64 (*)(VipsSourceCustom *, gint64, int, gpointer);
  const Read reader = [](VipsSourceCustom *, void *buffer, gint64 length, gpointer self) -> gint64 {
    return static_cast<VipsInput *>(self)->read(buffer, length);
  };
  const Seek seeker = [](VipsSourceCustom *, gint64 offset, int whence, gpointer self) -> gint64 {
    return static_cast<VipsInput *>(self)->seek(offset, whence);
  };
  VipsSourceCustom *source = vips_source_custom_new();
  g_signal_connect(source, "read", reinterpret_cast<GCallback>(reader), this);
  g_signal_connect(source, "seek", reinterpret_cast<GCallback>(seeker), this);
  source_.reset(&source->parent_object);
}

std::int64_t VipsInput::read(void *buffer, std::int64_t length) {
  if (deadline_.isOver()) return -1;
  const std::int64_t got = readBytes(input_, buffer, length, position_);
  position_ += std::max<std::int64_t>(got, 0);
  return got;
}

std::int64_t VipsInput::seek(std::int64_t offset, int whence) {
  const std::int64_t start = whence == SEEK_SET   ? 0
                             : whence == SEEK_CUR ? position_
                                                  : static_cast<std::int64_t>(input_.size());
  if (offset < -start || offset > INT64_MAX - start) return -1;
  return position_ = start + offset;
}

}  // namespace nimbo::detail
