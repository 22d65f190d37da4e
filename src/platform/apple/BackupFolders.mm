#import <Foundation/Foundation.h>

#include "platform/BackupFolders.h"
#include "platform/BackupFoldersOverride.h"

namespace platform {

std::vector<std::string> DefaultBackupFolders() {
  std::vector<std::string> folders;
  if (BackupFoldersOverridden(&folders)) return folders;
  @autoreleasepool {
    NSArray* urls = [[NSFileManager defaultManager] URLsForDirectory:NSApplicationSupportDirectory
                                                           inDomains:NSUserDomainMask];
    if ([urls count] > 0) folders.push_back(std::string([[[urls objectAtIndex:0] path] UTF8String]) + "/MobileSync/Backup");
  }
  return folders;
}

}  // namespace platform
