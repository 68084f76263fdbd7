// SPDX-License-Identifier: Apache-2.0
#include "Classes/Movies/QTMovie+NSMovieCompatibility.hpp"

namespace nimbo {
inline namespace NSMovieCompatibility {
namespace {

NSString loops() {
  return u"QTMovieLoopsAttribute"_ns;
}
NSString loopsBackAndForth() {
  return u"QTMovieLoopsBackAndForthAttribute"_ns;
}

}  // namespace

int loopMode(const QTMovie &movie) {
  if (movie.attributeForKey(loopsBackAndForth()).boolean().value_or(false)) return 2;
  return movie.attributeForKey(loops()).boolean().value_or(false) ? 1 : 0;
}

void setLoopMode(QTMovie &movie, int mode) {
  movie.setAttribute(mode == 1, loops());
  movie.setAttribute(mode == 2, loopsBackAndForth());
}

}  // namespace NSMovieCompatibility
}  // namespace nimbo
