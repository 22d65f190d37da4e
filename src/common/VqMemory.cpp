#include "common/VqMemory.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>

namespace {

// Leak-tracking state of a debugging build. Design decision: no build fills
// it; the wrappers, VqDetect and PrintMemoryLeak stay inert everywhere so
// that release and debugging builds behave alike.
[[maybe_unused]] std::map<uint32_t, char*> gVqContainer;
[[maybe_unused]] uint32_t gVqObjNumber = 0;

}  // namespace

void* VqMalloc(const char*, int, unsigned long size) {
  void* block = std::malloc(size);
  std::memset(block, 0, size);
  return block;
}

void* VqCalloc(const char*, int, unsigned long count, unsigned long size) {
  return std::calloc(count, size);
}

void VqFree(const char*, int, void* pointer) {
  if (pointer) std::free(pointer);
}

char* VqStrdup(const char*, int, const char* text) { return strdup(text); }

void VqDetect(const char*, int, const char*, int, void*) {}

void PrintMemoryLeak() {}
