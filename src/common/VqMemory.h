#ifndef YH_COMMON_VQMEMORY_H
#define YH_COMMON_VQMEMORY_H

// Allocation wrappers that carry their calling site so that a debugging build
// could track leaks. In this library the tracking is inert: the site is
// accepted and ignored.
void* VqMalloc(const char* file, int line, unsigned long size);
void* VqCalloc(const char* file, int line, unsigned long count, unsigned long size);
void VqFree(const char* file, int line, void* pointer);
char* VqStrdup(const char* file, int line, const char* text);
void VqDetect(const char* file, int line, const char* ownerFile, int ownerLine, void* pointer);
void PrintMemoryLeak();

#endif
