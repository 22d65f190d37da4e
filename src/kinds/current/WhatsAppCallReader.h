#ifndef YH_KINDS_CURRENT_WHATSAPPCALLREADER_H
#define YH_KINDS_CURRENT_WHATSAPPCALLREADER_H

#include <vector>

#include "common/Database.h"
#include "kinds/current/WhatsAppCalls.h"

namespace current {

// The calls of one CallHistory.sqlite, whatever tables and columns it has,
// in the database's order, unnamed: each call (ZWACDCALLEVENT) with the
// direction, medium and participants of the entry it is grouped under
// (ZWAAGGREGATECALLEVENT); an entry without calls of its own counts as one.
std::vector<WhatsAppCall> ReadWhatsAppCallHistory(Database& database);

}  // namespace current

#endif
