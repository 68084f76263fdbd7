/* SPDX-License-Identifier: Apache-2.0 */
#ifndef QUIVERLEAF_MDIMPORTER_H
#define QUIVERLEAF_MDIMPORTER_H

/*
 * What a metadata importer needs to know: this header alone, C99 or C++, nothing to link.
 *
 * An importer is a bundle, a folder of this layout:
 *
 *   NAME.mdimporter/Contents/Info.plist          a property list, XML or binary
 *   NAME.mdimporter/Contents/Linux/EXECUTABLE    a shared library
 *
 * Keys of Info.plist:
 *
 *   CFBundleExecutable             string: EXECUTABLE, a name without "/"
 *   CFPlugInTypes                  dictionary {type identifier: [factory identifier, ...]}
 *   CFPlugInFactories              dictionary {factory identifier: name of a function in EXECUTABLE}
 *   CFPlugInDynamicRegistration    boolean: false, or the importer is never used
 *   CFBundleDocumentTypes          [{CFBundleTypeRole: "MDImporter",
 *                                    LSItemContentTypes: [content type, ...]}, ...]
 *
 * Identifiers are UUIDs written as text, "8B08C4BF-415B-11D8-B3F9-0003936726FC", in either case; the factory
 * identifier is one that you make up. Content types are uniform type identifiers such as "com.adobe.pdf".
 *
 * The bundle, every folder and file named above, must belong to root or to the user, must not be a symbolic
 * link, and must not be writable by group or others; else it is not loaded. The folder that holds the bundle
 * must belong to root or to the user too, and not be writable by group or others unless it is sticky.
 *
 * The library is loaded into the helper's process when a file of one of its types comes first, and is never
 * unloaded. Everything runs on one thread. A crash or a hang ends the helper, and costs that one request.
 *
 * The function that reads a file sets its attributes by calls like these, where `attributes` was handed to it:
 *
 *     const MDImporterAttributesFunctions *set = attributes->functions;
 *     set->setInteger(attributes, "kMDItemNumberOfPages", 12);
 *     set->setUTF8String(attributes, "kMDItemTitle", "A page", 6);
 */

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
/** A code unit of UTF-16. */
typedef char16_t MDImporterUnichar;
#else
/** A code unit of UTF-16. */
typedef uint16_t MDImporterUnichar;
#endif

/** 0 is no, anything else yes. */
typedef unsigned char MDImporterBoolean;

/** Identifiers are 16 bytes in the order in which they are written. */
enum { kMDImporterIdentifierLength = 16 };

/** 8B08C4BF-415B-11D8-B3F9-0003936726FC: the plug-in type "metadata importer", a key of CFPlugInTypes. */
static const uint8_t kMDImporterTypeID[kMDImporterIdentifierLength] = {
    0x8b, 0x08, 0xc4, 0xbf, 0x41, 0x5b, 0x11, 0xd8, 0xb3, 0xf9, 0x00, 0x03, 0x93, 0x67, 0x26, 0xfc};

/** 6EBC27C4-899C-11D8-84AE-0003936726FC: the interface that importers offer. */
static const uint8_t kMDImporterInterfaceID[kMDImporterIdentifierLength] = {
    0x6e, 0xbc, 0x27, 0xc4, 0x89, 0x9c, 0x11, 0xd8, 0x84, 0xae, 0x00, 0x03, 0x93, 0x67, 0x26, 0xfc};

/** A string that is lent to the importer for the duration of one call. */
typedef struct MDImporterString {
  /** UTF-16, not terminated. A byte of a file name that is not part of valid UTF-8 stands as U+DC00 + byte. */
  const MDImporterUnichar *characters;
  /** In UTF-16 units. */
  size_t length;
  /** The same, terminated by a zero byte: of a path the very bytes that open(2) takes, which need not be UTF-8;
     of any other string UTF-8. */
  const char *bytes;
} MDImporterString;

/** What an element of an array is. */
enum {
  kMDImporterNull = 0,
  kMDImporterBoolean = 1,
  kMDImporterInteger = 2,
  kMDImporterReal = 3,
  kMDImporterDate = 4,
  kMDImporterUTF8String = 5,
  kMDImporterCharacters = 6,
  kMDImporterData = 7,
  kMDImporterArray = 8
};

/** An element of an array. What it points to belongs to the importer and is copied. */
typedef struct MDImporterValue {
  /** One of the kinds above; an element of another kind makes its array be refused. */
  uint32_t kind;
  /** The member of the kind; of none for Null. */
  union {
    /** For the kind Boolean. */
    MDImporterBoolean boolean;
    /** For the kind Integer. */
    int64_t integer;
    /** For the kind Real. */
    double real;
    /** For the kind Date: seconds since 2001-01-01 00:00:00 UTC. */
    double date;
    /** For the kinds UTF8String (`char`), Characters (`MDImporterUnichar`), Data (bytes) and Array
       (`MDImporterValue`); `count` elements of that type. */
    struct {
      const void *elements;
      size_t count;
    } list;
  } value;
} MDImporterValue;

