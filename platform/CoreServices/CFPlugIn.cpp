// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/CFPlugIn.hpp"

#include <string>
#include <unordered_set>

#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

using FactoryFunction = void *(*)(void *allocator, const std::uint8_t *typeID);

const IUnknownVTbl &functionsOf(void *object) {
  return **static_cast<const IUnknownVTbl **>(object);
}

/// The value under a key that is a UUID, in whatever case it is written; nil when there is none.
id objectForUUID(const NSDictionary &dictionary, const CFUUIDBytes &uuid) {
  for (const auto &[key, value] : dictionary)
    if (CFUUIDCreateFromString(key) == uuid) return value;
  return id();
}

void logRefusalOnce(const NSString &bundlePath, const NSError &error) {
  static std::unordered_set<NSString, NSStringHash> logged;
  if (logged.insert(bundlePath).second)
    NSLog(u"The plug-in %@ is not loaded: %@", bundlePath, error.localizedFailureReason);
}

}  // namespace

std::optional<CFUUIDBytes> CFUUIDCreateFromString(const NSString &string) {
  constexpr std::u16string_view kPattern = u"xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  const std::u16string_view text = string.view();
  if (text.size() != kPattern.size()) return std::nullopt;
  CFUUIDBytes bytes = {};
  std::size_t digits = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (kPattern[i] == u'-') {
      if (c != u'-') return std::nullopt;
      continue;
    }
    const std::uint32_t digit = hexDigitValue(c);
    if (digit > 15) return std::nullopt;
    bytes[digits / 2] = static_cast<std::uint8_t>(bytes[digits / 2] << 4 | digit);
    ++digits;
  }
  return bytes;
}

void CFPlugInInstance::Release::operator()(void *object) const noexcept {
  functionsOf(object).Release(object);
}

CFPlugInInstance CFPlugInInstance::QueryInterface(const CFUUIDBytes &interfaceID) const {
  void *interface = nullptr;
  if (!object_ || functionsOf(get()).QueryInterface(get(), interfaceID.data(), &interface) != 0)
    return CFPlugInInstance();
  return CFPlugInInstance(interface);
}

std::optional<CFPlugIn> CFPlugInCreate(const NSString &bundlePath, NSError *error) {
  NSError failure;
  if (auto library = BundleLibrary::load(bundlePath, &failure)) return CFPlugIn(std::move(*library));
  logRefusalOnce(bundlePath, failure);
  if (error) *error = std::move(failure);
  return std::nullopt;
}

std::vector<CFUUIDBytes> CFPlugInFindFactoriesForPlugInTypeInPlugIn(const CFUUIDBytes &type,
                                                                    const CFPlugIn &plugIn) {
  std::vector<CFUUIDBytes> factories;
  const NSDictionary types = plugIn.library_.infoDictionary().objectForKey(u"CFPlugInTypes"_ns).dictionary();
  const NSArray named = objectForUUID(types, type).array();
  for (const id &element : named)
    if (const auto factory = CFUUIDCreateFromString(element.string())) factories.push_back(*factory);
  return factories;
}

CFPlugInInstance CFPlugInInstanceCreate(const CFPlugIn &plugIn, const CFUUIDBytes &factory,
                                        const CFUUIDBytes &type) {
  const NSDictionary factories =
      plugIn.library_.infoDictionary().objectForKey(u"CFPlugInFactories"_ns).dictionary();
  const NSString name = objectForUUID(factories, factory).string();
  if (name.length() == 0) return CFPlugInInstance();
  const auto function = reinterpret_cast<FactoryFunction>(plugIn.library_.symbol(name.UTF8String()));
  return function ? CFPlugInInstance(function(nullptr, type.data())) : CFPlugInInstance();
}

}  // namespace nimbo
