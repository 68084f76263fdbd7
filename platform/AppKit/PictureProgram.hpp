// SPDX-License-Identifier: Apache-2.0
//
// Pictures that a confined program makes, for processes without the libraries that they take. Any thread may
// ask.
//
//     const NSData png = makePicture({.what = "picture", .path = path, .type = u"public.png"_ns, .seconds = 8},
//     &error);
#pragma once

#include <cstdint>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What is to be made, as the program calls it.
struct PictureOrder {
  const char *what = nullptr;  ///< "picture", "cover" or "sheet".
  NSString path = {};          ///< What it is made of.
  std::uint32_t side = 0;      ///< The most pixels of the longer side; 0 is as many as there are.
  NSString type = {};          ///< A uniform type identifier.
  double seconds = 0;          ///< How long it may take.
};

/// The picture as data of its type. Nil when it cannot be made in time, or the program is not installed;
/// `*error` says why.
NSData makePicture(const PictureOrder &order, NSError *error = nullptr);
/// The same of a file with these bytes.
NSData makePicture(PictureOrder order, const NSData &bytes, NSError *error = nullptr);

}  // namespace nimbo
