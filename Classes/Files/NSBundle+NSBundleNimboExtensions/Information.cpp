// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSBundle+NSBundleNimboExtensions/Information.hpp"

#include "platform/Foundation/NSBundleLocalization.hpp"

namespace nimbo {
inline namespace NSBundleNimboExtensions {

NSString getShortVersionString(const NSBundle &bundle) {
  return bundle.objectForInfoDictionaryKey(u"CFBundleShortVersionString"_ns).string();
}

NSString getInfoString(const NSBundle &bundle) {
  return bundle.objectForInfoDictionaryKey(u"CFBundleGetInfoString"_ns).string();
}

NSString mainNibFile(const NSBundle &bundle) {
  return bundle.objectForInfoDictionaryKey(u"NSMainNibFile"_ns).string();
}

NSString bundleName(const NSBundle &bundle) {
  return bundle.objectForInfoDictionaryKey(u"CFBundleName"_ns).string();
}

NSString localizedBundleName(const NSBundle &bundle) {
  return localizedObjectForInfoDictionaryKey(bundle, u"CFBundleName"_ns).string();
}

}  // namespace NSBundleNimboExtensions
}  // namespace nimbo
