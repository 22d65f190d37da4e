#include "MediaFiles.h"

#include <jpeglib.h>
#include <libheif/heif.h>
#include <opencore-amrnb/interf_enc.h>

#include <cmath>
#include <memory>
#include <stdexcept>
#include <vector>

#include "Jpeg.h"

namespace yhmedia {
namespace {

constexpr int kRate = 8000;
constexpr int kFrame = 160;

std::string Bands(int width, int height) {
  std::string rgb(static_cast<size_t>(width) * height * 3, '\0');
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const int band = x * 3 / width;
      rgb[(static_cast<size_t>(y) * width + x) * 3 + band] = static_cast<char>(255);
    }
  }
  return rgb;
}

void Check(heif_error error) {
  if (error.code != heif_error_Ok) throw std::runtime_error(std::string("libheif: ") + error.message);
}

heif_error Append(heif_context*, const void* data, size_t size, void* userdata) {
  static_cast<std::string*>(userdata)->append(static_cast<const char*>(data), size);
  return heif_error{heif_error_Ok, heif_suberror_Unspecified, ""};
}

}  // namespace

std::string HeicPicture(int width, int height) {
  std::unique_ptr<heif_context, void (*)(heif_context*)> context(heif_context_alloc(), heif_context_free);
  heif_encoder* encoder = nullptr;
  Check(heif_context_get_encoder_for_format(context.get(), heif_compression_HEVC, &encoder));
  std::unique_ptr<heif_encoder, void (*)(heif_encoder*)> encoderOwner(encoder, heif_encoder_release);
  heif_encoder_set_lossy_quality(encoder, 60);
  heif_image* raw = nullptr;
  Check(heif_image_create(width, height, heif_colorspace_RGB, heif_chroma_interleaved_RGB, &raw));
  std::unique_ptr<heif_image, void (*)(const heif_image*)> image(raw, heif_image_release);
  Check(heif_image_add_plane(raw, heif_channel_interleaved, width, height, 8));
  int stride = 0;
  uint8_t* plane = heif_image_get_plane(raw, heif_channel_interleaved, &stride);
  const std::string rgb = Bands(width, height);
  for (int y = 0; y < height; ++y) rgb.copy(reinterpret_cast<char*>(plane) + y * stride, width * 3, y * width * 3);
  Check(heif_context_encode_image(context.get(), raw, encoder, nullptr, nullptr));
  std::string bytes;
  heif_writer writer{1, Append};
  Check(heif_context_write(context.get(), &writer, &bytes));
  return bytes;
}

std::string JpegPicture(int width, int height) {
  const std::string rgb = Bands(width, height);
  return yh::EncodeJpeg(reinterpret_cast<const uint8_t*>(rgb.data()), width, height, width * 3, 90);
}

std::string AmrSound(int milliseconds) {
  std::unique_ptr<void, void (*)(void*)> state(Encoder_Interface_init(0), Encoder_Interface_exit);
  std::string amr = "#!AMR\n";
  std::vector<short> samples(kFrame);
  unsigned char frame[64];
  const int frames = milliseconds * kRate / 1000 / kFrame;
  for (int f = 0; f < frames; ++f) {
    for (int i = 0; i < kFrame; ++i) {
      samples[i] = static_cast<short>(8000 * std::sin(2 * M_PI * 440 * (f * kFrame + i) / kRate));
    }
    const int size = Encoder_Interface_Encode(state.get(), MR122, samples.data(), frame, 0);
    amr.append(reinterpret_cast<const char*>(frame), static_cast<size_t>(size));
  }
  return amr;
}

Pixels DecodeJpeg(const std::string& jpeg) {
  Pixels pixels;
  if (jpeg.size() < 4 || jpeg.compare(0, 3, "\xFF\xD8\xFF") != 0) return pixels;
  jpeg_decompress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, reinterpret_cast<const unsigned char*>(jpeg.data()), jpeg.size());
  jpeg_read_header(&info, TRUE);
  info.out_color_space = JCS_RGB;
  jpeg_start_decompress(&info);
  pixels.width = static_cast<int>(info.output_width);
  pixels.height = static_cast<int>(info.output_height);
  pixels.rgb.resize(static_cast<size_t>(pixels.width) * pixels.height * 3);
  while (info.output_scanline < info.output_height) {
    JSAMPROW row = reinterpret_cast<JSAMPROW>(&pixels.rgb[static_cast<size_t>(info.output_scanline) * pixels.width * 3]);
    jpeg_read_scanlines(&info, &row, 1);
  }
  jpeg_finish_decompress(&info);
  jpeg_destroy_decompress(&info);
  return pixels;
}

}  // namespace yhmedia
