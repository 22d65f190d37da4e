#import <Foundation/Foundation.h>

#include "service/Platform.h"

std::string ApplicationSupportFolder() {
  @autoreleasepool {
    NSArray* urls = [[NSFileManager defaultManager] URLsForDirectory:NSApplicationSupportDirectory
                                                           inDomains:NSUserDomainMask];
    if ([urls count] == 0) return "";
    return [[[urls objectAtIndex:0] path] UTF8String];
  }
}

std::vector<std::string> ListFolder(const std::string& folder) {
  std::vector<std::string> names;
  @autoreleasepool {
    NSString* path = [NSString stringWithUTF8String:folder.c_str()];
    for (NSString* name in [[NSFileManager defaultManager] contentsOfDirectoryAtPath:path error:nil]) {
      names.push_back([name UTF8String]);
    }
  }
  return names;
}

bool IsFolder(const std::string& path) {
  @autoreleasepool {
    BOOL isFolder = NO;
    NSString* text = [NSString stringWithUTF8String:path.c_str()];
    return [[NSFileManager defaultManager] fileExistsAtPath:text isDirectory:&isFolder] && isFolder;
  }
}
