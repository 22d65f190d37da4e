#import <Foundation/Foundation.h>

#include "platform/BackupFolders.h"
#include "platform/BackupFoldersOverride.h"

namespace platform {

std::vector<std::string> DefaultBackupFolders() {
  std::vector<std::string> folders;
  if (BackupFoldersOverridden(&folders)) return folders;
  @autoreleasepool {
    // The path form, which GNUstep's Foundation has too, so that this file
    // is compiled on every CI run (scripts/check-apple-seam).
    NSArray* paths = NSSearchPathForDirectoriesInDomains(NSApplicationSupportDirectory, NSUserDomainMask, YES);
    if ([paths count] > 0) folders.push_back(std::string([[paths objectAtIndex:0] UTF8String]) + "/MobileSync/Backup");
  }
  return folders;
}

}  // namespace platform
