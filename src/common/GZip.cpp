#include "common/GZip.h"

#include <algorithm>
#include <vector>

#define ZLIB_CONST
#include <zlib.h>

namespace {

// A zlib stream header (deflate, 32K window, no dictionary): offered once
// when the data stops being valid gzip, as the classic gzip readers do.
const unsigned char kZlibHeader[] = {0x78, 0x01};

// Bytes of input that must be left when the capacity fills for the output to
// be the stepwise one's: that reading stops as soon as its input is used up,
// and it may have taken a code's bytes a little earlier than one call does.
constexpr unsigned int kInputLeft = 8;

// The whole input in one call: inflating does not depend on how the input
// is cut, so where the stream ends, or fills the capacity well before the
// input runs out, without an error the output is the stepwise one's.
// Anything else (an error, a stream cut short, whose last bytes the stepwise
// reading holds back) is left to it.
// The output goes to `dst` only on success: callers read on past the output
// length into what the buffer held before.
bool InflateAtOnce(unsigned char* src, unsigned int srcLen, unsigned char* dst, unsigned int* dstLen) {
  std::vector<unsigned char> out(*dstLen);
  z_stream stream{};
  stream.next_in = src;
  stream.avail_in = srcLen;
  stream.next_out = out.data();
  stream.avail_out = *dstLen;
  if (inflateInit2(&stream, 31) != Z_OK) return false;
  const int status = inflate(&stream, Z_NO_FLUSH);
  const bool whole = status == Z_STREAM_END ||
                     (status == Z_OK && stream.total_out == *dstLen && stream.avail_in >= kInputLeft);
  if (inflateEnd(&stream) != Z_OK || !whole) return false;
  std::copy(out.begin(), out.begin() + stream.total_out, dst);
  *dstLen = static_cast<unsigned int>(stream.total_out);
  return true;
}

}  // namespace

// The stream inflated one byte in and one byte out per step, so that the
// output stops exactly at the capacity however the data is laid out, and a
// stream that stops being valid gzip resumes at the very byte where it did.
int GZDecompressStepwise(unsigned char* src, unsigned int srcLen, unsigned char* dst, unsigned int* dstLen) {
  z_stream stream{};
  stream.next_in = src;
  stream.next_out = dst;
  if (inflateInit2(&stream, 31) != Z_OK) return -1;
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

int GZDecompress(unsigned char* src, unsigned int srcLen, unsigned char* dst, unsigned int* dstLen) {
  if (*dstLen > 0 && srcLen > 0 && InflateAtOnce(src, srcLen, dst, dstLen)) return 0;
  return GZDecompressStepwise(src, srcLen, dst, dstLen);
}

std::optional<std::string> Gunzip(const void* data, size_t size, size_t limit) {
  z_stream stream{};
  if (inflateInit2(&stream, 15 + 16) != Z_OK) return std::nullopt;
  stream.next_in = static_cast<const Bytef*>(data);
  std::string out;
  unsigned char chunk[16384];
  size_t left = size;
  int status = Z_OK;
  while (status == Z_OK) {
    // zlib counts in unsigned int: feed a large input in pieces.
    if (stream.avail_in == 0 && left > 0) {
      stream.avail_in = static_cast<uInt>(std::min<size_t>(left, 1u << 30));
      left -= stream.avail_in;
    }
    stream.next_out = chunk;
    stream.avail_out = sizeof chunk;
    status = inflate(&stream, Z_NO_FLUSH);
    const size_t produced = sizeof chunk - stream.avail_out;
    if (out.size() + produced > limit) status = Z_MEM_ERROR;
    else out.append(reinterpret_cast<const char*>(chunk), produced);
    // No input left and no output made: the data ends inside the stream.
    if (status == Z_BUF_ERROR || (status == Z_OK && produced == 0 && stream.avail_in == 0 && left == 0)) break;
  }
  inflateEnd(&stream);
  if (status != Z_STREAM_END) return std::nullopt;
  return out;
}
