// SPDX-License-Identifier: Apache-2.0
#include "importers/ImporterPlugIn.hpp"

#include <atomic>
#include <cstddef>
#include <cstring>
#include <exception>
#include <new>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "platform/Foundation/NSException.hpp"

namespace nimbo {
namespace {

/// An element of an array as the helper takes it; borrows from `value`. Arrays inside arrays, and what has no
/// place in an array, become null.
MDImporterValue elementOfArray(const id &value) {
  MDImporterValue element = {};
  value.visit([&element]<class T>(const T &held) {
    if constexpr (std::is_same_v<T, bool>) {
      element.kind = kMDImporterBoolean;
      element.value.boolean = held;
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
      element.kind = kMDImporterInteger;
      element.value.integer = held;
    } else if constexpr (std::is_same_v<T, double>) {
      element.kind = kMDImporterReal;
      element.value.real = held;
    } else if constexpr (std::is_same_v<T, NSDate>) {
      element.kind = kMDImporterDate;
      element.value.date = held.timeIntervalSinceReferenceDate;
    } else if constexpr (std::is_same_v<T, NSString>) {
      element.kind = kMDImporterCharacters;
      element.value.list = {held.characters(), held.length()};
    } else if constexpr (std::is_same_v<T, NSData>) {
      element.kind = kMDImporterData;
      element.value.list = {held.bytes(), held.length()};
    }
  });
  return element;
}

/// The component object. Its first member points to its function table, as callers expect.
class PlugIn {
 public:
  explicit PlugIn(ImportFunction import) noexcept : import_(import) {}

 private:
  static PlugIn *self(void *thisInterface) noexcept { return static_cast<PlugIn *>(thisInterface); }

  static std::int32_t queryInterface(void *thisInterface, const std::uint8_t *interfaceID, void **interface) {
    const bool known = std::memcmp(interfaceID, kMDImporterInterfaceID, kMDImporterIdentifierLength) == 0;
    *interface = known ? thisInterface : nullptr;
    if (known) addRef(thisInterface);
    return known ? 0 : kNoInterface;
  }
  static std::uint32_t addRef(void *thisInterface) { return ++self(thisInterface)->references_; }
  static std::uint32_t release(void *thisInterface) {
    const std::uint32_t left = --self(thisInterface)->references_;
    if (left == 0) delete self(thisInterface);
    return left;
  }
  static MDImporterBoolean importData(void *thisInterface, MDImporterAttributes *attributes,
                                      const MDImporterString *, const MDImporterString *pathToFile) {
    Attributes writer(attributes);
    try {
      self(thisInterface)
          ->import_(NSString::stringWithCharacters({pathToFile->characters, pathToFile->length}), writer);
      return 1;
    } catch (const NSException &) {
      throw;
    } catch (const std::exception &exception) {
      writer.setReason(NSError::errorWithException(exception));
    } catch (...) {
      writer.setReason(NSError::errorWithCode(ErrorCode::other, "the importer failed"));
    }
    return 0;
  }

  /// The customary "no such interface".
  static constexpr auto kNoInterface = static_cast<std::int32_t>(0x80000004);
  static constexpr MDImporterInterfaceStruct kInterface = {nullptr, queryInterface, addRef, release,
                                                           importData};

  const MDImporterInterfaceStruct *interface_ = &kInterface;
  ImportFunction import_;
  std::atomic<std::uint32_t> references_ = 1;
};
static_assert(std::is_standard_layout_v<PlugIn>);

}  // namespace

void Attributes::set(const char *name, const id &value) {
  const MDImporterAttributesFunctions &functions = *attributes_->functions;
  value.visit([&]<class T>(const T &held) {
    if constexpr (std::is_same_v<T, bool>) {
      functions.setBoolean(attributes_, name, held);
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
      functions.setInteger(attributes_, name, held);
    } else if constexpr (std::is_same_v<T, double>) {
      functions.setReal(attributes_, name, held);
    } else if constexpr (std::is_same_v<T, NSDate>) {
      functions.setDate(attributes_, name, held.timeIntervalSinceReferenceDate);
    } else if constexpr (std::is_same_v<T, NSString>) {
      functions.setCharacters(attributes_, name, held.characters(), held.length());
    } else if constexpr (std::is_same_v<T, NSData>) {
      functions.setData(attributes_, name, held.bytes(), held.length());
    } else if constexpr (std::is_same_v<T, NSNull>) {
      functions.setNull(attributes_, name);
    } else if constexpr (std::is_same_v<T, NSArray>) {
      std::vector<MDImporterValue> elements;
      for (const id &element : held) elements.push_back(elementOfArray(element));
      functions.setArray(attributes_, name, elements.data(), elements.size());
    }
  });
}

void Attributes::setArrayOf(const char *name, const NSString &element) {
  if (element.length() > 0) set(name, NSArray{element});
}

void Attributes::setReason(const NSError &error) {
  const MDImporterAttributesFunctions &functions = *attributes_->functions;
  if (!error || functions.size <= offsetof(MDImporterAttributesFunctions, setReason)) return;
  const std::string reason = error.localizedFailureReason.UTF8String();
  functions.setReason(attributes_, static_cast<std::int32_t>(error.errorCode()), reason.data(), reason.size());
}

void *makeMetaDataImporter(const std::uint8_t *typeID, ImportFunction import) noexcept {
  if (std::memcmp(typeID, kMDImporterTypeID, kMDImporterIdentifierLength) != 0) return nullptr;
  return new (std::nothrow) PlugIn(import);
}

}  // namespace nimbo
