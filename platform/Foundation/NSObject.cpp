// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSObject.hpp"

#include <algorithm>

#include "platform/Foundation/NSException.hpp"
#include "platform/Foundation/NSStringJoining.hpp"

namespace nimbo {
namespace {

ClassDescription::Method methodFor(const ClassDescription *described, const NSString &selector) {
  for (; described; described = described->superclass)
    for (const auto &[name, method] : described->methods)
      if (name == selector) return method;
  return nullptr;
}

const ClassDescription::Key *keyFor(const ClassDescription *described, const NSString &key) {
  for (; described; described = described->superclass)
    for (const ClassDescription::Key &each : described->keys)
      if (each.name == key) return &each;
  return nullptr;
}

[[noreturn]] void raise(const NSString &name, const NSObject &receiver, const NSString &problem,
                        const NSString &asked) {
  throw NSException(name, stringByConcatenating(receiver.className(), problem, asked));
}

id classNameOf(const NSObject &receiver) {
  return receiver.className();
}

}  // namespace

template <>
void destroyShared<NSObject>(ReferenceCounted *object) noexcept {
  delete static_cast<NSObject *>(object);
}

NSObject::~NSObject() = default;

const ClassDescription &NSObject::rootClass() {
  static const ClassDescription root{
      u"NSObject"_ns,
      nullptr,
      {{u"className"_ns, [](NSObject &receiver, const id &) { return classNameOf(receiver); }},
       {u"isKindOfClass:"_ns,
        [](NSObject &receiver, const id &argument) -> id { return receiver.isKindOfClass(argument.string()); }},
       {u"respondsToSelector:"_ns,
        [](NSObject &receiver, const id &argument) -> id {
          return receiver.respondsToSelector(argument.string());
        }},
       {u"valueForKey:"_ns,
        [](NSObject &receiver, const id &argument) { return receiver.valueForKey(argument.string()); }}},
      {{u"className"_ns, classNameOf, nullptr}},
  };
  return root;
}

bool NSObject::isKindOfClass(const NSString &name) const {
  for (const ClassDescription *each = &classDescription(); each; each = each->superclass)
    if (each->name == name) return true;
  return false;
}

bool NSObject::respondsToSelector(const NSString &selector) const {
  return methodFor(&classDescription(), selector) != nullptr;
}

id NSObject::performSelector(const NSString &selector, const id &argument) {
  const ClassDescription::Method method = methodFor(&classDescription(), selector);
  if (!method) raise(u"NSInvalidArgumentException"_ns, *this, u" has no method "_ns, selector);
  return method(*this, argument);
}

id NSObject::valueForKey(const NSString &key) const {
  const ClassDescription::Key *const found = keyFor(&classDescription(), key);
  if (!found) raise(u"NSUnknownKeyException"_ns, *this, u" has no key "_ns, key);
  return found->get(*this);
}

void NSObject::setValue(const id &value, const NSString &key) {
  const ClassDescription::Key *const found = keyFor(&classDescription(), key);
  if (!found || !found->set)
    raise(u"NSUnknownKeyException"_ns, *this, u" has no key that can be set: "_ns, key);
  found->set(*this, value);
}

}  // namespace nimbo
