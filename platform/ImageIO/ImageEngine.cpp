// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/ImageEngine.hpp"

#include "platform/Foundation/System/EngineLibrary.hpp"

namespace nimbo::detail {

const ImageEngine *imageEngine(NSError *error) {
  return static_cast<const ImageEngine *>(engineNamed("imageio", error));
}

}  // namespace nimbo::detail
