#include "Jpeg.h"

#include <jpeglib.h>

#include <csetjmp>
#include <cstdio>
#include <cstdlib>

namespace yh {
namespace {

// libjpeg reports errors by calling error_exit, which must not return:
// it jumps back to the encoder, which then gives up.
struct Errors {
  jpeg_error_mgr manager;
  std::jmp_buf back;
};

[[noreturn]] void JumpBack(j_common_ptr info) { std::longjmp(reinterpret_cast<Errors*>(info->err)->back, 1); }

}  // namespace

std::string EncodeJpeg(const uint8_t* rgb, int width, int height, int stride, int quality) {
  if (!rgb || width <= 0 || height <= 0) return "";
  jpeg_compress_struct info{};
  Errors errors{};
  info.err = jpeg_std_error(&errors.manager);
  errors.manager.error_exit = JumpBack;
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  // Nothing with a destructor lives between setjmp and the jump.
  if (setjmp(errors.back)) {
    jpeg_destroy_compress(&info);
    std::free(buffer);
    return "";
  }
  jpeg_create_compress(&info);
  jpeg_mem_dest(&info, &buffer, &size);
  info.image_width = static_cast<JDIMENSION>(width);
  info.image_height = static_cast<JDIMENSION>(height);
  info.input_components = 3;
  info.in_color_space = JCS_RGB;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, quality, TRUE);
  jpeg_start_compress(&info, TRUE);
  while (info.next_scanline < info.image_height) {
    JSAMPROW row = const_cast<JSAMPROW>(rgb + static_cast<size_t>(info.next_scanline) * static_cast<size_t>(stride));
    jpeg_write_scanlines(&info, &row, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  std::string bytes(reinterpret_cast<const char*>(buffer), size);
  std::free(buffer);
  return bytes;
}

}  // namespace yh
