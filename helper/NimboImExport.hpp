// SPDX-License-Identifier: Apache-2.0
//
// The contract between the helper and its callers: the name under which the helper registers, and the
// operations that its root object answers. clients/ is written against this file.
#pragma once

#include <array>
#include <string_view>

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// The name under which the helper registers.
inline constexpr std::u16string_view kHelperConnectionName = u"QuiverleafHelper_2.0pb8build4";

/// What crosses as an argument or a result.
enum class RemoteKind { string, data, boolean, url, dictionary };

/// An argument of an operation.
struct RemoteArgument {
  std::u16string_view keyword;  ///< Empty: the operation has no further argument.
  RemoteKind kind = RemoteKind::string;
};

/// An operation: the selector's keywords with the kinds of their arguments, and the kind of its result. Every
/// argument may be absent (nil; a boolean is then NO), every result may be nil. A URL crosses as its absolute
/// string. Beside a result that is nil or not whole the reply says why: a reason for people and one of the
/// codes of `ErrorCode`, which NSError.hpp publishes.
struct RemoteOperation {
  std::u16string_view selector;
  std::array<RemoteArgument, 3> arguments;
  RemoteKind result;
};

/// The operations that the root object answers.
// clang-format off
inline constexpr std::array<RemoteOperation, 10> NimboImExport = {{
    {u"metaDataForFile:",
     {{{u"metaDataForFile", RemoteKind::string}}},
     RemoteKind::dictionary},
    {u"searchableTextOfWebArchive:",
     {{{u"searchableTextOfWebArchive", RemoteKind::string}}},
     RemoteKind::dictionary},
    {u"attributed:stringWithPDF:",
     {{{u"attributed", RemoteKind::boolean}, {u"stringWithPDF", RemoteKind::data}}},
     RemoteKind::dictionary},
    {u"attributedStringWithContentsOfFile:",
     {{{u"attributedStringWithContentsOfFile", RemoteKind::string}}},
     RemoteKind::dictionary},
    {u"writeRTFDData:toFile:",
     {{{u"writeRTFDData", RemoteKind::data}, {u"toFile", RemoteKind::string}}},
     RemoteKind::boolean},
    {u"RTFDWithHTML:baseURL:allowRemoteRequest:",
     {{{u"RTFDWithHTML", RemoteKind::data}, {u"baseURL", RemoteKind::url}, {u"allowRemoteRequest", RemoteKind::boolean}}},
     RemoteKind::data},
    {u"PDFImageRepOfFile:",
     {{{u"PDFImageRepOfFile", RemoteKind::string}}},
     RemoteKind::data},
    {u"posterImageForMovieWithFile:",
     {{{u"posterImageForMovieWithFile", RemoteKind::string}}},
     RemoteKind::dictionary},
    {u"imageWithContentsOfFile:stringFromPDF:canUseSpotlight:",
     {{{u"imageWithContentsOfFile", RemoteKind::string}, {u"stringFromPDF", RemoteKind::boolean}, {u"canUseSpotlight", RemoteKind::boolean}}},
     RemoteKind::dictionary},
    {u"stringWithPDF:options:",
     {{{u"stringWithPDF", RemoteKind::data}, {u"options", RemoteKind::dictionary}}},
     RemoteKind::dictionary},
}};
// clang-format on

}  // namespace nimbo
