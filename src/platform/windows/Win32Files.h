#ifndef YH_PLATFORM_WINDOWS_WIN32FILES_H
#define YH_PLATFORM_WINDOWS_WIN32FILES_H

#include <windows.h>

#include "platform/FileSystem.h"

// What the Windows implementations share about files.
namespace platform {

// The errno value closest to a Windows error code.
int ErrnoOf(DWORD error);

// A C runtime descriptor owning `handle` (opened with `flags`, _O_RDONLY or
// _O_WRONLY); -1 with errno set when the handle is invalid or cannot be
// wrapped, the handle then closed.
int DescriptorOf(HANDLE handle, int flags);

// What the attributes of a file or folder tell, as the interface names it.
PathInfo PathInfoOf(const WIN32_FILE_ATTRIBUTE_DATA& data);

}  // namespace platform

#endif
