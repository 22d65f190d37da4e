#ifndef YH_TOOL_REPORT_CONVERSATIONS_H
#define YH_TOOL_REPORT_CONVERSATIONS_H

#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

#include "DataScript.h"
#include "PlistJson.h"

namespace yh {

// The data files of a kind of conversations, written as the conversations
// come: one per conversation, PREFIXthread-N, loaded when it is opened; the
// [text, date] of every message of each, PREFIXmessage-texts, for the
// search; and the list of them all, each with its own keys, its message
// count and its last message. With deleted ones, the messages of a deleted
// conversation join the first live conversation of the same id, in date
// order; that conversation alone is held until the deleted ones have come.
// The other deleted conversations follow the live ones as their own.
class Conversations {
 public:
  using WriteData = std::function<void(const std::string& name, const Json& data)>;

  // `texts` receives the PREFIXmessage-texts script.
  Conversations(std::string prefix, std::ostream& texts, WriteData writeData, bool deleted);

  // Each deleted conversation, before any live one, for the texts of those
  // its messages join.
  void ExpectDeleted(const Json& chat);
  void AddLive(Json chat);
  // The deleted conversations, after the live ones, in the order
  // ExpectDeleted had them.
  void AddDeleted(Json chat);
  // Writes the conversations held and ends the texts; returns the list.
  Json Finish();

  // The messages of the live conversations, and of the deleted ones.
  struct Counts {
    size_t live = 0;
    size_t deleted = 0;
  };
  Counts Tally() const { return counts_; }

 private:
  struct Held {
    size_t at;      // position among the conversations
    size_t listed;  // position in the list
    Json chat;
  };

  // The texts entry of conversation `at`.
  void AddTexts(size_t at, const Json& texts);
  Json Written(size_t at, const Json& chat);

  std::string prefix_;
  DataScriptWriter texts_;
  WriteData writeData_;
  bool deleted_;
  size_t count_ = 0;
  Counts counts_;
  std::unordered_map<std::string, std::vector<Json>> deletedTexts_;  // by id, one list per deleted conversation
  std::unordered_map<std::string, size_t> heldById_;                 // into held_
  std::vector<Held> held_;
  Json list_ = Json::array();
};

}  // namespace yh

#endif
