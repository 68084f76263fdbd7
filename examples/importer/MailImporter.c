/* SPDX-License-Identifier: Apache-2.0 */
/* A metadata importer in C, which links nothing: the subject and the sender of a mail, as its header has them.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "platform/CoreServices/MDImporter.h"

/* The object that the factory makes; its first member points to the function table. */
struct Importer {
  const MDImporterInterfaceStruct *functions;
  uint32_t references;
};

static uint32_t addReference(void *self) {
  return ++((struct Importer *)self)->references;
}

static uint32_t releaseReference(void *self) {
  const uint32_t left = --((struct Importer *)self)->references;
  if (left == 0) free(self);
  return left;
}

static int32_t queryInterface(void *self, const uint8_t *interfaceID, void **interface) {
  *interface = NULL;
  if (memcmp(interfaceID, kMDImporterInterfaceID, kMDImporterIdentifierLength) != 0) return -1;
  addReference(self);
  *interface = self;
  return 0;
}

/* The rest of a line that begins with a field's name and a colon; null for any other line. */
static const char *valueOfField(const char *line, const char *name) {
  const size_t length = strlen(name);
  if (strncasecmp(line, name, length) != 0 || line[length] != ':') return NULL;
  return line + length + 1 + strspn(line + length + 1, " \t");
}

static MDImporterBoolean import(void *self, MDImporterAttributes *attributes, const MDImporterString *type,
                                const MDImporterString *path) {
  enum { kMaximumLines = 1000 };
  const MDImporterAttributesFunctions *set = attributes->functions;
  char line[1000];
  int lines = 0;
  FILE *file = fopen(path->bytes, "re");
  (void)self, (void)type;
  if (!file) return 0;
  while (lines++ < kMaximumLines && fgets(line, sizeof line, file)) {
    const char *subject, *sender;
    line[strcspn(line, "\r\n")] = 0;
    if (!*line) break;
    subject = valueOfField(line, "Subject");
    sender = valueOfField(line, "From");
    if (subject) set->setUTF8String(attributes, "kMDItemTitle", subject, strlen(subject));
    if (sender) {
      MDImporterValue author;
      author.kind = kMDImporterUTF8String;
      author.value.list.elements = sender;
      author.value.list.count = strlen(sender);
      set->setArray(attributes, "kMDItemAuthors", &author, 1);
    }
  }
  fclose(file);
  return 1;
}

/* The only name that others see; Info.plist gives it. */
__attribute__((visibility("default"))) void *MailImporterFactory(void *allocator, const uint8_t *typeID) {
  static const MDImporterInterfaceStruct functions = {NULL, queryInterface, addReference, releaseReference,
                                                      import};
  struct Importer *importer;
  (void)allocator;
  if (memcmp(typeID, kMDImporterTypeID, kMDImporterIdentifierLength) != 0) return NULL;
  importer = malloc(sizeof *importer);
  if (!importer) return NULL;
  importer->functions = &functions;
  importer->references = 1;
  return importer;
}
