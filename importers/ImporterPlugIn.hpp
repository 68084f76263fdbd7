// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreServices/MDImporter.h"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

/// Sets the attributes of the file that is being imported; borrowed for the duration of one import.
class Attributes {
 public:
  explicit Attributes(MDImporterAttributes *attributes) noexcept : attributes_(attributes) {}

  /// Sets or replaces the attribute `name`, as "kMDItemTitle". Nothing happens for a nil value, for
  /// dictionaries, or when the helper refuses the value.
  void set(const char *name, const id &value);
  /// As above, but an empty string counts as nil, and the value stands alone in an array.
  void setArrayOf(const char *name, const NSString &element);
  /// Says why attributes are missing, or not whole. Nothing happens when there is no error, or the helper is
  /// too old to be told.
  void setReason(const NSError &error);

 private:
  MDImporterAttributes *attributes_;
};

/// What an importer does: reads the file and sets its attributes, and the reason why some are missing. Whatever
/// it throws ends the import and is a reason, too; attributes that are set by then count.
using ImportFunction = void (*)(const NSString &path, Attributes &attributes);

/// The body of a factory: a new component object, with one reference, that imports by `import`; null when
/// `typeID` does not ask for a metadata importer.
void *makeMetaDataImporter(const std::uint8_t *typeID, ImportFunction import) noexcept;

}  // namespace nimbo

/// Makes a factory known under its name, which Info.plist gives; the only name that an importer exports.
#define QUIVERLEAF_IMPORTER_FACTORY extern "C" __attribute__((visibility("default")))
