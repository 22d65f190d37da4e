#include "support/NoteStoreBody.h"

#include <zlib.h>

#include <stdexcept>

namespace yhtest {

const std::string kNoteStoreHeader("\x08\x00\x12\x1a\x08\x00\x10\x00\x1a\x14\x12\x10\x0a\x0e", 14);
const std::string kNoteStoreTrailer("\x1a\x08\x01\x10\x00trailer", 12);

std::string Gzip(const std::string& bytes) {
  z_stream stream{};
  // 15 window bits + 16: a gzip header and trailer instead of zlib's.
  if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::runtime_error("deflateInit2");
  }
  std::string out(deflateBound(&stream, bytes.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(&out[0]);
  stream.avail_out = static_cast<uInt>(out.size());
  const int status = deflate(&stream, Z_FINISH);
  deflateEnd(&stream);
  if (status != Z_STREAM_END) throw std::runtime_error("deflate");
  out.resize(stream.total_out);
  return out;
}

std::string SqlBlob(const std::string& bytes) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string literal = "X'";
  for (const unsigned char byte : bytes) {
    literal += kHex[byte >> 4];
    literal += kHex[byte & 0x0F];
  }
  return literal + "'";
}

std::string NoteStoreBody(const std::string& text) { return Gzip(kNoteStoreHeader + text + kNoteStoreTrailer); }

}  // namespace yhtest
