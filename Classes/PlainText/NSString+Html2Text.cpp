// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/NSString+Html2Text.hpp"

#include <new>
#include <utility>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Markup/NSString+XmlExtensions.hpp"
#include "Classes/PlainText/PlainTextHandler.hpp"

namespace nimbo {
inline namespace Html2Text {

namespace {

/// The longest page whose length times 8 is below 0x7fffffff.
constexpr std::uint32_t kLongestPage = 0x0fffffff;

}  // namespace

NSString _convertHtml2PlainTextUsingHandler(const NSString &page, TagHandler handler,
                                            const PlainTextOptions &options, bool *junkFound) {
  initLowerCharsTable();
  initUpperCharsTable();
  if (junkFound) *junkFound = false;
  if (page.length() > kLongestPage) return page;
  try {
    PlainTextRecord record(options);
    // The handlers decode into memory of their own, so that the units need not be copied.
    const bool isScanned = parseXmlWithHandler(page, handler, &record, false);
    if (options.onlyBody && isScanned && !record.hasText()) {
      record.restartEverywhere();
      parseXmlWithHandler(page, handler, &record, false);
    }
    if (!record.hasText()) return page;
    if (junkFound) *junkFound = record.isJunkFound();
    return std::move(record).text();
  } catch (const std::bad_alloc &) {
    if (junkFound) *junkFound = false;
    return page;
  }
}

NSString stringByConvertingHtml2PlainText(const NSString &page) {
  return _convertHtml2PlainTextUsingHandler(page, PlainTextHandler, {}, nullptr);
}

NSString stringByConvertingHtml2ReformattedPlainText(const NSString &page) {
  return _convertHtml2PlainTextUsingHandler(page, PlainTextHandler, {.reformat = true}, nullptr);
}

NSString stringByConvertingHtml2PlainTextNonUmlauted(const NSString &page, Flag nonUmlauted) {
  return _convertHtml2PlainTextUsingHandler(page, PlainTextHandler, {.nonUmlauted = nonUmlauted}, nullptr);
}

NSString stringByConvertingHtml2PlainTextNonUmlauted(const NSString &page, Flag nonUmlauted, Flag reformat,
                                                     Flag onlyBody, Flag googleTags) {
  return stringByConvertingHtml2PlainTextNonUmlauted(page, nonUmlauted, reformat, onlyBody, false, nullptr,
                                                     googleTags);
}

NSString stringByConvertingHtml2PlainTextNonUmlauted(const NSString &page, Flag nonUmlauted, Flag reformat,
                                                     Flag onlyBody, Flag removeJunk, bool *junkFound,
                                                     Flag googleTags) {
  return stringByConvertingHtml2PlainTextEntities(page, true, true, nonUmlauted, reformat, onlyBody, removeJunk,
                                                  junkFound, googleTags);
}

NSString stringByConvertingHtml2PlainTextEntities(const NSString &page, Flag entities, Flag stdEntities,
                                                  Flag nonUmlauted, Flag reformat, Flag onlyBody,
                                                  Flag removeJunk, bool *junkFound, Flag googleTags) {
  return _convertHtml2PlainTextUsingHandler(page, PlainTextHandler,
                                            {.entities = entities,
                                             .stdEntities = stdEntities,
                                             .nonUmlauted = nonUmlauted,
                                             .reformat = reformat,
                                             .onlyBody = onlyBody,
                                             .removeJunk = removeJunk,
                                             .googleTags = googleTags},
                                            junkFound);
}

NSString stringByConvertingHtml2SimplifiedPlainText(const NSString &page) {
  return _convertHtml2PlainTextUsingHandler(page, SimplePlainTextHandler, {.onlyBody = true}, nullptr);
}

}  // namespace Html2Text
}  // namespace nimbo
