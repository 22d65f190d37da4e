#ifndef YH_COMMON_GZIP_H
#define YH_COMMON_GZIP_H

// Inflates gzip data into dst. On entry *dstLen is dst's capacity; on success
// it becomes the number of bytes produced and 0 is returned; -1 otherwise,
// with *dstLen unchanged.
int GZDecompress(unsigned char* src, unsigned int srcLen, unsigned char* dst, unsigned int* dstLen);

#endif
