#include "kinds/current/CurrentKinds.h"

#include "session/BackupSession.h"

void CurrentKindsDeleter::operator()(CurrentKinds* kinds) const { delete kinds; }