/** Why attributes are missing, or not whole. */
enum {
  /** None of the others. */
  kMDImporterOther = 1,
  /** Nothing has this name. */
  kMDImporterNoSuchFile = 2,
  /** The file may not be read, is a folder or no regular file, or its disk fails. */
  kMDImporterUnreadable = 3,
  /** The content goes beyond a limit of size. */
  kMDImporterTooLarge = 4,
  /** The importer does not read content of this kind. */
  kMDImporterUnsupportedType = 5,
  /** The content is not what its kind asks for. */
  kMDImporterDamaged = 6,
  /** The content needs a password. */
  kMDImporterLocked = 7,
  /** The work took too long. */
  kMDImporterTimeLimit = 8,
  /** The work needed too much memory. */
  kMDImporterMemoryLimit = 9,
  /** The content is empty, or a part of it is left out. */
  kMDImporterIncomplete = 10
};

/** The attributes of a file, to be set by the functions below. */
typedef struct MDImporterAttributes MDImporterAttributes;

/**
 * How attributes are set. Every function takes the attributes first and then the attribute's name, UTF-8 and
 * terminated by a zero byte, as "kMDItemTitle". It copies what it is given, and replaces the attribute when it
 * is set already. It answers no, and changes nothing, when the name is empty or not UTF-8, or when the value is
 * longer than 2^31 - 1 units or nested deeper than 16 arrays. A list of no elements may have a null pointer.
 */
typedef struct MDImporterAttributesFunctions {
  /** The size of this table in bytes. New functions come at its end only; those up to `setArray` are always
     there, a newer one is when it lies inside this size. */
  size_t size;
  /** UTF-8 of `length` bytes, not terminated; each invalid sequence becomes U+FFFD. */
  MDImporterBoolean (*setUTF8String)(MDImporterAttributes *attributes, const char *name, const char *bytes,
                                     size_t length);
  /** UTF-16 of `length` units, not terminated, any units. */
  MDImporterBoolean (*setCharacters)(MDImporterAttributes *attributes, const char *name,
                                     const MDImporterUnichar *characters, size_t length);
  /** A whole number. */
  MDImporterBoolean (*setInteger)(MDImporterAttributes *attributes, const char *name, int64_t integer);
  /** A real number. */
  MDImporterBoolean (*setReal)(MDImporterAttributes *attributes, const char *name, double real);
  /** Yes or no. */
  MDImporterBoolean (*setBoolean)(MDImporterAttributes *attributes, const char *name,
                                  MDImporterBoolean boolean);
  /** Seconds since 2001-01-01 00:00:00 UTC; 1970-01-01 is 978307200 seconds earlier. */
  MDImporterBoolean (*setDate)(MDImporterAttributes *attributes, const char *name, double seconds);
  /** Bytes, `length` of them. */
  MDImporterBoolean (*setData)(MDImporterAttributes *attributes, const char *name, const void *bytes,
                               size_t length);
  /** The null object: "known to be nothing". It is dropped before the attributes leave the helper. */
  MDImporterBoolean (*setNull)(MDImporterAttributes *attributes, const char *name);
  /** An array of `count` elements. */
  MDImporterBoolean (*setArray)(MDImporterAttributes *attributes, const char *name,
                                const MDImporterValue *elements, size_t count);
  /**
   * Says why attributes are missing, or not whole: one of the codes above for programs, and a clause for people
   * that reads well behind the file's name, as "the PDF is damaged". UTF-8 of `length` bytes, not terminated,
   * of which the first 1000 count. The last call counts; it answers no when there is no text. Older helpers
   * lack it:
   *
   *   if (functions->size > offsetof(MDImporterAttributesFunctions, setReason)) functions->setReason(...);
   */
  MDImporterBoolean (*setReason)(MDImporterAttributes *attributes, int32_t code, const char *reason,
                                 size_t length);
} MDImporterAttributesFunctions;

/** The mutable attributes of a file; they belong to the helper and are there for the duration of one call. */
struct MDImporterAttributes {
  /** How they are set. */
  const MDImporterAttributesFunctions *functions;
};

/** The function table of an importer. `thisInterface` is the pointer that QueryInterface gave. */
typedef struct MDImporterInterfaceStruct {
  /** Not used. */
  void *reserved;
  /** When the 16 bytes at `interfaceID` are kMDImporterInterfaceID: adds a reference, stores a pointer to an
     object whose first member points to this table, and answers 0. Else stores null and answers another number.
   */
  int32_t (*QueryInterface)(void *thisInterface, const uint8_t *interfaceID, void **interface);
  /** Adds a reference and answers how many there are. */
  uint32_t (*AddRef)(void *thisInterface);
  /** Takes a reference away and answers how many are left; at 0 the importer frees the object. */
  uint32_t (*Release)(void *thisInterface);
  /**
   * Reads the file and sets its attributes, and the reason why some are missing. `contentTypeUTI` is
   * lower-cased, as "com.adobe.pdf". The answer is ignored: whatever was set counts. The file is untrusted:
   * bound what you read, allocate and write. An importer in C++ that links nimbo-text may throw
   * nimbo::NSException, which ends the import; the attributes that are set by then count. It must throw nothing
   * else.
   */
  MDImporterBoolean (*ImporterImportData)(void *thisInterface, MDImporterAttributes *attributes,
                                          const MDImporterString *contentTypeUTI,
                                          const MDImporterString *pathToFile);
} MDImporterInterfaceStruct;

/**
 * A factory, under the name that CFPlugInFactories gives: an exported C function. `allocator` is always null;
 * `typeID` are the 16 bytes of the wanted plug-in type. It answers a new object with one reference, whose first
 * member is a pointer to its function table, or null when it makes no plug-ins of that type.
 */
typedef void *(*MDImporterFactoryFunction)(void *allocator, const uint8_t *typeID);

#ifdef __cplusplus
}
#endif

#endif
