// SPDX-License-Identifier: Apache-2.0
// From selectors to operations: what arrives is checked against the contract before an operation sees it.
#include <algorithm>
#include <iterator>

#include "helper/MemoryReturn.hpp"
#include "helper/NimboImExport.hpp"
#include "helper/QuiverleafHelper.hpp"
#include "platform/Foundation/NSException.hpp"
#include "platform/Foundation/NSStringJoining.hpp"

namespace nimbo {
namespace {

[[noreturn]] void raiseInvalidArgument(std::u16string_view what, const NSString &name) {
  throw NSException(u"NSInvalidArgumentException"_ns, stringByConcatenating(what, name));
}

bool isOfKind(const id &value, RemoteKind kind) {
  switch (kind) {
    case RemoteKind::string:
    case RemoteKind::url:
      return static_cast<bool>(value.string());
    case RemoteKind::data:
      return static_cast<bool>(value.data());
    case RemoteKind::dictionary:
      return static_cast<bool>(value.dictionary());
    case RemoteKind::boolean:
      return value.isBoolean() || value.isInteger();
  }
  return false;
}

/// The arguments of a request that has passed the check: of the kind that the contract says, or nil.
class Arguments {
 public:
  Arguments(const RemoteOperation &operation, const NSDictionary &values)
      : operation_(operation), values_(values) {
    for (const NSDictionary::Entry &entry : values) {
      const NSString &keyword = entry.first;
      const auto argument = std::find_if(operation.arguments.begin(), operation.arguments.end(),
                                         [&](const RemoteArgument &a) { return a.keyword == keyword.view(); });
      if (argument == operation.arguments.end() || keyword.length() == 0)
        raiseInvalidArgument(u"unknown argument: ", keyword);
      if (!isOfKind(entry.second, argument->kind)) raiseInvalidArgument(u"wrong kind of argument: ", keyword);
    }
  }

  NSString string(std::size_t index) const { return value(index).string(); }
  NSData data(std::size_t index) const { return value(index).data(); }
  NSDictionary dictionary(std::size_t index) const { return value(index).dictionary(); }
  bool boolean(std::size_t index) const {
    const id &argument = value(index);
    return argument.boolean().value_or(argument.integer().value_or(0) != 0);
  }

 private:
  const id &value(std::size_t index) const {
    return values_.objectForKey(NSString::stringWithCharacters(operation_.arguments[index].keyword));
  }

  const RemoteOperation &operation_;
  const NSDictionary &values_;
};

using Handler = id (*)(QuiverleafHelper &, const Arguments &, NSError *);

/// One handler an operation, in the order of the contract.
constexpr Handler kHandlers[] = {
    [](QuiverleafHelper &h, const Arguments &a, NSError *e) -> id { return h.metaDataForFile(a.string(0), e); },
    [](QuiverleafHelper &h, const Arguments &a, NSError *e) -> id {
      return h.searchableTextOfWebArchive(a.string(0), e);
    },
    [](QuiverleafHelper &h, const Arguments &a, NSError *e) -> id {
      return h.attributedStringWithPDF(a.boolean(0), a.data(1), e);
    },
    [](QuiverleafHelper &h, const Arguments &a, NSError *e) -> id {
      return h.attributedStringWithContentsOfFile(a.string(0), e);
    },
    [](QuiverleafHelper &h, const Arguments &a, NSError *e) -> id {
      return h.writeRTFDData(a.data(0), a.string(1), e);
    },
    [](QuiverleafHelper &h, const Arguments &a, NSError *e) -> id {
      return h.RTFDWithHTML(a.data(0), a.string(1), a.boolean(2), e);
    },
    [](QuiverleafHelper &h, const Arguments &a, NSError *e) -> id {
      return h.PDFImageRepOfFile(a.string(0), e);
    },
    [](QuiverleafHelper &h, const Arguments &a, NSError *e) -> id {
      return h.posterImageForMovieWithFile(a.string(0), e);
    },
    [](QuiverleafHelper &h, const Arguments &a, NSError *e) -> id {
      return h.imageWithContentsOfFile(a.string(0), a.boolean(1), a.boolean(2), e);
    },
    [](QuiverleafHelper &h, const Arguments &a, NSError *e) -> id {
      return h.stringWithPDF(a.data(0), a.dictionary(1), e);
    },
};
static_assert(std::size(kHandlers) == NimboImExport.size());

}  // namespace

id QuiverleafHelper::perform(const NSString &selector, const NSDictionary &arguments, NSError *error) {
  const auto operation = std::find_if(NimboImExport.begin(), NimboImExport.end(),
                                      [&](const RemoteOperation &o) { return o.selector == selector.view(); });
  if (operation == NimboImExport.end()) raiseInvalidArgument(u"unrecognized selector: ", selector);
  const MemoryReturn memoryReturn;
  return kHandlers[operation - NimboImExport.begin()](*this, Arguments(*operation, arguments), error);
}

}  // namespace nimbo
