#ifndef YH_TOOL_PASSWORD_H
#define YH_TOOL_PASSWORD_H

#include <cstdint>
#include <string>

namespace yh {

// The password of an encrypted backup: the first line of `passwordFile` when
// one is given, else the YH_BACKUP_PASSWORD environment variable, else asked
// for on the terminal without echo. Throws Failure when there is none to
// be had (no terminal) or the file cannot be read. `backup` names the
// backup in the prompt and the messages.
std::string BackupPassword(const std::string& passwordFile, const std::string& backup);

// What a result of UnlockBackup or DecryptBackup other than success means.
std::string UnlockProblem(int32_t result);

// Overwrites the text before it is released.
void Wipe(std::string* text);

}  // namespace yh

#endif
