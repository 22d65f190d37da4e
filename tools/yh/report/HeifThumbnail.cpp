#include "HeifThumbnail.h"

#include <libheif/heif.h>

#include <algorithm>
#include <memory>

#include "Jpeg.h"

namespace yh {
namespace {

// Large pictures are refused rather than decoded into gigabytes.
constexpr int kLargestSide = 16384;
constexpr int kQuality = 82;

struct FreeContext {
  void operator()(heif_context* context) const { heif_context_free(context); }
};
struct FreeHandle {
  void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
};
struct FreeImage {
  void operator()(heif_image* image) const { heif_image_release(image); }
};
using Context = std::unique_ptr<heif_context, FreeContext>;
using Handle = std::unique_ptr<heif_image_handle, FreeHandle>;
using Image = std::unique_ptr<heif_image, FreeImage>;

int LongestSide(const heif_image_handle* handle) {
  return std::max(heif_image_handle_get_width(handle), heif_image_handle_get_height(handle));
}

// The image's own thumbnail when it is at least half the size wanted:
// decoding it is far quicker than decoding twelve million pixels.
Handle Smallest(heif_image_handle* primary) {
  heif_item_id ids[4];
  const int count = heif_image_handle_get_list_of_thumbnail_IDs(primary, ids, 4);
  for (int i = 0; i < count; ++i) {
    heif_image_handle* thumbnail = nullptr;
    if (heif_image_handle_get_thumbnail(primary, ids[i], &thumbnail).code != heif_error_Ok) continue;
    Handle handle(thumbnail);
    if (LongestSide(thumbnail) >= kThumbnailSide / 2) return handle;
  }
  return nullptr;
}

Image Scaled(Image image) {
  const int width = heif_image_get_width(image.get(), heif_channel_interleaved);
  const int height = heif_image_get_height(image.get(), heif_channel_interleaved);
  const int longest = std::max(width, height);
  if (longest <= kThumbnailSide) return image;
  heif_image* scaled = nullptr;
  const int newWidth = std::max(1, width * kThumbnailSide / longest);
  const int newHeight = std::max(1, height * kThumbnailSide / longest);
  if (heif_image_scale_image(image.get(), &scaled, newWidth, newHeight, nullptr).code != heif_error_Ok) return nullptr;
  return Image(scaled);
}

}  // namespace

std::string HeifThumbnail(const std::string& heif) {
  Context context(heif_context_alloc());
  if (!context) return "";
  heif_context_set_maximum_image_size_limit(context.get(), kLargestSide);
  if (heif_context_read_from_memory_without_copy(context.get(), heif.data(), heif.size(), nullptr).code !=
      heif_error_Ok) {
    return "";
  }
  heif_image_handle* primary = nullptr;
  if (heif_context_get_primary_image_handle(context.get(), &primary).code != heif_error_Ok) return "";
  Handle handle(primary);
  Handle thumbnail = Smallest(primary);
  heif_image* decoded = nullptr;
  if (heif_decode_image(thumbnail ? thumbnail.get() : primary, &decoded, heif_colorspace_RGB,
                        heif_chroma_interleaved_RGB, nullptr)
          .code != heif_error_Ok) {
    return "";
  }
  const Image image = Scaled(Image(decoded));
  if (!image) return "";
  int stride = 0;
  const uint8_t* pixels = heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &stride);
  return EncodeJpeg(pixels, heif_image_get_width(image.get(), heif_channel_interleaved),
                    heif_image_get_height(image.get(), heif_channel_interleaved), stride, kQuality);
}

}  // namespace yh
