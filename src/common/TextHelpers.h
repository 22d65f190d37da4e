#ifndef YH_COMMON_TEXTHELPERS_H
#define YH_COMMON_TEXTHELPERS_H

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

// New blocks returned here are malloc'ed; the caller frees them.
const char* GetPathSeperatorLine();
const char* GetFileName(const char* path);
const char* GetFilePostfix(const char* path);
char* ConcatStr(const char* a, const char* b);
char* ConcatFilePath(const char* dir, const char* name);
std::string ConvertUnicode2UTF8(const char* text);
char* ReplaceChar(const char* text, char with, char what);
char* ReplaceStr(const char* text, const char* what, const char* with);
char* DeleteDelims(const char* text, const char* delims, const char* joiner);
void SplitWithFlag(const char* text, char flag, std::vector<std::string>& out);
const void* MemMem(const void* hay, size_t n, const void* needle, size_t len);
FILE* YHfopen(const char* path, const char* mode);

// The text of a block handed out by these helpers or the date helpers, as a
// string (empty for NULL); the block is freed.
std::string TakeMallocText(char* text);

// The text with A to Z made a to z and every other byte kept: names stored
// in databases compare without regard to case, whatever the host's locale.
std::string AsciiLower(std::string text);

#endif
