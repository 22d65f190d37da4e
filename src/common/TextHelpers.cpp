#include "common/TextHelpers.h"

#include <cstdlib>
#include <cstring>

#include "platform/FileSystem.h"

namespace {

char* MallocCopy(const std::string& text) {
  char* block = static_cast<char*>(std::malloc(text.size() + 1));
  std::memcpy(block, text.c_str(), text.size() + 1);
  return block;
}

}  // namespace

const char* GetPathSeperatorLine() { return "/"; }

const char* GetFileName(const char* path) {
  // Design decision: a path without any "/" is all name, instead of reading
  // before the text.
  const char* slash = std::strrchr(path, '/');
  return slash ? slash + 1 : path;
}

const char* GetFilePostfix(const char* path) { return std::strrchr(path, '.'); }

char* ConcatStr(const char* a, const char* b) { return MallocCopy(std::string(a) + b); }

char* ConcatFilePath(const char* dir, const char* name) {
  std::string path(dir);
  // A dir without any "/" is joined to the name with nothing in between.
  if (path.find('/') != std::string::npos && path.back() != '/') path += '/';
  return MallocCopy(path + name);
}

std::string ConvertUnicode2UTF8(const char* text) { return std::string(text); }

char* ReplaceChar(const char* text, char with, char what) {
  if (!text) return nullptr;
  std::string copy(text);
  for (char& c : copy) {
    if (c == what) c = with;
  }
  return MallocCopy(copy);
}

char* ReplaceStr(const char* text, const char* what, const char* with) {
  // Design decision: a NULL text gives NULL like ReplaceChar, and an empty
  // pattern a plain copy (it would otherwise match everywhere forever).
  if (!text) return nullptr;
  const std::string source(text);
  const std::string pattern(what ? what : "");
  const std::string replacement(with ? with : "");
  if (pattern.empty()) return MallocCopy(source);
  std::string result;
  size_t from = 0;
  for (size_t hit = source.find(pattern); hit != std::string::npos;
       hit = source.find(pattern, from)) {
    result.append(source, from, hit - from);
    result += replacement;
    from = hit + pattern.size();
  }
  result.append(source, from, std::string::npos);
  return MallocCopy(result);
}

char* DeleteDelims(const char* text, const char* delims, const char* joiner) {
  if (!text) return nullptr;
  const std::string source(text);
  const char* separators = delims ? delims : "";
  std::string result;
  bool first = true;
  for (size_t start = source.find_first_not_of(separators); start != std::string::npos;
       start = source.find_first_not_of(separators, start)) {
    const size_t end = source.find_first_of(separators, start);
    if (!first && joiner) result += joiner;
    result.append(source, start, end == std::string::npos ? std::string::npos : end - start);
    first = false;
    start = end;
  }
  if (result.empty()) return nullptr;
  return MallocCopy(result);
}

void SplitWithFlag(const char* text, char flag, std::vector<std::string>& out) {
  if (!text) return;
  const std::string source(text);
  size_t start = 0;
  while (start < source.size()) {
    const size_t end = source.find(flag, start);
    if (end == std::string::npos) {
      out.push_back(source.substr(start));
      return;
    }
    out.push_back(source.substr(start, end - start));
    start = end + 1;
  }
}

const void* MemMem(const void* hay, size_t n, const void* needle, size_t len) {
  if (n == 0 || len == 0 || len > n) return nullptr;
  const unsigned char* bytes = static_cast<const unsigned char*>(hay);
  const unsigned char* pattern = static_cast<const unsigned char*>(needle);
  if (len == 1) return std::memchr(bytes, pattern[0], n);
  const unsigned char* last = bytes + (n - len);
  for (const unsigned char* p = bytes; p <= last; ++p) {
    p = static_cast<const unsigned char*>(std::memchr(p, pattern[0], last - p + 1));
    if (!p) return nullptr;
    if (std::memcmp(p, pattern, len) == 0) return p;
  }
  return nullptr;
}

FILE* YHfopen(const char* path, const char* mode) { return platform::OpenStream(path, mode); }

std::string TakeMallocText(char* text) {
  std::string copy = text ? text : "";
  std::free(text);
  return copy;
}

std::string AsciiLower(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}
