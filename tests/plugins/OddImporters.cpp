// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "platform/CoreServices/MDImporter.h"
#include "platform/Foundation/NSException.hpp"

// Importers that throw, do not make what is asked for, leave processes behind, or say who they are.

using nimbo::operator""_ns;

namespace {

using Import = MDImporterBoolean (*)(void *, MDImporterAttributes *, const MDImporterString *,
                                     const MDImporterString *);

std::int32_t offerInterface(void *self, const std::uint8_t *interfaceID, void **interface) {
  const bool known = std::equal(interfaceID, interfaceID + kMDImporterIdentifierLength, kMDImporterInterfaceID);
  *interface = known ? self : nullptr;
  return known ? 0 : -1;
}

std::int32_t offerNothing(void *, const std::uint8_t *, void **) {
  return -1;
}

std::uint32_t count(void *) {
  return 1;
}

/// An object that is never freed: `object` is its only member.
template <Import import, auto query = offerInterface>
void *make() {
  static const MDImporterInterfaceStruct functions = {nullptr, query, count, count, import};
  static const MDImporterInterfaceStruct *object = &functions;
  return &object;
}

MDImporterBoolean raise(void *, MDImporterAttributes *attributes, const MDImporterString *,
                        const MDImporterString *) {
  attributes->functions->setInteger(attributes, "before", 1);
  throw nimbo::NSException(u"DamagedFile"_ns, u"the test asked for it"_ns);
}

MDImporterBoolean throwInteger(void *, MDImporterAttributes *, const MDImporterString *,
                               const MDImporterString *) {
  throw 42;
}

MDImporterBoolean setNothing(void *, MDImporterAttributes *, const MDImporterString *,
                             const MDImporterString *) {
  return 1;
}

MDImporterBoolean giveOddReason(void *, MDImporterAttributes *attributes, const MDImporterString *,
                                const MDImporterString *) {
  const std::string reason(2000, 'x');
  attributes->functions->setReason(attributes, -7, reason.data(), reason.size());
  return 0;
}

enum class Left { copyThatGoesOn, child, childAndNoDescriptor, command, daemon };

template <Left left>
MDImporterBoolean leaveProcess(void *, MDImporterAttributes *attributes, const MDImporterString *,
                               const MDImporterString *) {
  if constexpr (left == Left::command) {
    if (std::system("(sleep 60 & sleep 60) &") != 0) return 0;
  } else if (::fork() == 0) {
    if (left == Left::copyThatGoesOn) return 0;
    if (left == Left::daemon && (::setsid() < 0 || ::fork() != 0)) ::_exit(0);
    ::_exit(static_cast<int>(::sleep(60)));
  }
  if (left == Left::childAndNoDescriptor)
    while (::dup(STDIN_FILENO) >= 0) continue;
  return attributes->functions->setInteger(attributes, "left", 1);
}

template <char Name>
MDImporterBoolean sayName(void *, MDImporterAttributes *attributes, const MDImporterString *,
                          const MDImporterString *) {
  const char name = Name;
  attributes->functions->setUTF8String(attributes, "importer", &name, 1);
  return 1;
}

MDImporterBoolean setDataAsText(void *, MDImporterAttributes *attributes, const MDImporterString *,
                                const MDImporterString *) {
  return attributes->functions->setData(attributes, "kMDItemTextContent", "text", 4);
}

}  // namespace

// clang-format off
extern "C" {
void *makeNothing(void *, const std::uint8_t *) { return nullptr; }
void *makeStranger(void *, const std::uint8_t *) { return make<raise, offerNothing>(); }
void *makeRaiser(void *, const std::uint8_t *) { return make<raise>(); }
void *makeThrower(void *, const std::uint8_t *) { return make<throwInteger>(); }
void *makeSilent(void *, const std::uint8_t *) { return make<setNothing>(); }
void *makeOddReason(void *, const std::uint8_t *) { return make<giveOddReason>(); }
void *makeDataText(void *, const std::uint8_t *) { return make<setDataAsText>(); }
void *makeCopy(void *, const std::uint8_t *) { return make<leaveProcess<Left::copyThatGoesOn>>(); }
void *makeChild(void *, const std::uint8_t *) { return make<leaveProcess<Left::child>>(); }
void *makeHoarder(void *, const std::uint8_t *) { return make<leaveProcess<Left::childAndNoDescriptor>>(); }
void *makeCommand(void *, const std::uint8_t *) { return make<leaveProcess<Left::command>>(); }
void *makeDaemon(void *, const std::uint8_t *) { return make<leaveProcess<Left::daemon>>(); }
void *makeA(void *, const std::uint8_t *) { return make<sayName<'A'>>(); }
void *makeB(void *, const std::uint8_t *) { return make<sayName<'B'>>(); }
void *makeC(void *, const std::uint8_t *) { return make<sayName<'C'>>(); }
void *makeD(void *, const std::uint8_t *) { return make<sayName<'D'>>(); }
}
// clang-format on
