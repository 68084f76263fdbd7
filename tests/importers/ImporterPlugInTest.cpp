// SPDX-License-Identifier: Apache-2.0
#include "importers/ImporterPlugIn.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Classes/MetaData/MDImporterAttributeDictionary.hpp"
#include "platform/Foundation/NSException.hpp"
#include "platform/Foundation/NSObject.hpp"

namespace nimbo {
namespace {

/// The component object as callers see it.
class Importer {
 public:
  explicit Importer(ImportFunction function)
      : object_(static_cast<MDImporterInterfaceStruct **>(makeMetaDataImporter(kMDImporterTypeID, function))) {}
  ~Importer() { EXPECT_EQ((*object_)->Release(object_), 0u); }
  Importer(const Importer &) = delete;
  Importer &operator=(const Importer &) = delete;

  auto query(const std::uint8_t *interfaceID, void **interface) const {
    return (*object_)->QueryInterface(object_, interfaceID, interface);
  }
  MDImporterBoolean import(MDImporterAttributes *attributes) const {
    const MDImporterString path = {u"/leaf", 5, "/leaf"};
    return (*object_)->ImporterImportData(object_, attributes, &path, &path);
  }

 private:
  MDImporterInterfaceStruct **object_;
};

TEST(ImporterPlugIn, IsAComponentObject) {
  EXPECT_EQ(makeMetaDataImporter(kMDImporterInterfaceID, nullptr), nullptr);
  const Importer importer([](const NSString &, Attributes &) {});
  void *other = &other;
  EXPECT_NE(importer.query(kMDImporterTypeID, &other), 0);
  EXPECT_EQ(other, nullptr);
  EXPECT_EQ(importer.query(kMDImporterInterfaceID, &other), 0);
  ASSERT_NE(other, nullptr);
  EXPECT_EQ((*static_cast<MDImporterInterfaceStruct **>(other))->Release(other), 1u);
}

TEST(ImporterPlugIn, OnlyNSExceptionsLeaveIt) {
  MDImporterAttributeDictionary dictionary;
  const Importer standard([](const NSString &, Attributes &) { throw std::runtime_error("damaged"); });
  EXPECT_EQ(standard.import(&dictionary), 0);
  const Importer other([](const NSString &, Attributes &) { throw 1; });
  EXPECT_EQ(other.import(&dictionary), 0);
  const Importer platform([](const NSString &path, Attributes &) { throw NSException(u"Damaged"_ns, path); });
  EXPECT_THROW(platform.import(&dictionary), NSException);
}

TEST(ImporterPlugIn, ReasonsReachTheHelper) {
  const std::pair<ImportFunction, NSError> cases[] = {
      {[](const NSString &, Attributes &) { throw std::bad_alloc(); },
       NSError::errorWithCode(ErrorCode::memoryLimit, "there is not enough memory")},
      {[](const NSString &, Attributes &) { throw std::runtime_error("unexpected"); },
       NSError::errorWithCode(ErrorCode::other, "unexpected")},
      {[](const NSString &, Attributes &) { throw 1; },
       NSError::errorWithCode(ErrorCode::other, "the importer failed")},
      {[](const NSString &, Attributes &attributes) {
         attributes.setReason(NSError::errorWithCode(ErrorCode::locked, "the file is locked"));
         attributes.setReason(NSError());
       },
       NSError::errorWithCode(ErrorCode::locked, "the file is locked")},
      {[](const NSString &, Attributes &) {}, NSError()},
  };
  for (const auto &[import, error] : cases) {
    MDImporterAttributeDictionary dictionary;
    Importer(import).import(&dictionary);
    EXPECT_EQ(dictionary.error, error) << error.localizedFailureReason.UTF8String();
  }
  // A helper whose table ends where reasons begin is not told.
  MDImporterAttributesFunctions functions = {};
  functions.size = offsetof(MDImporterAttributesFunctions, setReason);
  MDImporterAttributes old = {&functions};
  EXPECT_EQ(Importer([](const NSString &, Attributes &) { throw 1; }).import(&old), 0);
}

TEST(ImporterPlugIn, AttributesKeepTheirTypes) {
  static const NSDictionary wanted = {
      {u"boolean"_ns, true},
      {u"integer"_ns, -7},
      {u"string"_ns, NSString::stringWithCharacters(u"a\xd800 leaf")},
      {u"empty"_ns, u""_ns},
      {u"data"_ns, NSData::dataWithBytes("x\0y", 3)},
      {u"null"_ns, NSNull()},
      {u"array"_ns, NSArray{u"leaf"_ns, 2, 0.5, false, NSDate{3}, NSData::dataWithBytes("x", 1)}},
      {u"nothing"_ns, NSArray::array()},
  };
  const Importer importer([](const NSString &, Attributes &attributes) {
    for (const auto &[name, value] : wanted) attributes.set(name.UTF8String().c_str(), value);
    attributes.set("nil", id());
    attributes.set("dictionary", wanted);
    attributes.set("object", makeShared<NSObject>());
    attributes.set("odd elements", NSArray{makeShared<NSObject>(), NSArray::array()});
    attributes.setArrayOf("none", u""_ns);
  });
  MDImporterAttributeDictionary dictionary;
  EXPECT_NE(importer.import(&dictionary), 0);
  EXPECT_EQ(dictionary.dictionary.objectForKey(u"odd elements"_ns), (NSArray{NSNull(), NSNull()}));
  dictionary.dictionary.removeObjectForKey(u"odd elements"_ns);
  EXPECT_EQ(dictionary.dictionary, wanted);
}

TEST(ImporterPlugIn, ArraysAreNestedAsDeepAsTheHelperTakesThem) {
  for (const int depth : {16, 17}) {
    std::vector<MDImporterValue> arrays(static_cast<std::size_t>(depth));
    for (std::size_t i = 0; i < arrays.size(); ++i) {
      arrays[i].kind = kMDImporterArray;
      if (i > 0) arrays[i].value.list = {&arrays[i - 1], 1};
    }
    MDImporterAttributeDictionary dictionary;
    const auto &outermost = arrays.back().value.list;
    const auto *const elements = static_cast<const MDImporterValue *>(outermost.elements);
    EXPECT_EQ(dictionary.functions->setArray(&dictionary, "deep", elements, outermost.count), depth == 16);
    EXPECT_EQ(dictionary.dictionary.count(), depth == 16 ? 1u : 0u);
  }
}

}  // namespace
}  // namespace nimbo
