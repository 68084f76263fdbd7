// SPDX-License-Identifier: Apache-2.0
//
// How a movie goes on at its end, as a number.
//
//     setLoopMode(*movie, 2);
//     movie->attributeForKey(u"QTMovieLoopsBackAndForthAttribute"_ns).boolean();  // true
//     loopMode(*movie);  // 2
#pragma once

#include "platform/QTKit/QTMovie.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSMovieCompatibility {

/// 0: it ends; 1: it begins again; 2: it goes back and forth.
int loopMode(const QTMovie &movie);
/// Sets it; any other number is 0.
void setLoopMode(QTMovie &movie, int mode);

}  // namespace NSMovieCompatibility
}  // namespace nimbo
