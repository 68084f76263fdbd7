// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/UpdateCheck.hpp"

#include "Classes/Files/NSBundle+NSBundleNimboExtensions/Information.hpp"
#include "Classes/Strings/NSString+Sorting.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Schemes.hpp"
#include "platform/Foundation/NSBundleLocalization.hpp"
#include "platform/Foundation/NSDataURLLoading.hpp"
#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

/// Nil when there is no list.
NSDictionary loadedList(const UpdateCheck &check) {
  if (!check.list) return NSDictionary();
  const NSData data = dataWithContentsOfURL(check.list, {.deadline = Deadline::after(check.timeLimitSeconds),
                                                         .maximumBytes = UpdateCheck::kMaximumListBytes});
  return NSPropertyListSerialization::propertyListFromData(data).dictionary();
}

NSString localized(const UpdateCheck &check, const NSString &text) {
  return localizedStringForKey(check.library, text, NSString(), u"Bundle"_ns);
}

void offer(const UpdateCheck &check, const NSString &name, const NSString &version, const NSString &download) {
  const NSURL page = NSURL::URLWithString(download);
  const FormatArgument arguments[] = {name, version};
  const NSString message = localized(
      check, u"A new version of %@ is available (%@). Would you like to download the new version now?"_ns);
  const auto pressed =
      check.desktop.runAlert({.title = localized(check, u"A New Version is Available"_ns),
                              .message = stringWithFormat(message, arguments),
                              .buttons = {localized(check, u"Download"_ns), localized(check, u"Cancel"_ns)},
                              .address = page});
  if (pressed != 0U) return;
  // The address comes from a server, which must not have files or programs of this machine opened.
  if (isDownloadableURL(page))
    check.desktop.openURL(page);
  else
    NSLog(u"The address of the new version is not opened: %@", download);
}

}  // namespace

bool UpdateCheck::run() const {
  const NSString version = application.objectForInfoDictionaryKey(u"CFBundleVersion"_ns).string();
  const NSString name = bundleName(application);
  const NSDictionary updates = loadedList(*this);
  const NSString listed = updates.objectForKey(name).string();
  if (!listed || !version || sortCaseInsensitiveAscending(version, listed) == NSOrderedSame) {
    desktop.runAlert({.title = localized(*this, u"Your software is up-to-date"_ns)});
    return false;
  }
  if (const NSString download = updates.objectForKey(u"Download"_ns).string())
    offer(*this, name, listed, download);
  return true;
}

NSURL updateListOfHost(const NSString &host) {
  if (host.length() == 0) return NSURL();
  const bool hasScheme =
      startsWithASCIINoCase(host.view(), "http://") || startsWithASCIINoCase(host.view(), "https://");
  return NSURL::URLWithString(hasScheme ? stringWithFormat(u"%@/Updates.plist", host)
                                        : stringWithFormat(u"https://%@/Updates.plist", host));
}

}  // namespace nimbo
