// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "platform/Foundation/NSBundle.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSObject.hpp"
#include "tests/support/CodeBundle.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

TEST(NSBundle, LoadsItsClassesByName) {
  const TemporaryFolder folder;
  const std::string identifier = "test." + folder.path().filename().native();
  const NSString path =
      writeCodeBundle(folder, "x.bundle",
                      "{ CFBundleIdentifier = \"" + identifier +
                          "\"; CFBundleExecutable = \"library.so\"; NSPrincipalClass = Greeter;"
                          " NimboClasses = { Greeter = greeterClass; NSObject = rootClass; }; }",
                      CLASSES_TEST_PLUGIN);
  fs::create_symlink("x.bundle", folder.path() / "link");
  const NSBundle bundle = NSBundle::bundleWithPath(path);
  const NSString name = NSString::stringWithUTF8String(identifier);
  ASSERT_TRUE(bundle);
  EXPECT_EQ(bundle.bundleIdentifier(), name);
  EXPECT_FALSE(bundle.isLoaded() || NSBundle::bundleWithIdentifier(name));
  NSError error;
  ASSERT_TRUE(bundle.load(&error)) << error.localizedFailureReason.UTF8String();
  EXPECT_TRUE(NSBundle(folder.string("link")).isLoaded());
  EXPECT_TRUE(NSBundle(folder.string("link/")).load());
  EXPECT_EQ(NSBundle::bundleWithIdentifier(name).bundlePath(), path);
  const ClassDescription *const greeter = bundle.principalClass();
  ASSERT_TRUE(greeter);
  EXPECT_EQ(greeter, bundle.classNamed(u"Greeter"_ns));
  EXPECT_EQ(greeter->make()->performSelector(u"greet:"_ns, u"you"_ns), id(u"Hello you"_ns));
  EXPECT_EQ(bundle.classNamed(u"NSObject"_ns), &NSObject::rootClass());
}

TEST(NSBundle, SaysWhyItHasNoClass) {
  const TemporaryFolder folder;
  const std::string named = "CFBundleExecutable = \"library.so\"; ";
  const struct {
    std::string information;
    ErrorCode code;
  } cases[] = {
      {named, ErrorCode::other},
      {named + "NimboClasses = (Greeter);", ErrorCode::other},
      {named + "NimboClasses = { Other = greeterClass; };", ErrorCode::other},
      {named + "NimboClasses = { Greeter = (greeterClass); };", ErrorCode::other},
      {named + "NimboClasses = { Greeter = greeterClas; };", ErrorCode::damaged},
      {named + "NimboClasses = { Greeter = noClass; };", ErrorCode::damaged},
      {named + "NimboClasses = { Greeter = rootClass; };", ErrorCode::damaged},
      {named + "NimboClasses = { Greeter = failingClass; };", ErrorCode::damaged},
      {"NimboClasses = { Greeter = greeterClass; };", ErrorCode::damaged},
      {"CFBundleExecutable = none; NimboClasses = { Greeter = greeterClass; };", ErrorCode::noSuchFile},
      {named + "NimboClasses = { Greeter = abort; };", ErrorCode::damaged},
      {"CFBundleExecutable = \"$ORIGIN\"; NimboClasses = { Greeter = greeterClass; };", ErrorCode::damaged}};
  int number = 0;
  for (const auto &[information, code] : cases) {
    const NSBundle bundle(
        writeCodeBundle(folder, std::to_string(number++), "{" + information + "}", CLASSES_TEST_PLUGIN));
    NSError error, principalError;
    EXPECT_FALSE(bundle.classNamed(u"Greeter"_ns, &error)) << information;
    EXPECT_EQ(error.errorCode(), code) << information << error.localizedFailureReason.UTF8String();
    EXPECT_FALSE(bundle.principalClass(&principalError)) << information;
    EXPECT_TRUE(principalError);
  }
  fs::permissions(folder.path() / "0", fs::perms::others_write, fs::perm_options::add);
  EXPECT_TRUE(NSBundle(folder.string("0")).load());  // It was loaded when nobody else could change it.
  const NSString unnamed = folder.string("8");
  fs::permissions(folder.path() / "8", fs::perms::others_write, fs::perm_options::add);
  NSError error;
  EXPECT_FALSE(NSBundle(unnamed).load(&error));
  EXPECT_EQ(error.errorCode(), ErrorCode::unreadable);
  EXPECT_FALSE(NSBundle().load() || NSBundle().isLoaded());
}

TEST(NSBundle, DoesNotLoadALibraryThatWasCutShort) {
  const TemporaryFolder folder;
  for (const std::uintmax_t length : {0, 50, 200, 4'000, 9'000}) {
    const std::string name = std::to_string(length);
    const NSBundle bundle(
        writeCodeBundle(folder, name, "{ CFBundleExecutable = \"library.so\"; }", CLASSES_TEST_PLUGIN));
    fs::resize_file(folder.path() / name / "Contents/Linux/library.so", length);
    NSError error;
    EXPECT_FALSE(bundle.load(&error)) << length;
    EXPECT_EQ(error.errorCode(), ErrorCode::damaged) << length;
    // Without a whole header it is only the dynamic linker that finds fault with it.
    const std::string reason = error.localizedFailureReason.UTF8String(),
                      library = folder.string(name + "/Contents/Linux/library.so: ").UTF8String();
    EXPECT_TRUE(length < 64 ? reason.starts_with(library) : reason == "its library is cut short") << reason;
  }
}

TEST(NSBundle, IsWhereItsInformationIs) {
  const TemporaryFolder folder;
  folder.write("file", "{ }");
  folder.write("broken/Contents/Info.plist", "{ ");
  folder.write("array/Contents/Info.plist", "()");
  folder.write("here/Contents/Info.plist", "{ }");
  for (const char *name : {"file", "broken", "array", "", "none"})
    EXPECT_FALSE(NSBundle::bundleWithPath(folder.string(name))) << name;
  EXPECT_FALSE(NSBundle::bundleWithPath(NSString()));
  EXPECT_FALSE(NSBundle().builtInPlugInsPath());
  const fs::path before = fs::current_path();
  fs::current_path(folder.path() / "here");
  EXPECT_FALSE(NSBundle().infoDictionary());
  fs::current_path(before);
  folder.write("empty/Contents/Info.plist", "{ }");
  const NSBundle empty = NSBundle::bundleWithPath(folder.string("empty"));
  ASSERT_TRUE(empty);
  EXPECT_FALSE(empty.bundleIdentifier());
  EXPECT_EQ(empty.builtInPlugInsPath(), folder.string("empty/Contents/PlugIns"));
  EXPECT_TRUE(NSBundle::mainBundle().load() && NSBundle::mainBundle().isLoaded());
}

}  // namespace
}  // namespace nimbo
