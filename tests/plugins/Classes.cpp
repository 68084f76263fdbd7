// SPDX-License-Identifier: Apache-2.0
#include <stdexcept>

#include "platform/Foundation/NSObject.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"

// Functions that answer classes: one of this library, one of another, and none; and one that raises.

namespace nimbo {
namespace {

class Greeter final : public NSObject {
 public:
  const ClassDescription &classDescription() const override { return description(); }

  static const ClassDescription &description() {
    static const ClassDescription greeter{
        u"Greeter"_ns,
        &rootClass(),
        {{u"greet:"_ns,
          [](NSObject &, const id &who) -> id { return stringWithFormat(u"Hello %@", who.string()); }}},
        {},
        []() -> SharedPointer<NSObject> { return makeShared<Greeter>(); }};
    return greeter;
  }
};

}  // namespace
}  // namespace nimbo

extern "C" {

const nimbo::ClassDescription *greeterClass() {
  return &nimbo::Greeter::description();
}

const nimbo::ClassDescription *rootClass() {
  return &nimbo::NSObject::rootClass();
}

const nimbo::ClassDescription *noClass() {
  return nullptr;
}

const nimbo::ClassDescription *failingClass() {
  throw std::runtime_error("no class");
}
}
