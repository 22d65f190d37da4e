#include "common/GZip.h"

#define ZLIB_CONST
#include <zlib.h>

namespace {

// A zlib stream header (deflate, 32K window, no dictionary): offered once
// when the data stops being valid gzip, as the classic gzip readers do.
const unsigned char kZlibHeader[] = {0x78, 0x01};

}  // namespace

int GZDecompress(unsigned char* src, unsigned int srcLen, unsigned char* dst, unsigned int* dstLen) {
  z_stream stream{};
  stream.next_in = src;
  stream.next_out = dst;
  if (inflateInit2(&stream, 31) != Z_OK) return -1;
  // One byte in and one byte out per step, so that the output stops exactly
  // at the capacity however the data is laid out.
  while (stream.total_out < *dstLen && stream.total_in < srcLen) {
    stream.avail_in = 1;
    stream.avail_out = 1;
    const int status = inflate(&stream, Z_NO_FLUSH);
    if (status == Z_STREAM_END) break;
    if (status == Z_OK) continue;
    if (status == Z_DATA_ERROR) {
      const unsigned char* resume = stream.next_in;
      stream.next_in = kZlibHeader;
      stream.avail_in = sizeof kZlibHeader;
      if (inflate(&stream, Z_NO_FLUSH) == Z_OK) {
        stream.next_in = resume;
        continue;
      }
    }
    inflateEnd(&stream);
    return -1;
  }
  if (inflateEnd(&stream) != Z_OK) return -1;
  *dstLen = static_cast<unsigned int>(stream.total_out);
  return 0;
}
