#ifndef YH_KINDS_CURRENT_CALLREADERS_H
#define YH_KINDS_CURRENT_CALLREADERS_H

#include <vector>

#include "common/Database.h"
#include "kinds/current/CallHistory.h"

namespace current {

// The calls of an old call database (iOS 7 and before), whatever columns it has.
std::vector<Call> ReadCallDatabase(Database& database);

// The calls of a call store (iOS 8 on), whatever columns it has.
std::vector<Call> ReadCallStore(Database& database);

}  // namespace current

#endif
