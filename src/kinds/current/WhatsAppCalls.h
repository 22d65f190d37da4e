#ifndef YH_KINDS_CURRENT_WHATSAPPCALLS_H
#define YH_KINDS_CURRENT_WHATSAPPCALLS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "common/PackedTexts.h"
#include "kinds/CallTexts.h"
#include "kinds/current/StoredRecordKind.h"
#include "kinds/current/WhatsAppDirectory.h"

namespace current {

// One WhatsApp call with everyone it was with.
struct WhatsAppCall {
  enum : size_t { kService = kCallTextCount };

  PackedTexts texts;               // the calls answer's texts, then the service
  std::optional<int64_t> instant;  // seconds since 1970, for the order
  bool answered = false;
  bool group = false;
  std::vector<std::string> participants;  // addresses (JIDs)
  std::vector<std::string> participantNames;
};

// WhatsApp's calls (CallHistory.sqlite of WhatsApp's and WhatsApp Business's
// shared app group), newest first, in the layout of the calls answer:
// "name", "address" (the number, or every participant's for a group call),
// "date", "type", "duration", the three texts phone calls have (empty),
// "answered", "service" ("WhatsApp Audio" or "WhatsApp Video"), then
// "participants" (each with "address" and "name") and "group". NULL when
// the backup holds no call database.
class WhatsAppCalls : public StoredRecordKind<WhatsAppCall> {
 public:
  explicit WhatsAppCalls(WhatsAppDirectory& directory) : StoredRecordKind(WhenNone::Null), directory_(directory) {}

 private:
  std::vector<WhatsAppCall> Read(const BackupDevice* device) override;
  void InsertKeys(const WhatsAppCall& call, plist_t dict) const override;

  WhatsAppDirectory& directory_;
};

}  // namespace current

#endif
