// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSBundle.hpp"

#include <dlfcn.h>
#include <glib.h>

#include <algorithm>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string_view>

#include "platform/Foundation/NSObject.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/System/BundleLibrary.hpp"
#include "platform/Foundation/System/RegularFile.hpp"
#include "platform/Foundation/Unicode/LanguageNames.hpp"

namespace nimbo {

namespace {

constexpr const char *kProgram = "/proc/self/exe";

/// The bundle whose executable the file is, or else the folder in which it lies.
NSBundle bundleOfFile(const std::filesystem::path &file) {
  const std::filesystem::path folder = file.parent_path();
  const bool isInBundle = folder.filename() == "Linux" && folder.parent_path().filename() == "Contents";
  const std::filesystem::path bundle = isInBundle ? folder.parent_path().parent_path() : folder;
  return NSBundle(NSString::stringWithFileSystemRepresentation(bundle.native()));
}

NSString identifierOf(const NSDictionary &info) {
  return info.objectForKey(u"CFBundleIdentifier"_ns).string();
}

/// The path without symbolic links, by which a bundle is known whatever it is called; nil when nothing is
/// there.
NSString lastingName(const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  std::error_code error;
  const std::filesystem::path real = name ? std::filesystem::canonical(*name, error) : std::filesystem::path();
  return real.empty() ? NSString() : NSString::stringWithFileSystemRepresentation(real.native());
}

/// The bundles that are loaded, in the order in which they were. Any thread may ask.
class LoadedBundles {
 public:
  static LoadedBundles &shared() {
    // It is there as long as the code that it tells of.
    static auto *const bundles = new LoadedBundles;
    return *bundles;
  }

  std::optional<BundleLibrary> libraryOf(const NSString &name) {
    const std::scoped_lock lock(mutex_);
    const auto found = std::ranges::find(loaded_, name, &Loaded::name);
    return found == loaded_.end() ? std::nullopt : std::optional(found->library);
  }
  NSBundle withIdentifier(const NSString &identifier) {
    const std::scoped_lock lock(mutex_);
    const auto found = std::ranges::find_if(
        loaded_, [&](const Loaded &each) { return identifierOf(each.library.infoDictionary()) == identifier; });
    return found == loaded_.end() ? NSBundle() : found->bundle;
  }
  /// Another thread may have loaded it meanwhile: loading is done without the lock, because the code that is
  /// loaded may ask for bundles.
  void add(const NSString &name, const NSBundle &bundle, BundleLibrary library) {
    const std::scoped_lock lock(mutex_);
    if (std::ranges::find(loaded_, name, &Loaded::name) == loaded_.end())
      loaded_.push_back({name, bundle, std::move(library)});
  }

 private:
  struct Loaded {
    NSString name;
    NSBundle bundle;
    BundleLibrary library;
  };

  std::mutex mutex_;
  std::vector<Loaded> loaded_;
};

bool isMainBundle(const NSString &name) {
  return name && name == NSBundle::mainBundle().bundlePath();
}

/// The code of the bundle, which is loaded for that; nothing, with `*error`, when it cannot be.
std::optional<BundleLibrary> libraryOfBundle(const NSBundle &bundle, NSError *error) {
  const NSString name = lastingName(bundle.bundlePath());
  if (name)
    if (auto library = LoadedBundles::shared().libraryOf(name)) return library;
  auto library = BundleLibrary::load(bundle.bundlePath(), error);
  if (library) LoadedBundles::shared().add(name, bundle, *library);
  return library;
}

/// The class, or null with `*error`.
const ClassDescription *classInLibrary(const BundleLibrary &library, const NSString &name, NSError *error) {
  using ClassFunction = const ClassDescription *(*)();
  const NSDictionary classes = library.infoDictionary().objectForKey(u"NimboClasses"_ns).dictionary();
  const NSString symbol = classes.objectForKey(name).string();
  if (symbol.length() == 0) {
    setError(error, ErrorCode::other, "it names no such class");
    return nullptr;
  }
  const auto function = reinterpret_cast<ClassFunction>(library.symbol(symbol.UTF8String()));
  const ClassDescription *found = nullptr;
  try {
    found = function ? function() : nullptr;
  } catch (...) {
    setError(error, ErrorCode::damaged, "its library fails to make the class");
    return nullptr;
  }
  if (found && found->name == name) return found;
  setError(error, ErrorCode::damaged, function ? "it answers another class" : "its library lacks the class");
  return nullptr;
}

}  // namespace

NSBundle NSBundle::bundleWithPath(const NSString &path) {
  NSBundle bundle(path);
  return bundle.infoDictionary() ? bundle : NSBundle();
}

NSBundle NSBundle::bundleWithIdentifier(const NSString &identifier) {
  if (!identifier) return NSBundle();
  NSBundle bundle = mainBundle();
  return bundle.bundleIdentifier() == identifier ? bundle : LoadedBundles::shared().withIdentifier(identifier);
}

NSBundle NSBundle::mainBundle() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink(kProgram, error);
  return error ? NSBundle() : bundleOfFile(program);
}

