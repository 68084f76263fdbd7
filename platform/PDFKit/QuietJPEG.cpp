// SPDX-License-Identifier: Apache-2.0
#include <cstdio>

#include <jpeglib.h>

// MuPDF leaves libjpeg's messages on, which go to standard error. The linker sends its calls here (--wrap).

extern "C" {

// The linker fixes these names. NOLINTBEGIN(bugprone-reserved-identifier)
jpeg_error_mgr *__real_jpeg_std_error(jpeg_error_mgr *manager);

jpeg_error_mgr *__wrap_jpeg_std_error(jpeg_error_mgr *manager) {
  jpeg_error_mgr *const standard = __real_jpeg_std_error(manager);
  standard->output_message = [](j_common_ptr) {};
  return standard;
}
// NOLINTEND(bugprone-reserved-identifier)

}  // extern "C"
