#ifndef YH_COMMON_GZIP_H
#define YH_COMMON_GZIP_H

#include <cstddef>
#include <optional>
#include <string>

// Inflates gzip data into dst. On entry *dstLen is dst's capacity; on success
// it becomes the number of bytes produced and 0 is returned; -1 otherwise,
// with *dstLen unchanged.
int GZDecompress(unsigned char* src, unsigned int srcLen, unsigned char* dst, unsigned int* dstLen);

// The same answers, bytes in dst included, read one byte in and one byte
// out at a time: what GZDecompress falls back on when its reading of the
// whole input at once meets anything but a clean end.
int GZDecompressStepwise(unsigned char* src, unsigned int srcLen, unsigned char* dst, unsigned int* dstLen);

// The whole of one gzip stream, inflated; nothing when the data is not gzip,
// ends before the stream does, or would inflate to more than `limit` bytes.
std::optional<std::string> Gunzip(const void* data, size_t size, size_t limit);

#endif
