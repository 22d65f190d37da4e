#include "FileStream.h"

#include <string_view>

#include "FileIo.h"

namespace yh {
namespace {

constexpr size_t kBlock = 1 << 16;

}  // namespace

FileStream::Blocks::Blocks(int fd, std::string what) : fd_(fd), what_(std::move(what)), block_(kBlock) {
  setp(block_.data(), block_.data() + block_.size());
}

void FileStream::Blocks::Flush() {
  WriteAll(fd_, std::string_view(pbase(), static_cast<size_t>(pptr() - pbase())), what_);
  setp(block_.data(), block_.data() + block_.size());
}

FileStream::Blocks::int_type FileStream::Blocks::overflow(int_type c) {
  Flush();
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  return sputc(traits_type::to_char_type(c));
}

int FileStream::Blocks::sync() {
  Flush();
  return 0;
}

// The stream rethrows what its buffer throws once badbit is among its exceptions.
FileStream::FileStream(int fd, std::string what) : std::ostream(nullptr), blocks_(fd, std::move(what)) {
  rdbuf(&blocks_);
  exceptions(std::ios::badbit);
}

void FileStream::Finish() { blocks_.Flush(); }

}  // namespace yh
