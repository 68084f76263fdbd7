// SPDX-License-Identifier: Apache-2.0
// Imports office documents and books by every importer of theirs. What is wrong with them has a reason.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Classes/MetaData/MDImporterAttributeDictionary.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

extern "C" void *OpenXMLImporterFactory(void *, const std::uint8_t *typeID);
extern "C" void *OpenDocumentImporterFactory(void *, const std::uint8_t *typeID);
extern "C" void *EPUBImporterFactory(void *, const std::uint8_t *typeID);

using namespace nimbo;

namespace {

/// The attributes of the file; it has some, or a reason why not.
void import(MDImporterFactoryFunction factory, const std::string &path) {
  void *const plugIn = factory(nullptr, kMDImporterTypeID);
  const auto &functions = **static_cast<const MDImporterInterfaceStruct **>(plugIn);
  const NSString characters = NSString::stringWithUTF8String(path);
  const MDImporterString file = {characters.characters(), characters.length(), path.c_str()};
  MDImporterAttributeDictionary attributes;
  if (!functions.ImporterImportData(plugIn, &attributes, nullptr, &file)) std::abort();
  if (attributes.dictionary.count() == 0 && !attributes.error) std::abort();
  functions.Release(plugIn);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
  const FileDescriptor file(::memfd_create("document", MFD_CLOEXEC));
  if (!writeAll(file.get(), {reinterpret_cast<const char *>(bytes), size})) std::abort();
  const std::string path = "/proc/self/fd/" + std::to_string(file.get());
  import(OpenXMLImporterFactory, path);
  import(OpenDocumentImporterFactory, path);
  import(EPUBImporterFactory, path);
  return 0;
}