NSBundle NSBundle::bundleForAddress(const void *address) {
  Dl_info found = {};
  if (::dladdr(address, &found) == 0 || !found.dli_fname) return mainBundle();
  std::error_code error;
  const std::filesystem::path file = std::filesystem::canonical(found.dli_fname, error);
  // The program's own name may be relative to a folder that is no longer the current one.
  if (error || std::filesystem::equivalent(file, kProgram, error)) return mainBundle();
  return bundleOfFile(file);
}

NSDictionary NSBundle::infoDictionary(NSError *error) const {
  const NSString file =
      path_.length() > 0 ? stringByAppendingPathComponent(path_, u"Contents/Info.plist"_ns) : NSString();
  return infoDictionaryOfFile(file, error);
}

NSDictionary NSBundle::infoDictionaryOfFile(const NSString &path, NSError *error) {
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size, error);
  if (!file) return NSDictionary();
  // One byte more than may be, by which a file is known that is too large or has grown.
  const NSData data = readData(file.get(), size, kMaximumInfoBytes + 1, error);
  if (!data) return NSDictionary();
  if (data.length() > kMaximumInfoBytes) {
    setError(error, ErrorCode::tooLarge, "the information file is too large");
    return NSDictionary();
  }
  const id list = NSPropertyListSerialization::propertyListFromData(data, nullptr, error);
  if (list && !list.dictionary()) setError(error, ErrorCode::damaged, "the information file is no dictionary");
  return list.dictionary();
}

NSString NSBundle::bundleIdentifier() const {
  return identifierOf(infoDictionary());
}

NSString NSBundle::builtInPlugInsPath() const {
  return path_.length() > 0 ? stringByAppendingPathComponent(path_, u"Contents/PlugIns"_ns) : NSString();
}

bool NSBundle::load(NSError *error) const {
  return isMainBundle(lastingName(path_)) || libraryOfBundle(*this, error);
}

bool NSBundle::isLoaded() const {
  const NSString name = lastingName(path_);
  return isMainBundle(name) || (name && LoadedBundles::shared().libraryOf(name));
}

const ClassDescription *NSBundle::classNamed(const NSString &name, NSError *error) const {
  const auto library = libraryOfBundle(*this, error);
  return library ? classInLibrary(*library, name, error) : nullptr;
}

const ClassDescription *NSBundle::principalClass(NSError *error) const {
  const auto library = libraryOfBundle(*this, error);
  return library ? classInLibrary(
                       *library, library->infoDictionary().objectForKey(u"NSPrincipalClass"_ns).string(), error)
                 : nullptr;
}

id NSBundle::objectForInfoDictionaryKey(const NSString &key) const {
  return infoDictionary().objectForKey(key);
}

NSString NSBundle::executablePath() const {
  const NSString name = executableName(infoDictionary());
  if (!name) return NSString();
  return stringByAppendingPathComponent(stringByAppendingPathComponent(path_, u"Contents/Linux"_ns), name);
}

NSString NSBundle::executableName(const NSDictionary &info) {
  NSString name = info.objectForKey(u"CFBundleExecutable"_ns).string();
  if (name.length() == 0 || name.view() == u"." || name.view() == u".." ||
      name.view().find(u'/') != std::u16string_view::npos)
    return NSString();
  return name;
}

std::vector<NSString> NSBundle::preferredLocalizations() const {
  std::vector<NSString> names;
  for (const char *const *name = g_get_language_names(); *name; ++name) detail::addLocalizations(*name, names);
  return names;
}

}  // namespace nimbo
