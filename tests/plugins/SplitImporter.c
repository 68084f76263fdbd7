/* SPDX-License-Identifier: Apache-2.0 */
#include <stdint.h>

void *makeEveryKindImporter(void *allocator, const uint8_t *typeID);

void *makeSplitImporter(void *allocator, const uint8_t *typeID);
void *makeSplitImporter(void *allocator, const uint8_t *typeID) {
  return makeEveryKindImporter(allocator, typeID);
}
