#include "Sql.h"

#include <zlib.h>

#include <stdexcept>

#include "support/BackupBuilder.h"

namespace bench {

std::string Quote(const std::string& text) {
  std::string literal = "'";
  for (const char c : text) literal += c == '\'' ? std::string("''") : std::string(1, c);
  return literal + "'";
}

std::string Blob(const std::string& bytes) {
  std::string literal = "X'";
  for (const unsigned char byte : bytes) {
    literal += "0123456789ABCDEF"[byte >> 4];
    literal += "0123456789ABCDEF"[byte & 0xF];
  }
  return literal + "'";
}

std::string Gzip(const std::string& bytes) {
  z_stream stream{};
  // 15 window bits + 16: a gzip header and trailer instead of zlib's.
  if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
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

SqlScript::SqlScript(const std::string& schemaName) : text_(yhtest::Schema(schemaName) + "\nBEGIN;\n") {}

void SqlScript::Insert(const char* table, const char* columns, const std::string& values) {
  text_ += "INSERT INTO ";
  text_ += table;
  text_ += " (";
  text_ += columns;
  text_ += ") VALUES (";
  text_ += values;
  text_ += ");\n";
}

}  // namespace bench
