// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <set>

#include "Classes/Files/NSBundle+NSBundleNimboExtensions.hpp"
#include "platform/Foundation/NSObject.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"
#include "tests/support/CodeBundle.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

std::string information(const std::string &rest) {
  return "{ CFBundleExecutable = \"library.so\"; " + rest + " }";
}

/// The last parts of their paths, as a set in order.
std::set<std::string> names(const std::vector<NSBundle> &bundles) {
  std::set<std::string> names;
  for (const NSBundle &bundle : bundles)
    names.insert(fs::path(bundle.bundlePath().fileSystemRepresentation().value()).filename());
  return names;
}

TEST(Plugins, AreTheBundlesOfAFolderThatHaveTheClass) {
  const TemporaryFolder folder;
  const std::string greeter = "NimboClasses = { Greeter = greeterClass; NSObject = rootClass; };";
  folder.write("plugins/file.bundle", "{ }");
  fs::create_directory(folder.path() / "plugins/folder.bundle");
  fs::create_symlink("nowhere", folder.path() / "plugins/dead.bundle");
  writeCodeBundle(folder, "plugins/a.bundle", information(greeter + "NSPrincipalClass = Greeter;"),
                  CLASSES_TEST_PLUGIN);
  writeCodeBundle(folder, "plugins/b.bundle", information(greeter + "NSPrincipalClass = NSObject;"),
                  CLASSES_TEST_PLUGIN);
  writeCodeBundle(folder, "elsewhere/c.bundle", information(greeter), CLASSES_TEST_PLUGIN);
  fs::permissions(folder.path() / "elsewhere", fs::perms(0755));
  fs::permissions(folder.path() / "plugins", fs::perms(0755));
  fs::create_symlink("../elsewhere/c.bundle", folder.path() / "plugins/link");
  folder.write("plugins/.hidden.bundle/Contents/Info.plist", information(greeter));
  const NSString path = folder.string("plugins");
  EXPECT_EQ(names(loadPluginsAtPath(path)),
            (std::set<std::string>{".hidden.bundle", "a.bundle", "b.bundle", "c.bundle"}));
  EXPECT_EQ(names(loadPluginsOfClassName(u"Greeter"_ns, path)),
            (std::set<std::string>{"a.bundle", "b.bundle", "c.bundle"}));
  EXPECT_EQ(names(loadPluginsOfClass(NSObject::rootClass(), path)), std::set<std::string>{"b.bundle"});
  for (const NSString &other : {folder.string("none"), folder.string("plugins/file.bundle"), NSString()})
    EXPECT_TRUE(loadPluginsAtPath(other).empty());
  EXPECT_TRUE(loadPluginsOfClassName(u"Other"_ns, path).empty());

  const fs::path working = fs::current_path();
  fs::current_path(folder.path());
  for (const NSBundle &plugin : loadPluginsAtPath(u"plugins"_ns))
    EXPECT_TRUE(plugin.bundlePath().view().starts_with(u"/"));
  fs::current_path(working);
}

TEST(Frameworks, AreLoadedFromConfiguredFoldersAndFoundByConfiguredIdentifiers) {
  const TemporaryFolder folder;
  const std::string identifier = "test." + folder.path().filename().native();
  writeCodeBundle(folder, "x.framework", information("CFBundleIdentifier = \"" + identifier + "\";"),
                  CLASSES_TEST_PLUGIN);
  folder.write("nocode.framework/Contents/Info.plist", "{ }");
  NSUserDefaults &defaults = NSUserDefaults::standardUserDefaults();
  const struct {
    NSString folderKey;
    bool (*load)(const NSString &);
    NSString identifierKey;
    NSBundle (*bundle)();
  } cases[] = {{u"SystemFrameworksFolder"_ns, loadSystemFrameworkIfAvailable, u"NimboWebKitBundleIdentifier"_ns,
                NimboWebKitBundle},
               {u"PrivateSystemFrameworksFolder"_ns, loadPrivateSystemFrameworkIfAvailable,
                u"NimboPDFKitBundleIdentifier"_ns, NimboPDFKitBundle},
               {u"SystemFrameworksFolder"_ns, loadSystemFrameworkIfAvailable, u"NimboAppKitBundleIdentifier"_ns,
                NimboAppKitBundle},
               {u"PrivateSystemFrameworksFolder"_ns, loadPrivateSystemFrameworkIfAvailable,
                u"NimboFoundationBundleIdentifier"_ns, NimboFoundationBundle}};
  for (const auto &[folderKey, load, identifierKey, bundle] : cases) {
    EXPECT_FALSE(load(u"x.framework"_ns) || bundle());
    defaults.setObject(folder.string(""), folderKey);
    defaults.setObject(NSString::stringWithUTF8String(identifier), identifierKey);
    EXPECT_TRUE(load(u"x.framework"_ns));
    EXPECT_TRUE(bundle());
    for (const NSString &other : {u"nocode.framework"_ns, u"none.framework"_ns, u""_ns, NSString()})
      EXPECT_FALSE(load(other)) << other.UTF8String();
    defaults.removeObjectForKey(folderKey);
    defaults.removeObjectForKey(identifierKey);
  }
}

}  // namespace
}  // namespace nimbo
