// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/DocumentAttributes.hpp"

#include <cstdio>
#include <utility>

#include "platform/Foundation/id.hpp"

namespace nimbo {

namespace {

id valueOf(const NSString &string) {
  return string;
}

id valueOf(const std::optional<NSDate> &date) {
  return date ? id(*date) : id();
}

id valueOf(const std::optional<double> &number) {
  return number ? id(*number) : id();
}

id valueOf(const std::optional<NSSize> &size) {
  return size ? id(NSStringFromSize(*size)) : id();
}

id valueOf(const std::vector<NSString> &strings) {
  NSArray array;
  for (const NSString &string : strings) array.addObject(string);
  return array;
}

void read(const id &value, NSString *string) {
  *string = value.string();
}

void read(const id &value, std::optional<NSDate> *date) {
  *date = value.date();
}

void read(const id &value, std::optional<double> *number) {
  *number = value.real();
}

void read(const id &value, std::optional<NSSize> *size) {
  NSSize read;
  if (std::sscanf(value.string().UTF8String().c_str(), "{%lf, %lf}", &read.width, &read.height) == 2)
    *size = read;
}

void read(const id &value, std::vector<NSString> *strings) {
  const NSArray array = value.array();
  for (std::uint32_t i = 0; i < array.count(); ++i)
    if (NSString string = array[i].string()) strings->push_back(std::move(string));
}

/// Calls `visit(key, field)` for each field.
template <class Attributes, class Visit>
void forEachField(Attributes &attributes, Visit &&visit) {
  auto &[type, title, author, subject, keywords, company, copyright, comment, creation, modification, paper,
         left, right, top, bottom] = attributes;
  visit(u"DocumentType"_ns, type);
  visit(u"Title"_ns, title);
  visit(u"Author"_ns, author);
  visit(u"Subject"_ns, subject);
  visit(u"Keywords"_ns, keywords);
  visit(u"Company"_ns, company);
  visit(u"Copyright"_ns, copyright);
  visit(u"Comment"_ns, comment);
  visit(u"CreationTime"_ns, creation);
  visit(u"ModificationTime"_ns, modification);
  visit(u"PaperSize"_ns, paper);
  visit(u"LeftMargin"_ns, left);
  visit(u"RightMargin"_ns, right);
  visit(u"TopMargin"_ns, top);
  visit(u"BottomMargin"_ns, bottom);
}

}  // namespace

NSDictionary DocumentAttributes::dictionary() const {
  NSDictionary dictionary = NSDictionary::dictionary();
  forEachField(*this,
               [&](const NSString &key, const auto &field) { dictionary.setObject(valueOf(field), key); });
  return dictionary;
}

DocumentAttributes DocumentAttributes::withDictionary(const NSDictionary &dictionary) {
  DocumentAttributes attributes;
  forEachField(attributes,
               [&](const NSString &key, auto &field) { read(dictionary.objectForKey(key), &field); });
  return attributes;
}

}  // namespace nimbo
