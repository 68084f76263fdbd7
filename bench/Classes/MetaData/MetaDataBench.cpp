// SPDX-License-Identifier: Apache-2.0
//
// What it takes to find a file's type, and its metadata, against libmagic on the file's beginning. Each is done
// with all files in turns, the best round counts.
//
//   bench-metadata IMPORTERS-FOLDER FILE...

#include <magic.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Classes/MetaData/MetaDataImporter.hpp"
#include "bench/Compare.hpp"
#include "platform/CoreServices/ContentTypes.hpp"
#include "platform/Foundation/NSData.hpp"

using namespace nimbo;

int main(int argc, char **argv) {
  constexpr int kRounds = 20;
  if (argc < 3) return std::fprintf(stderr, "usage: bench-metadata IMPORTERS-FOLDER FILE...\n"), 1;
  MetaDataImporterLocations locations;
  locations.shippedImporterFolder = NSString::stringWithFileSystemRepresentation(argv[1]);
  MetaDataImporter importer(locations);
  magic_set *const database = magic_open(MAGIC_MIME_TYPE);
  if (!database || magic_load(database, nullptr) != 0) return std::fprintf(stderr, "no libmagic\n"), 1;

  double type = HUGE_VAL, metaData = HUGE_VAL, magic = HUGE_VAL;
  for (int round = 0; round < kRounds; ++round) {
    double times[3] = {};
    for (int i = 2; i < argc; ++i) {
      const NSString path = NSString::stringWithFileSystemRepresentation(argv[i]);
      const NSData head = NSData::dataWithContentsOfFile(path).subdataWithRange({0, kContentTypeHeadBytes});
      if (!LSCopyItemContentType(path)) return std::fprintf(stderr, "%s: no type\n", argv[i]), 1;
      times[0] += bench::secondsOf([&] { LSCopyItemContentType(path); });
      times[1] += bench::secondsOf([&] { importer.metaDataOfFileAtPath(path); });
      times[2] += bench::secondsOf([&] { magic_buffer(database, head.bytes(), head.length()); });
    }
    type = std::min(type, times[0]);
    metaData = std::min(metaData, times[1]);
    magic = std::min(magic, times[2]);
  }
  const double files = argc - 2;
  std::printf("type %.0f us (%.2f), metadata %.0f us (%.2f), libmagic %.0f us (1)\n", type / files * 1e6,
              type / magic, metaData / files * 1e6, metaData / magic, magic / files * 1e6);
}
