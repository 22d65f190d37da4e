#ifndef YH_TESTS_SUPPORT_REALBACKUPS_H
#define YH_TESTS_SUPPORT_REALBACKUPS_H

#include <string>

#include "platform/FileSystem.h"

namespace yhtest {

// The public encrypted backups beside the project (../shared/encrypted_real).
inline std::string EncryptedRealDir() { return std::string(YH_ENCRYPTED_REAL_DIR) + "/"; }
inline std::string RealIos9Backup() {
  return EncryptedRealDir() + "hv20_ios9_mbdb/5e8dfbc7f9f29a7645d66ef70b6f2d3f5dad8583/";
}
inline std::string RealTinyManifestDb() { return EncryptedRealDir() + "pyiosbackup_fixture/manifest_db/"; }
inline std::string RealTinyMbdb() { return EncryptedRealDir() + "pyiosbackup_fixture/manifest_mbdb/"; }

inline bool HasEncryptedReal() { return platform::IsFolder(EncryptedRealDir()); }

}  // namespace yhtest

// At the start of a test (or SetUp) that reads them: without the shared data
// folder beside the repository the test skips and names the folder.
#define YH_NEEDS_ENCRYPTED_REAL()                                                                  \
  if (!yhtest::HasEncryptedReal())                                                               \
  GTEST_SKIP() << "no public encrypted backups in " << yhtest::EncryptedRealDir()                \
               << " (the team's shared data folder, ../shared beside the repository)"

namespace yhtest {

}  // namespace yhtest

#endif
