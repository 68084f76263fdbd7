/* SPDX-License-Identifier: Apache-2.0 */
#include <string.h>

#include "platform/CoreServices/MDImporter.h"

/* Sets an attribute of every kind, and tries what must be refused. */

/* One object for all, which counts so that the test sees whether every reference was given back. */
static uint32_t references = 0;

static uint32_t addReference(void *self) {
  (void)self;
  return ++references;
}

static uint32_t release(void *self) {
  (void)self;
  return --references;
}

static int32_t query(void *self, const uint8_t *interfaceID, void **interface) {
  *interface = NULL;
  if (memcmp(interfaceID, kMDImporterInterfaceID, kMDImporterIdentifierLength) != 0) return -1;
  addReference(self);
  *interface = self;
  return 0;
}

static MDImporterBoolean import(void *self, MDImporterAttributes *attributes,
                                const MDImporterString *contentType, const MDImporterString *path) {
  const MDImporterAttributesFunctions *set = attributes->functions;
  const MDImporterUnichar units[] = {'u', 0, 0xd800};
  MDImporterValue elements[9];
  MDImporterValue nested[20];
  int i;
  (void)self;
  if (set->size < sizeof *set) return 0;
  set->setInteger(attributes, "references", references);
  set->setUTF8String(attributes, "path", path->bytes, strlen(path->bytes));
  set->setCharacters(attributes, "pathCharacters", path->characters, path->length);
  set->setCharacters(attributes, "contentType", contentType->characters, contentType->length);
  set->setUTF8String(attributes, "kMDItemTextContent", " b\xc3\xa4\xff\r\na\xcc\x88 ", 11);
  set->setCharacters(attributes, "characters", units, 3);
  set->setReal(attributes, "real", 2.5);
  set->setBoolean(attributes, "boolean", 7);
  set->setDate(attributes, "date", -978307200.0);
  set->setData(attributes, "data", "\0\1", 2);
  set->setNull(attributes, "null");
  set->setArray(attributes, "empty", NULL, 0);

  memset(elements, 0, sizeof elements);
  for (i = 0; i < 9; ++i) elements[i].kind = (uint32_t)i;
  elements[kMDImporterBoolean].value.boolean = 1;
  elements[kMDImporterInteger].value.integer = -5;
  elements[kMDImporterReal].value.real = 0.5;
  elements[kMDImporterDate].value.date = 1.0;
  elements[kMDImporterUTF8String].value.list.elements = "text";
  elements[kMDImporterUTF8String].value.list.count = 4;
  elements[kMDImporterCharacters].value.list.elements = units;
  elements[kMDImporterCharacters].value.list.count = 1;
  elements[kMDImporterArray].value.list.elements = elements;
  elements[kMDImporterArray].value.list.count = 3;
  set->setArray(attributes, "array", elements, 9);

  /* An array in itself is nested without end; 99 is no kind. */
  elements[kMDImporterArray].value.list.count = 9;
  memset(nested, 0, sizeof nested);
  nested[0].kind = 99;
  set->setReason(attributes, kMDImporterLocked, "overruled", 9);
  set->setReason(attributes, kMDImporterIncomplete, "only a t\xc3\xa9st", 12);
  set->setInteger(attributes, "refused",
                  !set->setArray(attributes, "endless", elements, 9) +
                      !set->setArray(attributes, "kind", nested, 1) + !set->setInteger(attributes, "", 1) +
                      !set->setInteger(attributes, "\xff", 1) + !set->setInteger(attributes, NULL, 1) +
                      !set->setReason(attributes, kMDImporterOther, "", 0) +
                      !set->setReason(attributes, kMDImporterOther, NULL, 1) +
                      !set->setUTF8String(attributes, "long", "", (size_t)1 << 31));
  return 0;
}

static const MDImporterInterfaceStruct functions = {NULL, query, addReference, release, import};
static const MDImporterInterfaceStruct *importer = &functions;

void *makeEveryKindImporter(void *allocator, const uint8_t *typeID);
void *makeEveryKindImporter(void *allocator, const uint8_t *typeID) {
  if (allocator || memcmp(typeID, kMDImporterTypeID, kMDImporterIdentifierLength) != 0) return NULL;
  addReference(NULL);
  return &importer;
}
